#pragma once

#include <QScreen>
#include <QWidget>

namespace orvel {

/// A window opens as large as it likes to be, but no larger than the screen.
inline void openAs(QWidget &window, const QSize &size) {
    window.resize(size.boundedTo(window.screen()->availableSize()));
}

} // namespace orvel
