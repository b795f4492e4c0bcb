#pragma once

#include <QScreen>
#include <QStyle>
#include <QWidget>

namespace orvel {

/// A window opens as large as it likes to be, but with its frame no larger than the screen.
inline void openAs(QWidget &window, const QSize &size) {
    const int title = window.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const int edge = window.style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    window.resize(size.boundedTo(window.screen()->availableSize() - QSize(2 * edge, title + edge)));
}

} // namespace orvel
