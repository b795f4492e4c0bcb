#pragma once

#include <exception>
#include <functional>

namespace orvel {

/// What is done with an error that a handler lets through: it is reported to the presenter.
using ErrorReport = std::function<void(std::exception_ptr error)>;

/// The application sets it; an empty one takes it away. Window thread only.
void setErrorReport(ErrorReport report);

/// The one boundary for errors. It stands inside every slot, timer tick and event handler, so that no exception ever
/// travels through the code that called them: runs a handler and reports what it lets through; false when it failed.
/// Without a report set, errors go on to the caller.
bool guarded(const std::function<void()> &handler);

} // namespace orvel
