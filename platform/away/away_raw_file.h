#pragma once

#include "platform/away/away_work.h"
#include "platform/jet/raw_file.h"

namespace orvel {

/// Opens databases: those of the station directly, all others so that the window never waits for them. work and storage
/// outlive the files. What is not answered throws RuntimeError (DiskNotReady).
jet::FileOpener awayOpener(AwayWork &work, const QString &station, Storage &storage = systemStorage());

} // namespace orvel
