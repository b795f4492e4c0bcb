#include "recording/watch.h"
#include "tests/desk.h"

namespace orvel {

namespace {

/// Samples so loud for so long.
std::vector<std::int16_t> steady(int steps, int milliseconds) {
    return std::vector<std::int16_t>(static_cast<std::size_t>(milliseconds) * 44100 / 1000,
                                     static_cast<std::int16_t>(steps));
}

constexpr int watchedVoice = 6000;
constexpr int watchedRoom = 20;

class TheWatch : public Desk {
  protected:
    TheWatch() {
        onChanged = [this] { watch.sessionChanged(); };
        onHeard = [this](const RecorderStatus &status) { watch.recorded(status); };
    }

    void begin() {
        select(link1);
        watch.begin();
    }
    /// Lets so much time pass while the microphone brings this.
    void hear(int steps, int milliseconds) {
        for (int passed = 0; passed < milliseconds; passed += 40) {
            sound.deliver(steady(steps, 40));
            timers.advance(40);
        }
    }
    [[nodiscard]] bool tells(Danger danger) const {
        const std::vector<Warning> warnings = watch.guard().warnings();
        return std::any_of(warnings.begin(), warnings.end(), [&](const Warning &w) { return w.danger == danger; });
    }

    QString chosen = QStringLiteral("Microfoon");
    float shown = 0;
    int changed = 0;
    Watch watch{{platform, settings, places, session, [this] { return chosen; },
                 [this](float left, float) { shown = left; }, [this] { ++changed; }}};
};

} // namespace

TEST_F(TheWatch, ListensWhereARecordingCanBeginAndWritesNothing) {
    watch.begin();
    EXPECT_FALSE(sound.isOpen()) << "no slot is selected";
    select(link1);
    EXPECT_TRUE(sound.isOpen());
    hear(watchedVoice, 1000);
    EXPECT_NEAR(shown, watchedVoice / 32768.0F, 0.001F);
    EXPECT_EQ(watch.verdict(), InputVerdict::Good);
    EXPECT_GT(changed, 0);
    EXPECT_EQ(filesIn(QStringLiteral("temp")), QStringList());
    select(0);
    EXPECT_FALSE(sound.isOpen()) << "a track is no slot";
    EXPECT_EQ(shown, 0);
    EXPECT_EQ(watch.verdict(), InputVerdict::Unknown);
    select(link2);
    EXPECT_TRUE(sound.isOpen());
}

TEST_F(TheWatch, DoesNothingBeforeItBegins) {
    select(link1);
    timers.advance(5000);
    EXPECT_FALSE(sound.isOpen());
}

TEST_F(TheWatch, LeavesTheTakeToTheSession) {
    begin();
    hear(watchedRoom, 1000);
    session.cmdRec_Click();
    hear(watchedVoice, 3000);
    ASSERT_EQ(session.state(), SessionState::Recording);
    hear(watchedVoice, 2000);
    EXPECT_EQ(watch.verdict(), InputVerdict::Good) << "the verdict goes on in the take";
    select(0); // the grid is moved while it records
    EXPECT_TRUE(sound.recorder().isRecording());
    session.cmdRec_Click();
    EXPECT_EQ(QFileInfo(path(wavOf1)).size(), 44 + 2 * 2 * 44100);
    EXPECT_TRUE(sound.isOpen()) << "and listens again after it";
    EXPECT_TRUE(watch.guard().warnings().empty());
}

TEST_F(TheWatch, ListensAgainAfterACountDownThatWasCalledOff) {
    begin();
    session.cmdRec_Click();
    hear(watchedRoom, 1000);
    session.cancelCountDown();
    EXPECT_TRUE(sound.isOpen());
    hear(watchedVoice, 1000);
    EXPECT_EQ(watch.verdict(), InputVerdict::Good);
}

TEST_F(TheWatch, ADeadMicrophoneIsToldWithASecondLeft) {
    begin();
    hear(0, 1000);
    EXPECT_TRUE(watch.guard().warnings().empty());
    session.cmdRec_Click();
    hear(0, 1960);
    EXPECT_FALSE(tells(Danger::MicrophoneSilent));
    hear(0, 80);
    EXPECT_TRUE(tells(Danger::MicrophoneSilent));
    hear(watchedVoice, 80);
    EXPECT_FALSE(tells(Danger::MicrophoneSilent));
}

TEST_F(TheWatch, ClippingIsKeptWithItsPlaceInTheTake) {
    begin();
    session.cmdRec_Click();
    hear(watchedRoom, 3000);
    hear(watchedVoice, 1000);
    hear(-32768, 40);
    EXPECT_TRUE(tells(Danger::Clipping));
    EXPECT_EQ(watch.verdict(), InputVerdict::TooLoud);
    session.cmdRec_Click();
    EXPECT_FALSE(tells(Danger::Clipping));
    EXPECT_TRUE(watch.guard().hasClipped());
    ASSERT_EQ(watch.guard().clips().size(), 1U);
    EXPECT_NEAR(watch.guard().clips().front(), 1000, 1);
}

TEST_F(TheWatch, AMicrophoneThatIsPulledOutHasNoVerdictAndIsFoundAgain) {
    begin();
    hear(watchedVoice, 2000);
    ASSERT_EQ(watch.verdict(), InputVerdict::Good);
    sound.unplug();
    sound.plug({});
    sound.audioRecord().refresh();
    hear(watchedVoice, 2000);
    EXPECT_EQ(watch.verdict(), InputVerdict::Unknown);
    EXPECT_EQ(shown, 0);
    ASSERT_TRUE(tells(Danger::OtherCard));
}

TEST_F(TheWatch, AnotherCardThanTheChosenOneIsToldBeforeTheTake) {
    chosen = QStringLiteral("Mengtafel");
    begin();
    EXPECT_TRUE(tells(Danger::OtherCard));
    chosen = QStringLiteral("Microfoon");
    timers.advance(1000);
    EXPECT_FALSE(tells(Danger::OtherCard));
}

TEST_F(TheWatch, ADiskThatGetsFullIsToldAndTheWarningGoes) {
    begin();
    EXPECT_FALSE(tells(Danger::DiskNearlyFull));
    files.setFreeBytes(599 * 88'200);
    timers.advance(11'000);
    EXPECT_TRUE(tells(Danger::DiskNearlyFull));
    files.setFreeBytes(INT64_C(1) << 40);
    timers.advance(11'000);
    EXPECT_FALSE(tells(Danger::DiskNearlyFull));
}

TEST_F(TheWatch, AServerThatCannotBeWrittenIsToldBeforeTheTake) {
    settings.ServerMode = true;
    settings.VoicetrackPath = path(QStringLiteral("server"));
    begin();
    EXPECT_TRUE(tells(Danger::ServerNotWritable)) << "it is not there";
    QDir(folder.path()).mkdir(QStringLiteral("server"));
    timers.advance(61'000);
    EXPECT_FALSE(tells(Danger::ServerNotWritable));
    EXPECT_EQ(QDir(settings.VoicetrackPath).entryList(QDir::Files | QDir::Hidden), QStringList())
        << "nothing of the looking stays";
    files.setWritable(Writable::Unknown);
    timers.advance(61'000);
    EXPECT_FALSE(tells(Danger::ServerNotWritable)) << "it may need a moment";
    timers.advance(6'000);
    EXPECT_TRUE(tells(Danger::ServerNotWritable));
}

TEST_F(TheWatch, AServerThatIsNotUsedIsNotAsked) {
    files.setWritable(Writable::No);
    begin();
    timers.advance(61'000);
    EXPECT_FALSE(tells(Danger::ServerNotWritable));
}

} // namespace orvel
