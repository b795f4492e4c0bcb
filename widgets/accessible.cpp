#include "widgets/accessible.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QAccessibleWidget>
#include <QComboBox>
#include <QDial>
#include <QHash>
#include <QSlider>
#include <QVariant>
#include <QWidget>

#include <algorithm>

namespace orvel {

namespace {

QAccessible::Role roleOf(const QString &className) {
    static const QHash<QString, QAccessible::Role> roles = {
        {"orvel::Gauge", QAccessible::ProgressBar},      {"orvel::LedSpin", QAccessible::SpinBox},
        {"orvel::TimeDisplay", QAccessible::StaticText}, {"orvel::LedLabel", QAccessible::StaticText},
        {"orvel::Lamp", QAccessible::Indicator},         {"orvel::LevelMeter", QAccessible::ProgressBar},
        {"orvel::SpinButton", QAccessible::SpinBox},     {"orvel::Waveform", QAccessible::Slider},
        {"orvel::AlarmLine", QAccessible::AlertMessage}, {"orvel::StatusLine", QAccessible::AlertMessage},
    };
    return roles.value(className, QAccessible::NoRole);
}

/// What shows a text that nobody can change: the desktop's interface has no other place for a value that is no number.
class ShowsText : public QAccessibleWidget, public QAccessibleTextInterface {
  public:
    using QAccessibleWidget::QAccessibleWidget;

    void *interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface *>(this)
                                                  : QAccessibleWidget::interface_cast(type);
    }

    using QAccessibleWidget::text;
    [[nodiscard]] virtual QString shown() const = 0;

    QString text(int from, int to) const override { return shown().mid(from, to - from); }
    int characterCount() const override { return static_cast<int>(shown().size()); }
    int cursorPosition() const override { return 0; }
    void setCursorPosition(int /*position*/) override {}
    void selection(int /*index*/, int *from, int *to) const override { *from = *to = 0; }
    int selectionCount() const override { return 0; }
    void addSelection(int /*from*/, int /*to*/) override {}
    void removeSelection(int /*index*/) override {}
    void setSelection(int /*index*/, int /*from*/, int /*to*/) override {}
    QRect characterRect(int /*offset*/) const override { return rect(); }
    int offsetAtPoint(const QPoint & /*point*/) const override { return 0; }
    void scrollToSubstring(int /*from*/, int /*to*/) override {}
    QString attributes(int /*offset*/, int *from, int *to) const override {
        *from = 0;
        *to = characterCount();
        return {};
    }
};

class WidgetAccessible : public ShowsText, public QAccessibleValueInterface {
  public:
    WidgetAccessible(QWidget *widget, QAccessible::Role role) : ShowsText(widget, role) {}

    void *interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface && maximumValue().isValid()) {
            return static_cast<QAccessibleValueInterface *>(this);
        }
        return ShowsText::interface_cast(type);
    }

    using ShowsText::text;
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? shown() : ShowsText::text(kind);
    }
    QString shown() const override { return widget()->property("valueText").toString(); }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        const QVariant lit = widget()->property("lit");
        state.checkable = lit.isValid();
        state.checked = lit.toBool();
        state.readOnly = !minimumStepSize().isValid();
        return state;
    }

    QVariant currentValue() const override { return widget()->property("value"); }
    /// A box may begin outside its limits; what is told makes sense all the same.
    QVariant minimumValue() const override {
        const QVariant least = widget()->property("minimum");
        return least.isValid() && least.toDouble() > currentValue().toDouble() ? currentValue() : least;
    }
    QVariant maximumValue() const override { return widget()->property("maximum"); }
    QVariant minimumStepSize() const override { return widget()->property("step"); }
    void setCurrentValue(const QVariant &value) override {
        if (minimumStepSize().isValid()) {
            const int lowest = widget()->property("minimum").toInt();
            widget()->setProperty("value", qBound(lowest, value.toInt(), qMax(lowest, maximumValue().toInt())));
        }
    }
};

