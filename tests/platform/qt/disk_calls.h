#pragma once

#include <string>
#include <vector>

namespace orvel::test {

/// The disk calls of this test program, which stand in front of the system's: what they did, and how they fail.
struct DiskCalls {
    std::vector<std::string> log; ///< "fsync" and "rename" in their order, once recording is on
    bool recording = false;
    int fsyncError = 0;     ///< what the next fsync calls fail with
    int renameError = 0;    ///< what the next rename calls fail with
    int unlinkError = 0;    ///< what the next unlink calls fail with
    int rangeLockError = 0; ///< what the next locks of a part of a file fail with
    int fileLockError = 0;  ///< what the next locks of a whole file fail with
};

DiskCalls &diskCalls();

/// Puts everything back at the end of a test.
class DiskCallsGuard {
  public:
    DiskCallsGuard() { diskCalls() = {}; }
    DiskCallsGuard(const DiskCallsGuard &) = delete;
    DiskCallsGuard &operator=(const DiskCallsGuard &) = delete;
    DiskCallsGuard(DiskCallsGuard &&) = delete;
    DiskCallsGuard &operator=(DiskCallsGuard &&) = delete;
    ~DiskCallsGuard() { diskCalls() = {}; }
};

} // namespace orvel::test
