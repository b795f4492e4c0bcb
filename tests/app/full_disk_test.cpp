// Disks that are really full: a few hundred kilobytes of memory mounted where takes, MP3 files or voice tracks go.
#include "station.h"

#include <sys/mount.h>

namespace orvel {

namespace {

/// A disk with so many kilobytes at a folder, as long as it lives.
class SmallDisk {
  public:
    SmallDisk(const QString &folder, int kilobytes) : folder_(QFile::encodeName(folder)) {
        const QByteArray size = "size=" + QByteArray::number(kilobytes) + "k";
        mounted_ = ::mount("tmpfs", folder_.constData(), "tmpfs", 0, size.constData()) == 0;
    }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;
    SmallDisk(SmallDisk &&) = delete;
    SmallDisk &operator=(SmallDisk &&) = delete;
    ~SmallDisk() {
        if (mounted_) {
            ::umount2(folder_.constData(), MNT_DETACH);
        }
    }
    [[nodiscard]] bool isMounted() const { return mounted_; }

  private:
    QByteArray folder_;
    bool mounted_ = false;
};

class FullDisk : public Station {
  protected:
    void openDemo(const QString &settings) {
        configure(settings);
        addPlaylist(QStringLiteral("access-2003.mdb"));
        ASSERT_TRUE(start());
        open(QStringLiteral("access-2003.mdb"));
        while (window->workplace().datList.value(row, TypeColumn).toInt() != PresStep) {
            ++row;
        }
        select(row);
        name = window->workplace().step.VoiceTrackName;
    }
    [[nodiscard]] QString serverSettings() {
        QDir(folder.path()).mkdir(QStringLiteral("server"));
        return QStringLiteral("[Files]\nVoiceTrackPath=%1/server\n[Program]\nServer=1").arg(folder.path());
    }
    [[nodiscard]] double seconds(const QString &file) const {
        return output(QStringLiteral("soxi"), {QStringLiteral("-D"), path(file)}).toDouble();
    }

    int row = 0;
    QString name;
};

} // namespace

TEST_F(FullDisk, ARecordingStopsIsToldAndKeepsWhatTheDiskTook) {
    const SmallDisk disk_(path(QStringLiteral("temp")), 256);
    if (!disk_.isMounted()) {
        GTEST_SKIP() << "this user may not mount a disk";
    }
    openDemo(QStringLiteral("[Program]\nCountdown=0"));
    beginRecording();
    sound.deliver(44100 * 5);
    sound.flush();
    prompts.expectReport(QStringLiteral("De schijf is vol"));
    timers.advance(200);
    EXPECT_EQ(window->panels().recorderPanel->cmdRec->text(), QStringLiteral("START OPNAME"));
    const double kept = seconds(QStringLiteral("temp/") + name + QStringLiteral(".wav"));
    EXPECT_GT(kept, 2.0);
    EXPECT_LT(kept, 3.0);
}

TEST_F(FullDisk, AConversionThatFindsNoRoomIsSilentAndTheTakeIsSafe) {
    const SmallDisk disk_(path(QStringLiteral("temp")), 200);
    if (!disk_.isMounted()) {
        GTEST_SKIP() << "this user may not mount a disk";
    }
    openDemo(serverSettings());
    record(2000);
    click(window->panels().savePanel->cmdSave);
    EXPECT_TRUE(filesIn(QStringLiteral("server")).isEmpty());
    const QStringList kept = filesIn(QStringLiteral("temp"));
    ASSERT_EQ(kept.size(), 1);
    EXPECT_NEAR(seconds(QStringLiteral("temp/") + kept.first()), 2.0, 0.01);
    EXPECT_TRUE(window->panels().lblStatus->text().contains(QStringLiteral("blijft klaarstaan")));
}

TEST_F(FullDisk, AServerWithoutRoomIsToldAndTheTakeIsSafe) {
    const QString settings = serverSettings();
    const SmallDisk disk_(path(QStringLiteral("server")), 16);
    if (!disk_.isMounted()) {
        GTEST_SKIP() << "this user may not mount a disk";
    }
    openDemo(settings);
    record(2000);
    prompts.expectReport(QStringLiteral("Error: 61. "));
    click(window->panels().savePanel->cmdSave);
    EXPECT_TRUE(QDir(path(QStringLiteral("server"))).entryList(QDir::Files | QDir::Hidden).isEmpty());
    const QStringList takes = filesIn(QStringLiteral("temp"));
    ASSERT_EQ(takes.size(), 1);
    EXPECT_NEAR(seconds(QStringLiteral("temp/") + takes.first()), 2.0, 0.01);
    EXPECT_TRUE(window->panels().savePanel->cmdSave->isEnabled());
    EXPECT_TRUE(window->panels().lblStatus->text().contains(QStringLiteral("blijft klaarstaan")));
}

} // namespace orvel
