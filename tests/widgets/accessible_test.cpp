#include "widgets/accessible.h"
#include "widgets/gauge.h"
#include "widgets/knob.h"
#include "widgets/lamp.h"
#include "widgets/led_label.h"
#include "widgets/led_spin.h"
#include "widgets/level_meter.h"
#include "widgets/time_display.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QScrollArea>
#include <QSlider>

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

// The desktop's interface knows numbers and texts: the displays gave it neither.
TEST(Accessible, GivesTheDisplaysTheirTextAndTimesTheirSeconds) {
    TimeDisplay time;
    time.setTime(1, 1, 2, 340);
    QAccessibleTextInterface *text = seen(time).textInterface();
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->text(0, text->characterCount()), "1:01:02.34");
    ASSERT_NE(seen(time).valueInterface(), nullptr);
    EXPECT_NEAR(seen(time).valueInterface()->currentValue().toDouble(), 3662.34, 0.001);
    LedLabel label;
    label.setText("Titel");
    text = seen(label).textInterface();
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->text(0, 5), "Titel");
    EXPECT_EQ(text->text(1, 3), "it");
}

// A combo box was called by the text that was chosen in it, and nobody heard what it was for.
TEST(Accessible, CallsAComboBoxByItsPurpose) {
    installAccessibility();
    QComboBox box;
    box.addItems({"128 Kbit/Sec", "256 Kbit/Sec"});
    box.setAccessibleName("Bitrate");
    box.setCurrentIndex(1);
    EXPECT_EQ(seen(box).role(), QAccessible::ComboBox);
    EXPECT_EQ(seen(box).text(QAccessible::Name), "Bitrate");
    EXPECT_EQ(value(box), "256 Kbit/Sec");
    ASSERT_NE(seen(box).textInterface(), nullptr);
    EXPECT_EQ(seen(box).textInterface()->text(0, 3), "256");
    EXPECT_TRUE(seen(box).state().collapsed);
    ASSERT_EQ(seen(box).childCount(), 1);
    QAccessibleInterface *list = seen(box).child(0);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(seen(box).indexOfChild(list), 0);
    EXPECT_EQ(list->object(), box.view()->parentWidget());
    EXPECT_EQ(QAccessible::queryAccessibleInterface(box.view())->text(QAccessible::Name), "Bitrate");
    EXPECT_EQ(seen(box).child(1), nullptr);
    box.show();
    seen(box).actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    EXPECT_TRUE(seen(box).state().expanded);
    box.hidePopup();
}

// The loudest position of a mixer's slider was read as nought.
TEST(Accessible, ReadsASliderTheWayItIsSeen) {
    installAccessibility();
    QSlider slider(Qt::Vertical);
    slider.setRange(0, 65535);
    slider.setInvertedAppearance(true);
    slider.setValue(0); // at the top
    QAccessibleValueInterface *number = seen(slider).valueInterface();
    ASSERT_NE(number, nullptr);
    EXPECT_EQ(number->currentValue().toInt(), 65535);
    number->setCurrentValue(10000);
    EXPECT_EQ(slider.value(), 55535);
    slider.setInvertedAppearance(false);
    EXPECT_EQ(number->currentValue().toInt(), 55535);
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

// Volumes were read as what they are counted in: 0 to 65535.
TEST(Accessible, ReadsAVolumeInPercent) {
    Knob knob;
    knob.setValue(16384);
    QSlider slider(Qt::Vertical);
    slider.setRange(0, 65535);
    slider.setSingleStep(65535 / 50);
    slider.setInvertedAppearance(true);
    slider.setProperty("percent", true);
    slider.setValue(65535 - 16384);
    for (QAbstractSlider *volume : {static_cast<QAbstractSlider *>(&knob), static_cast<QAbstractSlider *>(&slider)}) {
        QAccessibleValueInterface *number = seen(*volume).valueInterface();
        ASSERT_NE(number, nullptr);
        EXPECT_EQ(number->minimumValue().toInt(), 0);
        EXPECT_EQ(number->maximumValue().toInt(), 100);
        EXPECT_EQ(number->currentValue().toInt(), 25);
        EXPECT_EQ(value(*volume), "25 %");
        EXPECT_GE(number->minimumStepSize().toInt(), 1);
        number->setCurrentValue(100);
        EXPECT_EQ(value(*volume), "100 %");
    }
    EXPECT_EQ(knob.value(), 65535);
    EXPECT_EQ(slider.value(), 0) << "at the top";
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
