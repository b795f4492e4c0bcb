// The table of stages, and the panel that is built from it.
#include "production/stages.h"
#include "widgets/led_spin.h"
#include "windows/processor_panel.h"

#include <QCheckBox>

#include <array>
#include <gtest/gtest.h>

namespace orvel {

namespace {

QStringList captions(const std::vector<const Stage *> &stages) {
    QStringList captions;
    for (const Stage *stage : stages) {
        captions << QString::fromUtf8(stage->caption);
    }
    return captions;
}

LedSpin &knob(const ProcessorPanel &panel, const char *name) {
    return *panel.findChild<LedSpin *>(QString::fromLatin1(name));
}

} // namespace

TEST(Stages, TheirKeysStandInTheSettingsFilesOrder) {
    QStringList keys;
    const ProcessorSettings settings = processorKeys();
    for (const ProcessorSettings::Value &value : settings.values()) {
        keys << QString::fromLatin1(value.key);
        EXPECT_EQ(value.isCheck, keys.last().startsWith(QStringLiteral("Use"))) << value.key;
        EXPECT_EQ(value.value, 0);
    }
    EXPECT_EQ(keys.join(u' '),
              QStringLiteral("UseAmp Amp UseNorm Norm UseTrim Trim Attack UseComp CompTresh CompRate CompRMS UseReverb "
                             "RevDelay RevDepth RevDecay RevRate"));
}

TEST(Stages, ThoseThatAreOnRunInTheirFixedOrder) {
    ProcessorSettings settings = processorKeys();
    EXPECT_TRUE(stagesToRun(settings).empty());
    for (const Stage &stage : stages()) {
        settings.set(stage.key, 1);
    }
    EXPECT_EQ(captions(stagesToRun(settings)).join(u' '),
              QStringLiteral("Versterking Normalisatie Compressor Reverb Trimmen"));
    settings.set("UseNorm", 0);
    settings.set("UseReverb", 0);
    EXPECT_EQ(captions(stagesToRun(settings)).join(u' '), QStringLiteral("Versterking Compressor Trimmen"));
}

TEST(Stages, ThePanelTellsWhatTheSettingsFileMayNotHold) {
    ProcessorPanel panel;
    ProcessorSettings settings = processorKeys();
    EXPECT_EQ(panel.show(settings), QString()) << "what is missing is 0, also for a knob that begins at 1";
    EXPECT_EQ(knob(panel, "ledRevRate").value(), 0);
    settings.set("Amp", 800);
    settings.set("Norm", -50);
    settings.set("Trim", -90);
    settings.set("CompRate", -3);
    settings.set("RevDelay", 2147483647);
    EXPECT_EQ(
        panel.show(settings),
        QStringLiteral("Buiten de grenzen in orvel.ini: Versterking Niveau van 800 naar 15, Normalisatie Niveau van "
                       "-50 naar 0, Compressor Rate van -3 naar 1, Reverb Delay van 2147483647 naar 1000."));
    EXPECT_EQ(knob(panel, "ledAmp").value(), 15);
    EXPECT_EQ(knob(panel, "ledNorm").value(), 0);
    EXPECT_EQ(knob(panel, "ledTrim").value(), -90);
    EXPECT_EQ(knob(panel, "ledCompRate").value(), 1);
    EXPECT_EQ(knob(panel, "ledRevDelay").value(), 1000);
}

TEST(Stages, ThePanelGivesBackWhatItShows) {
    ProcessorPanel panel;
    ProcessorSettings settings = processorKeys();
    std::int32_t number = 1;
    for (ProcessorSettings::Value &value : settings.values()) {
        value.value = value.isCheck ? 1 : number++;
    }
    settings.set("CompTresh", -7);
    settings.set("Trim", -8);
    settings.set("UseNorm", 0);
    panel.show(settings);
    EXPECT_TRUE(panel.findChild<QCheckBox *>(QStringLiteral("chkAmp"))->isChecked());
    EXPECT_FALSE(panel.findChild<QCheckBox *>(QStringLiteral("chkNorm"))->isChecked());
    const ProcessorSettings shown = panel.settings();
    for (const ProcessorSettings::Value &value : settings.values()) {
        EXPECT_EQ(shown[value.key], value.value) << value.key;
    }
}

TEST(Stages, EveryControlCanBeFoundAndHeard) {
    const ProcessorPanel panel;
    for (const auto &[name, heard] : {std::pair{"ledAmp", "Versterking Niveau"},
                                      {"ledNorm", "Normalisatie Niveau"},
                                      {"ledTrim", "Trimmen Drempel"},
                                      {"ledAttack", "Trimmen Attack"},
                                      {"ledCompTreshold", "Compressor Treshold"},
                                      {"ledCompRate", "Compressor Rate"},
                                      {"ledCompRMS", "Compressor RMStime"},
                                      {"ledRevDelay", "Reverb Delay"},
                                      {"ledRevDepth", "Reverb Depth"},
                                      {"ledRevDecay", "Reverb Decay"},
                                      {"ledRevRate", "Reverb Rate"}}) {
        ASSERT_NE(panel.findChild<LedSpin *>(QString::fromLatin1(name)), nullptr) << name;
        EXPECT_EQ(knob(panel, name).accessibleName(), QString::fromLatin1(heard));
    }
    for (const auto &[name, heard] : {std::pair{"chkAmp", "Versterking ingeschakeld"},
                                      {"chkNorm", "Normalisatie ingeschakeld"},
                                      {"chkTrim", "Trimmen ingeschakeld"},
                                      {"chkComp", "Compressor ingeschakeld"},
                                      {"chkReverb", "Reverb ingeschakeld"}}) {
        const auto *check = panel.findChild<QCheckBox *>(QString::fromLatin1(name));
        ASSERT_NE(check, nullptr) << name;
        EXPECT_EQ(check->accessibleName(), QString::fromLatin1(heard));
    }
}

// The limits and steps stood in the table alone: a typing error there was the presenter's.
TEST(Stages, EveryKnobHasItsUnitLimitsAndStep) {
    const std::array wanted = {"Amp dB -15 15 1",      "Norm % 0 100 1",        "Trim dB -90 0 1",
                               "Attack ms 0 1000 10",  "CompTresh dB -96 0 1",  "CompRate % 1 100 1",
                               "CompRMS ms 0 1000 10", "RevDelay ms 0 1000 10", "RevDepth % 1 100 1",
                               "RevDecay % 1 100 1",   "RevRate % 1 100 1"};
    QStringList found;
    for (const Stage &stage : stages()) {
        for (const StageKnob &knob : stage.knobs) {
            found << QStringLiteral("%1 %2 %3 %4 %5")
                         .arg(QString::fromLatin1(knob.key), QString::fromUtf8(knob.unit))
                         .arg(knob.minimum)
                         .arg(knob.maximum)
                         .arg(knob.step);
        }
    }
    ASSERT_EQ(found.size(), static_cast<qsizetype>(wanted.size()));
    for (std::size_t index = 0; index < wanted.size(); ++index) {
        EXPECT_EQ(found.at(static_cast<qsizetype>(index)).toStdString(), wanted.at(index));
    }
}

} // namespace orvel
