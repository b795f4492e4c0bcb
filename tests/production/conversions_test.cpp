// Converting in the background, and sources on servers that give no answer.
#include "platform/fake/fake_audio_files.h"
#include "platform/lame/system_audio_files.h"
#include "production/conversions.h"
#include "production/transcode.h"
#include "tests/platform/away/gate.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

namespace orvel {

namespace {

/// A reader that opens nothing before its gate is open.
class HangingReader : public AudioFileReader {
  public:
    explicit HangingReader(std::shared_ptr<test::Gate> gate) : gate_(std::move(gate)) {}
    void open(const QString & /*path*/) override { gate_->pass(); }
    void close() override {}
    [[nodiscard]] int errorState() const override { return -1; }
    [[nodiscard]] int sampleRate() const override { return 44100; }
    [[nodiscard]] int channels() const override { return 1; }
    [[nodiscard]] std::int64_t frames() const override { return 0; }
    [[nodiscard]] int bytesPerFrame() const override { return 2; }
    [[nodiscard]] QByteArray readBlock() override { return {}; }

  private:
    std::shared_ptr<test::Gate> gate_;
};

class HangingFiles : public SystemAudioFiles {
  public:
    std::shared_ptr<test::Gate> gate = std::make_shared<test::Gate>();
    [[nodiscard]] std::unique_ptr<AudioFileReader> reader() override { return std::make_unique<HangingReader>(gate); }
};

} // namespace

// Stopping an import waited for a dead server, with the window.
TEST(Converting, StoppingDoesNotWaitForASourceThatGivesNoAnswer) {
    const QTemporaryDir folder;
    HangingFiles files;
    files.gate->close();
    QElapsedTimer watch;
    {
        Conversions conversions(files, mp3Format(2, false));
        for (const char *name : {"een", "twee", "drie"}) {
            conversions.add(QStringLiteral("/server/weg.wav"), folder.filePath(QString::fromUtf8(name)));
        }
        watch.start();
        conversions.run([calls = 0](int, int) mutable { return ++calls < 10; });
        EXPECT_LT(watch.elapsed(), 2000);
        EXPECT_GT(files.gate->passing(), 0) << "nothing hung";
        for (std::size_t i = 0; i < conversions.count(); ++i) {
            EXPECT_FALSE(conversions.isConverted(i));
        }
    }
    // The threads outlive what started them, and end.
    files.gate->open();
    for (int i = 0; i < 200 && files.gate->passing() > 0; ++i) {
        QThread::msleep(10);
    }
    EXPECT_EQ(files.gate->passing(), 0);
}

} // namespace orvel
