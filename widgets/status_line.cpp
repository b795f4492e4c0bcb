#include "widgets/status_line.h"

#include "widgets/accessible.h"

namespace orvel {

StatusLine::StatusLine(QWidget *parent) : ElidedLabel(parent) {
    installAccessibility();
    setAccessibleDescription(tr("Statusregel"));
}

void StatusLine::tell(const QString &sentence) {
    setText(sentence);
    announce(sentence);
}

void StatusLine::announce(const QString &sentence) {
    setAccessibleName(sentence);
    if (!sentence.isEmpty()) {
        announceAlert(*this);
    }
}

} // namespace orvel
