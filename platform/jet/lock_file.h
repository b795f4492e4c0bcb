#pragma once

#include <filesystem>

namespace orvel::jet {

/// Whether another program has the database open: it then holds the lock file beside it (".ldb", ".laccdb", in
/// whatever case). One that was left behind by a crash is held by nobody and does not count.
bool isDatabaseInUse(const std::filesystem::path &database);

} // namespace orvel::jet
