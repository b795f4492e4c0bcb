#include "platform/guarded.h"

#include <utility>

namespace orvel {

namespace {

ErrorReport &currentReport() {
    static ErrorReport report;
    return report;
}

} // namespace

void setErrorReport(ErrorReport report) {
    currentReport() = std::move(report);
}

bool guarded(const std::function<void()> &handler) {
    if (!currentReport()) {
        handler();
        return true;
    }
    try {
        handler();
        return true;
    } catch (...) {
        currentReport()(std::current_exception());
    }
    return false;
}

} // namespace orvel
