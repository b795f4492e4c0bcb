#pragma once

#include <QKeySequence>
#include <QString>

#include <functional>

namespace orvel {

/// A key of the main window and what it does.
struct DeskKeyStroke {
    QKeySequence key;
    QString what; ///< as the sheet of keys tells it
    std::function<void()> action;
};

} // namespace orvel
