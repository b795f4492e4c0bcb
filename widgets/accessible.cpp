#include "widgets/accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <QVariant>
#include <QWidget>

namespace orvel {

namespace {

QAccessible::Role roleOf(const QString &className) {
    static const QHash<QString, QAccessible::Role> roles = {
        {"orvel::Gauge", QAccessible::ProgressBar},      {"orvel::LedSpin", QAccessible::SpinBox},
        {"orvel::TimeDisplay", QAccessible::StaticText}, {"orvel::LedLabel", QAccessible::StaticText},
        {"orvel::Lamp", QAccessible::Indicator},         {"orvel::LevelMeter", QAccessible::ProgressBar},
        {"orvel::SpinButton", QAccessible::SpinBox},     {"orvel::AlarmLine", QAccessible::AlertMessage},
    };
    return roles.value(className, QAccessible::NoRole);
}

class WidgetAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
  public:
    WidgetAccessible(QWidget *widget, QAccessible::Role role) : QAccessibleWidget(widget, role) {}

    void *interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface && maximumValue().isValid()) {
            return static_cast<QAccessibleValueInterface *>(this);
        }
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? widget()->property("valueText").toString() : QAccessibleWidget::text(kind);
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        const QVariant lit = widget()->property("lit");
        state.checkable = lit.isValid();
        state.checked = lit.toBool();
        state.readOnly = !minimumStepSize().isValid();
        return state;
    }

    QVariant currentValue() const override { return widget()->property("value"); }
    QVariant minimumValue() const override { return widget()->property("minimum"); }
    QVariant maximumValue() const override { return widget()->property("maximum"); }
    QVariant minimumStepSize() const override { return widget()->property("step"); }
    void setCurrentValue(const QVariant &value) override {
        if (minimumStepSize().isValid()) {
            const int lowest = minimumValue().toInt();
            widget()->setProperty("value", qBound(lowest, value.toInt(), qMax(lowest, maximumValue().toInt())));
        }
    }
};

/// Qt's own interface of scroll areas (6.4) reads beyond its list when it is asked for a scroll bar that has gone.
bool isScrollArea(const QString &className) {
    return className == QLatin1String("QScrollArea") || className == QLatin1String("QAbstractScrollArea");
}

QAccessibleInterface *makeAccessible(const QString &className, QObject *object) {
    const QAccessible::Role role = roleOf(className);
    auto *widget = qobject_cast<QWidget *>(object);
    if (widget != nullptr && isScrollArea(className)) {
        return new QAccessibleWidget(widget, QAccessible::Pane);
    }
    return widget != nullptr && role != QAccessible::NoRole ? new WidgetAccessible(widget, role) : nullptr;
}

} // namespace

void installAccessibility() {
    static const bool installed = [] {
        QAccessible::installFactory(makeAccessible);
        return true;
    }();
    Q_UNUSED(installed)
}

void announceValue(QWidget &widget) {
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent event(&widget, widget.property("valueText"));
        QAccessible::updateAccessibility(&event);
    }
}

void announceState(QWidget &widget) {
    if (QAccessible::isActive()) {
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent event(&widget, changed);
        QAccessible::updateAccessibility(&event);
    }
}

void announceAlert(QWidget &widget) {
    if (QAccessible::isActive()) {
        for (const QAccessible::Event kind : {QAccessible::NameChanged, QAccessible::Alert}) {
            QAccessibleEvent event(&widget, kind);
            QAccessible::updateAccessibility(&event);
        }
    }
}

} // namespace orvel
