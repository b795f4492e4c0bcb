// The desk tells what may cost a take, before it does and without a box.
#include "station.h"
#include "widgets/alarm_line.h"
#include "widgets/theme.h"
#include "windows/input_panel.h"

#include <QAccessible>

#include <cmath>

namespace orvel {

namespace {

constexpr int guardedLink = 1; // rows of access-2003.mdb
constexpr int guardedVoice = 6000;

/// Relative luminance, as WCAG 2 says.
double luminance(const QColor &colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

/// The ratio of the lightest to the darkest colour on a widget.
double contrast(QWidget &widget) {
    const QImage image = widget.grab().toImage();
    double lightest = 0;
    double darkest = 1;
    for (int y = 2; y < image.height() - 2; ++y) {
        for (int x = 8; x < image.width() - 8; ++x) {
            const double here = luminance(image.pixelColor(x, y));
            lightest = std::max(lightest, here);
            darkest = std::min(darkest, here);
        }
    }
    return (lightest + 0.05) / (darkest + 0.05);
}

class OnGuard : public Station {
  protected:
    void openDemo(const QString &settings = QStringLiteral("[Program]\nCountdown=2")) {
        addPlaylist(demo);
        configure(settings);
        ASSERT_TRUE(start());
        open(demo);
    }
    void hear(int steps, int milliseconds) {
        const std::vector<std::int16_t> look(44100 * 40 / 1000, static_cast<std::int16_t>(steps));
        for (int passed = 0; passed < milliseconds; passed += 40) {
            sound.deliver(look);
            timers.advance(40);
        }
    }
    [[nodiscard]] AlarmLine &sign() const { return *window->panels().lblGuard; }
    [[nodiscard]] QString verdict() const { return window->panels().inputPanel->lblInput->text(); }
    [[nodiscard]] QRect placeOf(QWidget *widget) const {
        return {widget->mapTo(window.get(), QPoint()), widget->size()};
    }
};

} // namespace

TEST_F(OnGuard, TheInputIsHeardAsSoonAsASlotIsSelected) {
    openDemo();
    EXPECT_FALSE(sound.isOpen());
    EXPECT_EQ(verdict(), QString());
    select(guardedLink);
    EXPECT_TRUE(sound.isOpen());
    hear(20, 2000);
    EXPECT_EQ(verdict(), QStringLiteral("\u25CB stil"));
    hear(guardedVoice, 1000);
    EXPECT_EQ(verdict(), QStringLiteral("\u2713 goed"));
    EXPECT_GT(window->panels().meterPanel->levLeft->levelDb(), -20);
    hear(32767, 1000);
    EXPECT_EQ(verdict(), QStringLiteral("\u25B2 te luid"));
    EXPECT_EQ(filesIn(QStringLiteral("temp")), QStringList());
    select(0);
    EXPECT_FALSE(sound.isOpen());
    EXPECT_EQ(verdict(), QString());
    EXPECT_FALSE(sign().isVisible());
}

TEST_F(OnGuard, ASilentMicrophoneIsToldAtTheEndOfTheCountDownAndNothingBelowMoves) {
    openDemo();
    select(guardedLink);
    hear(0, 1000);
    const QRect button = placeOf(window->panels().recorderPanel->cmdRec);
    click(window->panels().recorderPanel->cmdRec);
    hear(0, 2040);
    QCoreApplication::processEvents();
    ASSERT_TRUE(sign().isVisible());
    EXPECT_EQ(sign().text(), QStringLiteral("\u26A0 Er komt geen geluid uit de microfoon."));
    EXPECT_EQ(placeOf(window->panels().recorderPanel->cmdRec), button);
    EXPECT_GT(sign().fontInfo().pixelSize(), window->fontInfo().pixelSize());
    hear(guardedVoice, 40);
    EXPECT_FALSE(sign().isVisible());
}

TEST_F(OnGuard, TheClippingLampStaysOnUntilTheNextTake) {
    openDemo(QStringLiteral("[Program]\nCountdown=0"));
    select(guardedLink);
    InputPanel &input = *window->panels().inputPanel;
    beginRecording();
    hear(guardedVoice, 1000);
    EXPECT_FALSE(input.lblClip->isVisible());
    hear(-32768, 40);
    EXPECT_TRUE(sign().text().contains(QStringLiteral("vervormt"))) << sign().text().toStdString();
    click(window->panels().recorderPanel->cmdRec);
    EXPECT_FALSE(sign().isVisible());
    EXPECT_TRUE(input.lblClip->isVisible());
    EXPECT_TRUE(input.ledClip->isLit());
    hear(guardedVoice, 5000);
    EXPECT_TRUE(input.lblClip->isVisible());
    beginRecording();
    hear(guardedVoice, 80);
    EXPECT_FALSE(input.lblClip->isVisible());
    click(window->panels().recorderPanel->cmdRec);
}

TEST_F(OnGuard, AnotherCardThanTheStoredOneIsToldAsLongAsItIs) {
    openDemo(QStringLiteral("[Audio]\nRecCard=0\nRecCardName=Mengtafel"));
    ASSERT_TRUE(sign().isVisible());
    EXPECT_EQ(sign().text(), QStringLiteral("\u26A0 Er wordt opgenomen met Microfoon, niet met Mengtafel."));
    window->panels().cardPanel->cobKaart_Click(); // the presenter takes what there is
    timers.advance(1000);
    EXPECT_FALSE(sign().isVisible());
}

TEST_F(OnGuard, SeveralWarningsShareTheLineAndAreReadOut) {
    files.setFreeBytes(0);
    openDemo(QStringLiteral("[Audio]\nRecCard=0\nRecCardName=Mengtafel"));
    EXPECT_TRUE(sign().text().endsWith(QStringLiteral("(en nog 1)"))) << sign().text().toStdString();
    EXPECT_TRUE(sign().toolTip().contains(QStringLiteral("De schijf is vol")));
    const QAccessibleInterface *read = QAccessible::queryAccessibleInterface(&sign());
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->role(), QAccessible::AlertMessage);
    EXPECT_TRUE(read->text(QAccessible::Name).contains(QStringLiteral("niet met Mengtafel")));
    EXPECT_TRUE(read->text(QAccessible::Name).contains(QStringLiteral("De schijf is vol")));
}

TEST_F(OnGuard, AServerThatCannotBeWrittenIsToldBeforeTheTake) {
    QDir(folder.path()).mkdir(QStringLiteral("server"));
    files.setWritable(Writable::No);
    openDemo(QStringLiteral("[Program]\nServer=1\n[Files]\nVoicetrackPath=") + path(QStringLiteral("server")));
    timers.advance(2000);
    EXPECT_FALSE(sign().isVisible()) << "nothing is asked of a server before there is a link to make";
    select(guardedLink);
    timers.advance(1000);
    EXPECT_TRUE(sign().text().contains(QStringLiteral("Op de server kan niet worden bewaard")));
}

TEST_F(OnGuard, TheTakesLoudnessIsShownWithItsStep) {
    openDemo(QStringLiteral("[Program]\nCountdown=0"));
    const QLabel &shown = *window->panels().lblLoudness;
    select(guardedLink);
    record(2000); // 1 kHz at a quarter of full scale, on both channels
    EXPECT_EQ(shown.text(), QStringLiteral("-12,0 LUFS, piek -12,0 dBTP"));
    select(0);
    EXPECT_EQ(shown.text(), QString());
    select(guardedLink);
    EXPECT_FALSE(shown.text().isEmpty());
}

TEST_F(OnGuard, AStationsLoudnessIsThatOfTheTake) {
    openDemo(QStringLiteral("[Program]\nCountdown=0\n[Loudness]\nTarget=-20"));
    select(guardedLink);
    record(2000);
    EXPECT_TRUE(window->panels().lblLoudness->text().startsWith(QStringLiteral("-20,0 LUFS")))
        << window->panels().lblLoudness->text().toStdString();
}

TEST_F(OnGuard, TheSignCanBeReadInBothThemes) {
    openDemo(QStringLiteral("[Audio]\nRecCard=0\nRecCardName=Mengtafel"));
    for (const ThemeVariant variant : {ThemeVariant::Light, ThemeVariant::Dark}) {
        applyTheme(*qApp, variant);
        QCoreApplication::processEvents();
        EXPECT_GE(contrast(sign()), 4.5);
        EXPECT_LE(contrast(sign()), 8) << "it has a colour";
    }
}

} // namespace orvel
