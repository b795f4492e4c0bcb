#include "widgets/alarm_line.h"

#include "widgets/accessible.h"

namespace orvel {

AlarmLine::AlarmLine(QWidget *parent) : QLabel(parent) {
    installAccessibility();
    setProperty("role", QStringLiteral("alarm"));
    setAlignment(Qt::AlignCenter);
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setAccessibleDescription(tr("Waarschuwing"));
    hide();
}

void AlarmLine::tell(const QStringList &sentences) {
    if (sentences == told_) {
        return;
    }
    told_ = sentences;
    setVisible(!told_.isEmpty());
    if (told_.isEmpty()) {
        return;
    }
    const QString more = told_.size() > 1 ? tr(" (en nog %1)").arg(told_.size() - 1) : QString();
    setText(QStringLiteral("\u26A0 ") + told_.first() + more);
    setToolTip(told_.join(u'\n'));
    setAccessibleName(told_.join(u' '));
    announceAlert(*this);
}

/// Long words of a folder's name never widen the window.
QSize AlarmLine::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 20, QLabel::minimumSizeHint().height()};
}

} // namespace orvel
