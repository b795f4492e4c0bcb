// The menus of the right mouse button.
#include "station.h"
#include "windows/desk_menus.h"

namespace orvel {

namespace {

class Menus : public Station {
  protected:
    void openDemo() {
        addPlaylist(demo);
        ASSERT_TRUE(start());
        menus = window->findChild<DeskMenus *>();
        ASSERT_NE(menus, nullptr);
        open(demo);
        slot = rowOf(PresStep);
        track = rowOf(TrackStep);
    }
    int rowOf(int type) {
        int row = 0;
        while (window->workplace().datList.value(row, TypeColumn).toInt() != type) {
            ++row;
        }
        return row;
    }
    /// The entries that can be chosen.
    static QStringList enabled(const QMenu &menu) {
        QStringList names;
        for (const QAction *entry : menu.actions()) {
            if (entry->isEnabled() && !entry->isSeparator()) {
                names << (entry->objectName().isEmpty() ? entry->text() : entry->objectName());
            }
        }
        return names;
    }
    [[nodiscard]] QStringList gridMenu() const {
        QMenu menu;
        menus->fillGridMenu(menu);
        return enabled(menu);
    }
    void choose(const char *name) {
        QMenu menu;
        menus->fillGridMenu(menu);
        for (QAction *entry : menu.actions()) {
            if (entry->objectName() == QString::fromLatin1(name)) {
                entry->trigger();
                return;
            }
        }
        FAIL() << name;
    }

    DeskMenus *menus = nullptr;
    int slot = 0;
    int track = 0;
};

QStringList list(const char *names) {
    return QString::fromLatin1(names).split(u' ', Qt::SkipEmptyParts);
}

} // namespace

TEST_F(Menus, OffersOnARowWhatTheDeskOffers) {
    openDemo();
    select(track);
    EXPECT_EQ(gridMenu(), list("preview Afdrukken"));
    select(slot);
    EXPECT_EQ(gridMenu(), list("cmdRec cmdImport Afdrukken"));
    choose("cmdRec");
    timers.advance(std::int64_t{1000} * (window->workplace().settings.Countdown + 1));
    EXPECT_EQ(window->workplace().session.state(), SessionState::Recording);
    EXPECT_EQ(gridMenu(), list("cmdRec cmdImport Afdrukken")) << "which stops the take";
    sound.deliver(44100);
    choose("cmdRec");
    EXPECT_EQ(window->workplace().session.state(), SessionState::Idle);
    EXPECT_EQ(gridMenu(), list("cmdRec cmdPlay cmdSave cmdImport Afdrukken"));
    choose("cmdSave");
    EXPECT_TRUE(imported(slot));
}

TEST_F(Menus, PreviewsTheChosenTrack) {
    openDemo();
    select(track);
    choose("preview");
    auto *preview = window->findChild<frmPreview *>();
    ASSERT_NE(preview, nullptr);
    EXPECT_TRUE(preview->isVisible());
    preview->close();
}

TEST_F(Menus, OpensAndWipesPlaylists) {
    openDemo();
    QMenu chosen;
    menus->fillNewMenu(chosen);
    EXPECT_EQ(enabled(chosen), list("open cmdWisNew cmdHerstellen"));
    window->panels().filePanel->filNew->clearSelection();
    QMenu nothing;
    menus->fillNewMenu(nothing);
    EXPECT_EQ(enabled(nothing), list("cmdWisNew cmdHerstellen"));
    QMenu finished;
    menus->fillOkMenu(finished);
    EXPECT_EQ(enabled(finished), list("cdmWisKlaar cmdHerstellen"));
    select(slot);
    beginRecording();
    window->panels().filePanel->filNew->setCurrentRow(0);
    QMenu recording;
    menus->fillNewMenu(recording);
    EXPECT_FALSE(enabled(recording).contains(QStringLiteral("open")));
    click(window->panels().recorderPanel->cmdRec);
}

} // namespace orvel
