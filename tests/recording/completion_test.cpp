// What becomes of a playlist when every step has its voice track.
#include "tests/desk.h"

namespace orvel {

namespace {

using Operation = FaultyFileSystem::Operation;

class Finishing : public Desk {
  protected:
    Finishing() {
        disk.write(path(QStringLiteral("new/avond.mdb")), "nieuw");
        for (int row = 0; row < playlist.stepCount(); ++row) {
            playlist.setValue(row, ImportedColumn, true);
        }
        for (const char *name : {"LINK1", "LINK2"}) {
            disk.write(path(QStringLiteral("ok/%1.mp3").arg(QLatin1String(name))), "klank");
        }
        prompts.expectAsk(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"), true);
    }
    [[nodiscard]] QByteArray finished() const { return disk.read(path(QStringLiteral("ok/avond.mdb"))); }
};

} // namespace

// A playlist that was finished a second time stayed in the finished folder as it had been the first time.
TEST_F(Finishing, APlaylistThatWasFinishedBeforeIsOverwrittenAndKept) {
    disk.write(path(QStringLiteral("ok/avond.mdb")), "oud");
    completion.CheckLijst();
    EXPECT_EQ(finished(), "nieuw");
    EXPECT_FALSE(exists(QStringLiteral("new/avond.mdb")));
    const auto kept = recovery.kept();
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(kept.front().name, QStringLiteral("avond.mdb"));
}

// The presenter believed that the playlist was gone from the list.
TEST_F(Finishing, ADeletionThatFailsIsReported) {
    files.fail(Operation::Remove, QStringLiteral("new"), ErrorNumber::PermissionDenied);
    EXPECT_THROW(completion.CheckLijst(), RuntimeError);
    EXPECT_EQ(finished(), "nieuw");
    EXPECT_TRUE(exists(QStringLiteral("new/avond.mdb")));
}

} // namespace orvel
