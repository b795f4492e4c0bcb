#pragma once

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QString>
#include <QWidget>

#include <vector>

namespace orvel {

/// A text or a picture as a widget really drew it.
struct DrawnMark {
    QString text;  ///< empty for a picture
    QImage icon;   ///< of a picture, as large as its place
    QRect place;   ///< in pixels of the window
    QColor colour; ///< of a text's letters
};

/// Every text and every picture that is drawn when the window is, in the order in which they are.
std::vector<DrawnMark> marksOf(QWidget &shown);

/// The contrast of two opaque colours, 1 to 21, as WCAG 2 defines it.
double contrastOf(const QColor &first, const QColor &second);

} // namespace orvel
