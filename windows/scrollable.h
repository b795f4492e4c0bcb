#pragma once

#include <QScrollArea>

namespace orvel {

/// A panel that may be wider than the window and, on small screens, higher than its place.
inline QScrollArea *scrollable(QWidget *panel) {
    auto *area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidget(panel);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus); // its controls have it; they are scrolled to
    // The tab's own background shows through.
    area->viewport()->setAutoFillBackground(false);
    panel->setAutoFillBackground(false);
    area->setMinimumHeight(area->fontMetrics().height() * 4);
    return area;
}

} // namespace orvel
