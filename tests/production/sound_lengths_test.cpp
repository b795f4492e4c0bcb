// How long sound files are, without waiting for any of them.
#include "production/sound_lengths.h"
#include "tests/desk.h"

#include <QElapsedTimer>
#include <QThread>

namespace orvel {

namespace {

class Measuring : public Desk {
  protected:
    QString putWav(const QString &name, int frames) {
        const auto writer = realAudioFiles.wavWriter();
        writer->create(path(name), 44100);
        writer->write(std::vector<std::int16_t>(static_cast<std::size_t>(frames), 1000));
        writer->close();
        return path(name);
    }
    bool waitUntilKnown() {
        QElapsedTimer patience;
        patience.start();
        while (!lengths.areKnown() && !patience.hasExpired(5000)) {
            QThread::msleep(1);
        }
        return lengths.areKnown();
    }

    SoundLengths lengths{platform.audioFiles};
};

} // namespace

TEST_F(Measuring, EveryFileHasItsLengthOrIsUnreadable) {
    disk.write(path(QStringLiteral("stuk.wav")), "geen geluid");
    lengths.measure({putWav(QStringLiteral("een.wav"), 44100), path(QStringLiteral("stuk.wav")),
                     path(QStringLiteral("weg.mp3")), putWav(QStringLiteral("leeg.wav"), 0),
                     putWav(QStringLiteral("lang.wav"), 44100 * 7 + 22050)});
    ASSERT_TRUE(waitUntilKnown());
    EXPECT_EQ(lengths.of(0), 1000);
    EXPECT_EQ(lengths.of(1), SoundLengths::unreadable);
    EXPECT_EQ(lengths.of(2), SoundLengths::unreadable);
    EXPECT_EQ(lengths.of(3), 0);
    EXPECT_EQ(lengths.of(4), 7500);
    EXPECT_EQ(lengths.of(5), SoundLengths::notYet);
}

TEST_F(Measuring, AnotherListForgetsTheOneBefore) {
    EXPECT_TRUE(lengths.areKnown()) << "nothing is asked";
    lengths.measure({putWav(QStringLiteral("een.wav"), 44100)});
    lengths.measure({putWav(QStringLiteral("twee.wav"), 88200)});
    ASSERT_TRUE(waitUntilKnown());
    EXPECT_EQ(lengths.of(0), 2000);
    lengths.measure({});
    EXPECT_TRUE(lengths.areKnown());
    EXPECT_EQ(lengths.of(0), SoundLengths::notYet);
}

} // namespace orvel
