#pragma once

#include <QIcon>
#include <QPushButton>
#include <QString>

namespace orvel {

/// Gives a control the system's name for it, and the name that a screen reader tells; gives the control back.
template <class Control>
Control *named(Control *control, const char *name, const QString &accessibleName) {
    control->setObjectName(QString::fromLatin1(name));
    control->setAccessibleName(accessibleName);
    return control;
}

/// A button with the system's name for it, which Enter does not press by itself. A screen reader tells its caption.
/// icon: of the resources, or empty.
inline QPushButton *namedButton(QWidget *parent, const char *name, const QString &caption, const QString &toolTip,
                                const char *icon = "") {
    auto *button = new QPushButton(QIcon(QString::fromLatin1(icon)), caption, parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(toolTip);
    button->setAutoDefault(false);
    return button;
}

} // namespace orvel
