#include "platform/qt/active_window.h"

#include <QApplication>
#include <QWidget>

#include <algorithm>

namespace orvel {

QWidget *activeWindow() {
    for (QWidget *window : {QApplication::activeModalWidget(), QApplication::activeWindow()}) {
        if (window != nullptr) {
            return window;
        }
    }
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto main = std::find_if(windows.begin(), windows.end(), [](const QWidget *window) {
        return window->isVisible() && window->windowType() == Qt::Window;
    });
    return main == windows.end() ? nullptr : *main;
}

} // namespace orvel
