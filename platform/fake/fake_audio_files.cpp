#include "platform/fake/fake_audio_files.h"

#include "platform/runtime_error.h"

namespace orvel {
namespace {

class FaultyReader : public AudioFileReader {
  public:
    FaultyReader(FakeAudioFiles &owner, std::unique_ptr<AudioFileReader> real)
        : owner_(owner), real_(std::move(real)) {}

    void open(const QString &path) override {
        owner_.note(owner_.opened, path);
        path_ = path;
        block_ = 0;
        failed_ = owner_.faults.open;
        if (!failed_) {
            real_->open(path);
        }
    }
    [[nodiscard]] int errorState() const override { return failed_ ? -1 : real_->errorState(); }
    [[nodiscard]] int sampleRate() const override { return real_->sampleRate(); }
    [[nodiscard]] int channels() const override { return real_->channels(); }
    [[nodiscard]] std::int64_t frames() const override { return real_->frames(); }
    [[nodiscard]] int bytesPerFrame() const override { return real_->bytesPerFrame(); }
    [[nodiscard]] QByteArray readBlock() override {
        const int block = block_++;
        if (block == owner_.faults.readBlock) {
            throw RuntimeError(ErrorNumber::DeviceError, path_);
        }
        return block == owner_.faults.end ? QByteArray() : real_->readBlock();
    }
    void close() override {
        ++owner_.closedReaders;
        real_->close();
    }

  private:
    FakeAudioFiles &owner_;
    std::unique_ptr<AudioFileReader> real_;
    QString path_;
    int block_ = 0;
    bool failed_ = false;
};

class FaultyWriter : public AudioFileWriter {
  public:
    FaultyWriter(FakeAudioFiles &owner, std::unique_ptr<AudioFileWriter> real)
        : owner_(owner), real_(std::move(real)) {}

    void setFormat(const Mp3Format &format) override { real_->setFormat(format); }
    [[nodiscard]] Mp3Format format() const override { return real_->format(); }
    void setInput(int sampleRate, int channels) override { real_->setInput(sampleRate, channels); }
    void create(const QString &path) override {
        owner_.note(owner_.created, path);
        owner_.noteFormat(real_->format());
        path_ = path;
        block_ = 0;
        failed_ = owner_.faults.create;
        if (!failed_) {
            real_->create(path);
        }
    }
    [[nodiscard]] int errorState() const override { return failed_ ? -1 : real_->errorState(); }
    void write(const QByteArray &block) override {
        if (block_++ == owner_.faults.write) {
            throw RuntimeError(ErrorNumber::DiskFull, path_);
        }
        real_->write(block);
    }
    void close() override {
        ++owner_.closedWriters;
        real_->close();
        if (owner_.faults.closeFull) {
            throw RuntimeError(ErrorNumber::DiskFull, path_);
        }
    }

  private:
    FakeAudioFiles &owner_;
    std::unique_ptr<AudioFileWriter> real_;
    QString path_;
    int block_ = 0;
    bool failed_ = false;
};

class FaultyWavWriter : public WavFileWriter {
  public:
    FaultyWavWriter(FakeAudioFiles &owner, std::unique_ptr<WavFileWriter> real)
        : owner_(owner), real_(std::move(real)) {}

    void create(const QString &path, int sampleRate) override {
        owner_.note(owner_.created, path);
        path_ = path;
        block_ = 0;
        if (owner_.faults.create) {
            throw RuntimeError(ErrorNumber::DiskFull, path_);
        }
        real_->create(path, sampleRate);
    }
    void write(std::span<const std::int16_t> samples) override {
        if (block_++ == owner_.faults.write) {
            throw RuntimeError(ErrorNumber::DiskFull, path_);
        }
        real_->write(samples);
    }
    void close() override {
        ++owner_.closedWriters;
        real_->close();
        if (owner_.faults.closeFull) {
            throw RuntimeError(ErrorNumber::DiskFull, path_);
        }
    }

  private:
    FakeAudioFiles &owner_;
    std::unique_ptr<WavFileWriter> real_;
    QString path_;
    int block_ = 0;
};

} // namespace

std::unique_ptr<AudioFileReader> FakeAudioFiles::reader() {
    return std::make_unique<FaultyReader>(*this, real_.reader());
}

std::unique_ptr<AudioFileWriter> FakeAudioFiles::mp3Writer() {
    return std::make_unique<FaultyWriter>(*this, real_.mp3Writer());
}

std::unique_ptr<WavFileWriter> FakeAudioFiles::wavWriter() {
    return std::make_unique<FaultyWavWriter>(*this, real_.wavWriter());
}

std::unique_ptr<WavFileWriter> FakeAudioFiles::flacWriter() {
    return std::make_unique<FaultyWavWriter>(*this, real_.flacWriter());
}

} // namespace orvel
