#include "platform/jet/lock_file.h"

#include "platform/jet/raw_file.h"

#include <algorithm>
#include <string>
#include <system_error>

namespace orvel::jet {

namespace {

/// In the system's own encoding, which need not be valid text.
using Name = std::filesystem::path::string_type;

Name lowered(const std::filesystem::path &path) {
    Name text = path.native();
    std::ranges::transform(text, text.begin(), [](auto unit) {
        return unit >= 'A' && unit <= 'Z' ? static_cast<decltype(unit)>(unit - 'A' + 'a') : unit;
    });
    return text;
}

bool isLockFileOf(const std::filesystem::path &candidate, const Name &stem) {
    const Name extension = lowered(candidate.extension());
    return (extension == std::filesystem::path(".ldb") || extension == std::filesystem::path(".laccdb")) &&
           lowered(candidate.stem()) == stem;
}

} // namespace

bool isDatabaseInUse(const std::filesystem::path &database) {
    const Name stem = lowered(database.stem());
    const std::filesystem::path folder = database.has_parent_path() ? database.parent_path() : ".";
    std::error_code failure;
    // NOLINTNEXTLINE(modernize-loop-convert): the plain loop would throw where the increment fails
    for (std::filesystem::directory_iterator it(folder, failure), end; !failure && it != end; it.increment(failure)) {
        if (isLockFileOf(it->path(), stem) && isHeld(it->path())) {
            return true;
        }
    }
    return false;
}

} // namespace orvel::jet
