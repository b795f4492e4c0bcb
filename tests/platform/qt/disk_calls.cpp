#include "tests/platform/qt/disk_calls.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace orvel::test {

DiskCalls &diskCalls() {
    static DiskCalls calls;
    return calls;
}

namespace {

/// Whether a call fails.
bool fails(const char *call, int error) {
    if (diskCalls().recording) {
        diskCalls().log.emplace_back(call);
    }
    errno = error;
    return error != 0;
}

} // namespace

} // namespace orvel::test

// The program's own definitions come before those of the C library.

extern "C" int fsync(int handle) {
    using namespace orvel::test;
    return fails("fsync", diskCalls().fsyncError) ? -1 : static_cast<int>(syscall(SYS_fsync, handle));
}

extern "C" int rename(const char *source, const char *target) noexcept {
    using namespace orvel::test;
    return fails("rename", diskCalls().renameError) ? -1 : renameat(AT_FDCWD, source, AT_FDCWD, target);
}

extern "C" int unlink(const char *path) noexcept {
    using namespace orvel::test;
    return fails("unlink", diskCalls().unlinkError) ? -1 : unlinkat(AT_FDCWD, path, 0);
}

extern "C" int flock(int handle, int operation) noexcept {
    using namespace orvel::test;
    return fails("flock", diskCalls().fileLockError) ? -1 : static_cast<int>(syscall(SYS_flock, handle, operation));
}

namespace {

int controlFile(int handle, int command, void *argument) {
    using namespace orvel::test;
    const bool isLock = command == F_OFD_SETLK || command == F_OFD_GETLK;
    return isLock && fails("fcntl", diskCalls().rangeLockError)
               ? -1
               : static_cast<int>(syscall(SYS_fcntl, handle, command, argument));
}

} // namespace

extern "C" int fcntl(int handle, int command, ...) {
    va_list arguments;
    va_start(arguments, command);
    void *argument = va_arg(arguments, void *);
    va_end(arguments);
    return controlFile(handle, command, argument);
}

// Where files have 64 bits by themselves, the C library's header calls it by this name.
extern "C" int fcntl64(int handle, int command, ...) {
    va_list arguments;
    va_start(arguments, command);
    void *argument = va_arg(arguments, void *);
    va_end(arguments);
    return controlFile(handle, command, argument);
}
