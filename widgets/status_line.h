#pragma once

#include "widgets/elided_label.h"

namespace orvel {

/// The line at the bottom of a window. What it tells is announced by a screen reader, wherever the focus is.
class StatusLine : public ElidedLabel {
    Q_OBJECT

  public:
    explicit StatusLine(QWidget *parent = nullptr);

    /// Shows a sentence and announces it; an empty one takes away what stands there.
    void tell(const QString &sentence);
    /// Announces what the window shows in another place.
    void announce(const QString &sentence);
};

} // namespace orvel
