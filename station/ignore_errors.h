#pragma once

#include "platform/runtime_error.h"

#include <utility>

namespace orvel {

/// Runs one statement of a handler that goes on whatever fails. Only for handlers whose rules say so.
template <class Statement>
void ignoringErrors(Statement &&statement) {
    try {
        std::forward<Statement>(statement)();
    } catch (const RuntimeError &) { // NOLINT(bugprone-empty-catch): ignoring is what was asked for
    }
}

} // namespace orvel
