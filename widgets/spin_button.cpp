#include "widgets/spin_button.h"

#include "widgets/accessible.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QToolButton>

#include <algorithm>

namespace orvel {

namespace {

QToolButton *arrow(SpinButton *spin, Qt::ArrowType type, const QString &accessibleName, int step) {
    auto *button = new QToolButton(spin);
    button->setArrowType(type);
    button->setAccessibleName(accessibleName);
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus);
    QObject::connect(button, &QToolButton::clicked, spin, [spin, step] { spin->stepBy(step); });
    return button;
}

} // namespace

SpinButton::SpinButton(QWidget *parent) : QWidget(parent) {
    installAccessibility();
    setFocusPolicy(Qt::StrongFocus);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(arrow(this, Qt::DownArrow, tr("Vorige"), -1));
    layout->addWidget(arrow(this, Qt::UpArrow, tr("Volgende"), 1));
}

void SpinButton::setRange(int minimum, int maximum) {
    minimum_ = minimum;
    maximum_ = std::max(minimum, maximum);
}

void SpinButton::setValue(int value) {
    if (value == value_) {
        return;
    }
    value_ = value;
    announceValue(*this);
    Q_EMIT valueChanged(value_);
}

void SpinButton::stepBy(int count) {
    setValue(std::clamp(value_ + count, minimum_, maximum_));
}

void SpinButton::keyPressEvent(QKeyEvent *event) {
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Right:
        stepBy(1);
        break;
    case Qt::Key_Down:
    case Qt::Key_Left:
        stepBy(-1);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

} // namespace orvel
