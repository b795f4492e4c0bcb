#pragma once

#include <QKeySequence>
#include <QString>

#include <functional>

class QPushButton;

namespace orvel {

/// A key of the main window and what it does.
struct DeskKeyStroke {
    QKeySequence key;
    QString what; ///< as the sheet of keys tells it
    std::function<void()> action;
};

/// A key that presses a button, where that is enabled; the button's tooltip tells the key.
[[nodiscard]] DeskKeyStroke keyOf(QPushButton *button, const QKeySequence &key, const QString &what);

} // namespace orvel
