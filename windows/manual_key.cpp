#include "windows/manual_key.h"

#include "platform/guarded.h"
#include "windows/manual_sections.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

#include <utility>

namespace orvel {

ManualKey::ManualKey(const QWidget &mainWindow, std::function<void(QWidget &control)> open, QObject *parent)
    : QObject(parent), mainWindow_(mainWindow), open_(std::move(open)) {
    // Windows come and go, and none of them should have to know of the manual.
    QCoreApplication::instance()->installEventFilter(this);
}

bool ManualKey::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) {
        return false;
    }
    const auto &stroke = static_cast<const QKeyEvent &>(*event);
    if (stroke.key() != Qt::Key_F1 || (stroke.modifiers() & ~Qt::ShiftModifier) != 0) {
        return false;
    }
    auto &control = static_cast<QWidget &>(*watched);
    // Any key closes a splash screen, this one too.
    if (control.window() == &mainWindow_ || control.window()->windowType() == Qt::SplashScreen ||
        manualAnchorOf(control).isEmpty()) {
        return false;
    }
    guarded([&] { open_(control); });
    return true;
}

} // namespace orvel
