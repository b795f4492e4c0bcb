#pragma once

#include <QString>

namespace orvel {

class Storage;

/// AudioFiles::repairWav() on a storage.
bool repairWav(Storage &storage, const QString &path);

} // namespace orvel
