// Stopping a preview waited for a block that a dead server never gave, with the window.
#include "platform/runtime_error.h"
#include "platform/sndfile/patient_reader.h"
#include "tests/platform/away/gate.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <cstring>
#include <gtest/gtest.h>
#include <thread>

namespace orvel {

namespace {

/// A file behind a gate.
class SlowFile : public SndfileReader {
  public:
    explicit SlowFile(std::shared_ptr<test::Gate> gate) : gate_(std::move(gate)) {}
    [[nodiscard]] QByteArray readBlock() override {
        gate_->pass();
        return SndfileReader::readBlock();
    }

  private:
    std::shared_ptr<test::Gate> gate_;
};

/// A WAV file of 16-bit mono samples that count up.
QByteArray wavFile(int frames) {
    QByteArray bytes = QByteArray::fromHex("52494646 00000000 57415645666d7420 10000000 0100 0100 44ac0000 88580100 "
                                           "0200 1000 64617461 00000000");
    const quint32 size = static_cast<quint32>(frames) * 2;
    const quint32 riff = size + 36;
    std::memcpy(bytes.data() + 4, &riff, 4);
    std::memcpy(bytes.data() + 40, &size, 4);
    for (int frame = 0; frame < frames; ++frame) {
        const auto sample = static_cast<qint16>(frame % 30000);
        bytes.append(reinterpret_cast<const char *>(&sample), 2);
    }
    return bytes;
}

class Patient : public testing::Test {
  protected:
    [[nodiscard]] std::shared_ptr<SlowFile> opened() const {
        const QString path = folder.filePath(QStringLiteral("a.wav"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(wavFile(frames));
        file.close();
        auto slow = std::make_shared<SlowFile>(gate);
        slow->open(path);
        return slow;
    }

    static constexpr int frames = 100'000;
    QTemporaryDir folder;
    std::shared_ptr<test::Gate> gate = std::make_shared<test::Gate>();
    PatientReader reader{opened()};
};

} // namespace

TEST_F(Patient, ReadsTheWholeFile) {
    EXPECT_EQ(reader.frames(), frames);
    EXPECT_EQ(reader.sampleRate(), 44100);
    EXPECT_EQ(reader.channels(), 1);
    reader.seek(10);
    QByteArray all;
    for (QByteArray block = reader.readBlock(); !block.isEmpty(); block = reader.readBlock()) {
        all += block;
    }
    EXPECT_EQ(all, wavFile(frames).mid(44 + 20));
}

TEST_F(Patient, WhoInterruptsIsNotKeptWaiting) {
    gate->close();
    std::exception_ptr thrown;
    std::thread feeding([&] {
        try {
            static_cast<void>(reader.readBlock());
        } catch (const RuntimeError &) {
            thrown = std::current_exception();
        }
    });
    QThread::msleep(50);
    QElapsedTimer watch;
    watch.start();
    reader.interrupt();
    feeding.join();
    EXPECT_LT(watch.elapsed(), 300);
    EXPECT_NE(thrown, nullptr);
    reader.resume();
    EXPECT_THROW(static_cast<void>(reader.readBlock()), RuntimeError);
    gate->open();
}

TEST_F(Patient, AnInterruptedReadOfAFileThatAnswersLosesNothing) {
    reader.interrupt();
    EXPECT_FALSE(reader.readBlock().isEmpty());
    reader.resume();
    reader.seek(0);
    EXPECT_FALSE(reader.readBlock().isEmpty());
}

} // namespace orvel