/// A combo box has the name of its purpose; Qt's own takes the text that is chosen for its name.
class ComboAccessible : public ShowsText {
  public:
    explicit ComboAccessible(QComboBox *box) : ShowsText(box, QAccessible::ComboBox) {}

    using ShowsText::text;
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? shown() : ShowsText::text(kind);
    }
    QString shown() const override { return box().currentText(); }

    QAccessible::State state() const override {
        QAccessible::State state = ShowsText::state();
        state.expandable = true;
        state.expanded = list()->isVisible();
        state.collapsed = !state.expanded;
        return state;
    }

    int childCount() const override { return 1; }
    QAccessibleInterface *child(int index) const override {
        box().view()->setAccessibleName(text(QAccessible::Name));
        return index == 0 ? QAccessible::queryAccessibleInterface(list()) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface *child) const override {
        return child != nullptr && child->object() == list() ? 0 : -1;
    }

    QStringList actionNames() const override { return {showMenuAction(), pressAction()}; }
    void doAction(const QString &action) override {
        if (actionNames().contains(action) && box().isEnabled()) {
            list()->isVisible() ? box().hidePopup() : box().showPopup();
        }
    }

  private:
    QComboBox &box() const { return *static_cast<QComboBox *>(widget()); }
    /// What drops down, with the view in it.
    QWidget *list() const {
        QWidget *holder = box().view()->parentWidget();
        return holder != nullptr ? holder : box().view();
    }
};

/// A slider whose largest value lies at its lower end is read the way it is seen: up is more. What is a part of a whole
/// (the property "percent") is read from 0 to 100, whatever the steps are that it goes by.
class SliderAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
  public:
    SliderAccessible(QAbstractSlider *slider, QAccessible::Role role) : QAccessibleWidget(slider, role) {}

    void *interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface *>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }
    QString text(QAccessible::Text kind) const override {
        if (kind != QAccessible::Value) {
            return QAccessibleWidget::text(kind);
        }
        const QString number = currentValue().toString();
        return isPercent() ? number + QStringLiteral(" %") : number;
    }
    QVariant currentValue() const override { return told(asSeen(slider().value()), slider().minimum()); }
    QVariant minimumValue() const override { return isPercent() ? 0 : slider().minimum(); }
    QVariant maximumValue() const override { return isPercent() ? wholePercent : slider().maximum(); }
    QVariant minimumStepSize() const override { return std::max(1, told(slider().singleStep(), 0)); }
    void setCurrentValue(const QVariant &value) override {
        const int wanted =
            isPercent() ? slider().minimum() + qRound(value.toDouble() * range() / wholePercent) : value.toInt();
        slider().setValue(asSeen(wanted));
    }

  private:
    static constexpr int wholePercent = 100;

    QAbstractSlider &slider() const { return *static_cast<QAbstractSlider *>(widget()); }
    bool isPercent() const { return widget()->property("percent").toBool() && range() > 0; }
    int range() const { return slider().maximum() - slider().minimum(); }
    /// In percent of the range, counted from `from`, or as it is.
    int told(int value, int from) const {
        return isPercent() ? qRound(double(value - from) * wholePercent / range()) : value;
    }
    int asSeen(int value) const {
        return slider().invertedAppearance() ? slider().minimum() + slider().maximum() - value : value;
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
    if (auto *box = qobject_cast<QComboBox *>(object); box != nullptr && className == QLatin1String("QComboBox")) {
        return new ComboAccessible(box);
    }
    if (auto *slider = qobject_cast<QSlider *>(object); slider != nullptr && className == QLatin1String("QSlider")) {
        return new SliderAccessible(slider, QAccessible::Slider);
    }
    if (auto *knob = qobject_cast<QDial *>(object); knob != nullptr && className == QLatin1String("orvel::Knob")) {
        return new SliderAccessible(knob, QAccessible::Dial);
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
    // Rare enough to be told whether or not a screen reader has said yet that it listens.
    for (const QAccessible::Event kind : {QAccessible::NameChanged, QAccessible::Alert}) {
        QAccessibleEvent event(&widget, kind);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace orvel
