#pragma once

#include <QApplication>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <gtest/gtest.h>

namespace orvel {

/// Runs when the next box is open.
template <class Box>
void whenOpen(const std::function<void(Box &)> &action) {
    QTimer::singleShot(0, [action] {
        auto *box = qobject_cast<Box *>(QApplication::activeModalWidget());
        if (box == nullptr) {
            ADD_FAILURE() << "another box, or none";
            if (QApplication::activeModalWidget() != nullptr) {
                QApplication::activeModalWidget()->close();
            }
            return;
        }
        action(*box);
    });
}

} // namespace orvel
