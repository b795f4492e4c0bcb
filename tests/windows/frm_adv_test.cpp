#include "platform/fake/fake_sound_card.h"
#include "windows/frm_adv.h"

#include <QTest>

#include <gtest/gtest.h>

namespace orvel {

namespace {

const Card microphone{QStringLiteral("mic"),
                      QStringLiteral("Microfoon"),
                      {QStringLiteral("Ingang"), QStringLiteral("Lijn"), QStringLiteral("Kaal")},
                      1,
                      true};

class Advanced : public testing::Test {
  protected:
    Advanced() {
        record.setCurrentDevice(1);
        record.setCurrentLine(1);
        line(1).properties = {{QStringLiteral("Dempen"), true, 0, 1},
                              {QStringLiteral("Vertraging (ms)"), 20, -2000, 2000},
                              {QStringLiteral("Serienummer"), QStringLiteral("A1"), 0, 0}};
        line(2).properties = {{QStringLiteral("Versterking"), 2, 0, 3}};
    }

    FakeLineMixer::Line &line(int number) { return sound.mixer().line(microphone.key, number); }
    [[nodiscard]] QVariant kept(int line_, int property) {
        return line(line_).properties.at(static_cast<std::size_t>(property)).value;
    }

    FakeSoundCard sound{{microphone}};
    AudioRecord &record = sound.audioRecord();
    frmAdv window{record};
};

} // namespace

TEST_F(Advanced, TheTitleNamesTheSelectedLine) {
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Geavanceerde instellingen"));
    window.Form_Load();
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Ingang: Advanced Properties"));
    record.setCurrentLine(2);
    window.Form_Load();
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Lijn: Advanced Properties"));
}

TEST_F(Advanced, TheFirstPropertyIsSelected) {
    window.Form_Load();
    ASSERT_EQ(window.Combo1->count(), 3);
    EXPECT_EQ(window.Combo1->itemText(1), QStringLiteral("Vertraging (ms)"));
    EXPECT_EQ(window.Combo1->currentIndex(), 0);
    EXPECT_FALSE(window.Check1->isHidden());
    EXPECT_TRUE(window.Check1->isChecked());
    EXPECT_TRUE(window.Slider1->isHidden());
    EXPECT_TRUE(window.lblNone->isHidden());
}

TEST_F(Advanced, AWholeNumberIsASlider) {
    window.Form_Load();
    window.Combo1->setCurrentIndex(1);
    EXPECT_TRUE(window.Check1->isHidden());
    EXPECT_FALSE(window.Slider1->isHidden());
    EXPECT_EQ(window.Slider1->value(), 20);
    EXPECT_EQ(window.Slider1->minimum(), -2000);
    EXPECT_EQ(window.Slider1->maximum(), 2000);
    EXPECT_EQ(window.lblValue->text(), QStringLiteral("20"));
    window.Combo1->setCurrentIndex(0);
    EXPECT_FALSE(window.Check1->isHidden());
    EXPECT_TRUE(window.Slider1->isHidden());
}

TEST_F(Advanced, AnotherKindOfValueChangesNothing) {
    window.Form_Load();
    window.Combo1->setCurrentIndex(1);
    window.Combo1->setCurrentIndex(2);
    EXPECT_TRUE(window.Check1->isHidden());
    EXPECT_FALSE(window.Slider1->isHidden());
    EXPECT_EQ(window.Slider1->value(), 20);
    EXPECT_EQ(kept(1, 2), QVariant(QStringLiteral("A1")));
}

TEST_F(Advanced, SelectingWritesNothing) {
    window.Form_Load();
    window.Combo1->setCurrentIndex(1);
    window.Combo1->setCurrentIndex(0);
    EXPECT_EQ(kept(1, 0), QVariant(true));
    EXPECT_EQ(kept(1, 1), QVariant(20));
}

TEST_F(Advanced, TheCheckBoxWrites) {
    window.Form_Load();
    window.show();
    window.Check1->click();
    EXPECT_EQ(kept(1, 0), QVariant(false));
    EXPECT_FALSE(window.Check1->isChecked());
    window.Check1->click();
    EXPECT_EQ(kept(1, 0), QVariant(true));
    EXPECT_TRUE(window.Check1->isChecked());
}

TEST_F(Advanced, TheSliderWrites) {
    window.Form_Load();
    window.Combo1->setCurrentIndex(1);
    window.Slider1->setValue(150);
    EXPECT_EQ(kept(1, 1), QVariant(150));
    EXPECT_EQ(window.lblValue->text(), QStringLiteral("150"));
}

TEST_F(Advanced, WhatTheCardRefusesSnapsBack) {
    sound.mixer().refuseProperties();
    window.Form_Load();
    window.show();
    window.Check1->click();
    EXPECT_TRUE(window.Check1->isChecked());
    window.Combo1->setCurrentIndex(1);
    window.Slider1->setValue(150);
    EXPECT_EQ(window.Slider1->value(), 20);
    EXPECT_EQ(window.lblValue->text(), QStringLiteral("20"));
}

TEST_F(Advanced, ALineWithoutPropertiesSaysSo) {
    window.Form_Load();
    record.setCurrentLine(3);
    window.Form_Load();
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Kaal: Advanced Properties"));
    EXPECT_EQ(window.Combo1->count(), 0);
    EXPECT_TRUE(window.Check1->isHidden());
    EXPECT_TRUE(window.Slider1->isHidden());
    EXPECT_FALSE(window.lblNone->isHidden());
}

TEST_F(Advanced, ACardThatIsUnpluggedMeanwhileLeavesAnEmptyWindow) {
    window.Form_Load();
    window.show();
    sound.plug({});
    record.refresh();
    window.Check1->click();
    EXPECT_EQ(window.Combo1->count(), 0);
    EXPECT_TRUE(window.Check1->isHidden());
    EXPECT_FALSE(window.lblNone->isHidden());
}

TEST_F(Advanced, EveryControlHasAName) {
    for (const QWidget *control : {static_cast<QWidget *>(window.Combo1), static_cast<QWidget *>(window.Check1),
                                   static_cast<QWidget *>(window.Slider1), static_cast<QWidget *>(window.cmdClose)}) {
        EXPECT_FALSE(control->accessibleName().isEmpty()) << control->objectName().toStdString();
    }
}

} // namespace orvel
