#include "widgets/accessible.h"
#include "widgets/gauge.h"
#include "widgets/knob.h"
#include "widgets/lamp.h"
#include "widgets/led_label.h"
#include "widgets/led_spin.h"
#include "widgets/level_meter.h"
#include "widgets/time_display.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QLabel>
#include <QScrollArea>

#include <gtest/gtest.h>

namespace orvel {

namespace {

QAccessibleInterface &seen(QWidget &widget) {
    QAccessibleInterface *face = QAccessible::queryAccessibleInterface(&widget);
    EXPECT_NE(face, nullptr);
    return *face;
}

QString value(QWidget &widget) {
    return seen(widget).text(QAccessible::Value);
}

TEST(Accessible, TellsTheNameThatTheWindowGave) {
    LedSpin spin;
    spin.setAccessibleName("Versterking");
    EXPECT_EQ(seen(spin).text(QAccessible::Name), "Versterking");
    Gauge gauge;
    gauge.setAccessibleName("Spreektijd");
    EXPECT_EQ(seen(gauge).text(QAccessible::Name), "Spreektijd");
}

// The program crashed when a screen reader asked for a scroll bar that had just gone: the library looks for it in its
// list of children without looking how long that is.
TEST(Accessible, AScrollAreaHasNoChildThatIsNotThere) {
    installAccessibility();
    QScrollArea area;
    area.setWidgetResizable(true);
    area.setWidget(new QLabel("binnen"));
    area.show();
    QAccessibleInterface &face = seen(area);
    ASSERT_GE(face.childCount(), 1);
    for (const int beyond : {-1, face.childCount(), face.childCount() + 1, 1000}) {
        EXPECT_EQ(face.child(beyond), nullptr) << beyond;
    }
    // What it shows is found from it, and it from that.
    QAccessibleInterface *inside = QAccessible::queryAccessibleInterface(area.widget());
    while (inside != nullptr && inside != &face) {
        QAccessibleInterface *parent = inside->parent();
        ASSERT_NE(parent, nullptr);
        EXPECT_GE(parent->indexOfChild(inside), 0);
        EXPECT_EQ(parent->child(parent->indexOfChild(inside)), inside);
        inside = parent;
    }
    EXPECT_EQ(inside, &face);
}

TEST(Accessible, TellsWhatTheDisplaysShow) {
    TimeDisplay time;
    time.setTime(0, 1, 2, 340);
    EXPECT_EQ(value(time), "0:01:02.34");
    LedLabel label;
    label.setText("Titel");
    EXPECT_EQ(value(label), "Titel");
    LevelMeter meter;
    meter.setLevel(0.5F);
    EXPECT_EQ(value(meter), "-6 dB");
    Gauge gauge;
    gauge.setCaption("Comprimeert bestand");
    gauge.setValue(40);
    EXPECT_EQ(value(gauge), "Comprimeert bestand, 40%");
}

TEST(Accessible, GivesTheSpinBoxItsValueLimitsAndStep) {
    LedSpin spin;
    spin.setRange(-15, 15);
    spin.setStep(5);
    spin.setUnit("dB");
    spin.setValue(-3);
    EXPECT_EQ(seen(spin).role(), QAccessible::SpinBox);
    EXPECT_EQ(value(spin), "-3 dB");
    QAccessibleValueInterface *number = seen(spin).valueInterface();
    ASSERT_NE(number, nullptr);
    EXPECT_EQ(number->currentValue().toInt(), -3);
    EXPECT_EQ(number->minimumValue().toInt(), -15);
    EXPECT_EQ(number->maximumValue().toInt(), 15);
    EXPECT_EQ(number->minimumStepSize().toInt(), 5);
    number->setCurrentValue(99);
    EXPECT_EQ(spin.value(), 15);
    for (const char *name : {"up", "down"}) {
        EXPECT_FALSE(seen(*spin.findChild<QAbstractButton *>(name)).text(QAccessible::Name).isEmpty());
    }
}

TEST(Accessible, DoesNotLetAReaderChangeADisplay) {
    Gauge gauge;
    gauge.setValue(40);
    QAccessibleValueInterface *number = seen(gauge).valueInterface();
    ASSERT_NE(number, nullptr);
    number->setCurrentValue(70);
    EXPECT_EQ(gauge.value(), 40);
    EXPECT_TRUE(seen(gauge).state().readOnly);
}

TEST(Accessible, TellsWhetherALampIsLit) {
    Lamp lamp;
    EXPECT_FALSE(seen(lamp).state().checked);
    EXPECT_EQ(value(lamp), "uit");
    lamp.setLit(true);
    EXPECT_TRUE(seen(lamp).state().checked);
    EXPECT_EQ(value(lamp), "aan");
}

TEST(Accessible, GivesTheKnobItsValue) {
    Knob knob;
    knob.setValue(16384);
    QAccessibleValueInterface *number = seen(knob).valueInterface();
    ASSERT_NE(number, nullptr);
    EXPECT_EQ(number->currentValue().toInt(), 16384);
}

TEST(Accessible, ReachesTheOperableWidgetsByTheTabKey) {
    LedSpin spin;
    Knob knob;
    EXPECT_TRUE(spin.focusPolicy() & Qt::TabFocus);
    EXPECT_TRUE(knob.focusPolicy() & Qt::TabFocus);
    EXPECT_FALSE(spin.findChild<QAbstractButton *>("up")->focusPolicy() & Qt::TabFocus);
}

} // namespace

} // namespace orvel
