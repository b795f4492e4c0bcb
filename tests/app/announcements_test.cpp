// What happens is announced to who does not see it, wherever the focus is. Qt without a screen passes no events to
// screen readers: what they are told is read from the interface that the events point at.
#include "station.h"
#include "widgets/alarm_line.h"
#include "widgets/status_line.h"

#include <QAccessible>

namespace orvel {

namespace {

constexpr int announcedLink = 1; // rows of access-2003.mdb

class Announcements : public Station {
  protected:
    void openDemo() {
        addPlaylist(demo);
        configure(QStringLiteral("[Program]\nCountdown=2"));
        ASSERT_TRUE(start());
        open(demo);
        select(announcedLink);
    }
    static QString saidBy(QWidget *line) {
        QAccessibleInterface *face = QAccessible::queryAccessibleInterface(line);
        EXPECT_EQ(face->role(), QAccessible::AlertMessage);
        return face->text(QAccessible::Name);
    }
    /// The latest announcement.
    [[nodiscard]] QString said() const { return saidBy(window->panels().lblStatus); }
};

} // namespace

TEST_F(Announcements, ALinkIsFollowedFromTheCountDownToTheFile) {
    openDemo();
    const QString name = window->workplace().step.VoiceTrackName;
    const QString before = said();
    click(window->panels().recorderPanel->cmdRec);
    timers.advance(1000);
    EXPECT_EQ(said(), before) << "the count-down runs";
    timers.advance(2000);
    EXPECT_EQ(said(), QStringLiteral("De aftelling is voorbij, de opname loopt."));
    sound.deliver(44100);
    timers.advance(1000);
    click(window->panels().recorderPanel->cmdRec);
    EXPECT_EQ(said(), QStringLiteral("De opname is gestopt."));
    click(window->panels().savePanel->cmdSave);
    EXPECT_EQ(said(), name + QStringLiteral(" is bewaard."));
}

TEST_F(Announcements, AFaultIsToldAndShown) {
    openDemo();
    window->workplace().view.tell(QStringLiteral("De schijf is vol."));
    EXPECT_EQ(said(), QStringLiteral("De schijf is vol."));
    EXPECT_EQ(window->panels().lblStatus->text(), QStringLiteral("De schijf is vol."));
}

TEST_F(Announcements, WhatTheGuardHasToTell) {
    openDemo();
    window->panels().lblGuard->tell({QStringLiteral("De microfoon zwijgt.")});
    EXPECT_EQ(saidBy(window->panels().lblGuard), QStringLiteral("De microfoon zwijgt."));
}

TEST_F(Announcements, WhatTheStatusLineShowsStaysWhenTheRecordingIsAnnounced) {
    openDemo();
    window->workplace().view.tell(QStringLiteral("Meeluisteren kan niet."));
    beginRecording();
    EXPECT_EQ(window->panels().lblStatus->text(), QStringLiteral("Meeluisteren kan niet."));
    EXPECT_EQ(said(), QStringLiteral("De aftelling is voorbij, de opname loopt."));
}

} // namespace orvel
