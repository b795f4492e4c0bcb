#include "recording/flac_packer.h"

#include "platform/file_system.h"
#include "platform/platform.h"
#include "platform/runtime_error.h"
#include "station/ignore_errors.h"

#include <QElapsedTimer>

#include <cstring>
#include <vector>

namespace orvel {

namespace {

constexpr int restMs = 20;
constexpr int workMs = 4;

} // namespace

FlacPacker::FlacPacker(Platform &platform)
    : platform_(platform), timer_(platform.timers.create(restMs, MissedTicks::Drop, [this] { workOn(); })) {}

void FlacPacker::pack(const QString &source, const QString &target) {
    jobs_.push_back({source, target});
    timer_->setEnabled(true);
}

QString FlacPacker::partOf(const Job &job) const {
    return job.target + QStringLiteral(".deel");
}

void FlacPacker::workOn() {
    QElapsedTimer watch;
    watch.start();
    try {
        while (isBusy() && watch.elapsed() < workMs) {
            if (reader_ == nullptr) {
                begin();
            } else {
                packBlock();
            }
        }
    } catch (const RuntimeError &) {
        giveUp();
    }
    timer_->setEnabled(isBusy());
}

void FlacPacker::begin() {
    const Job &job = jobs_.front();
    auto reader = platform_.audioFiles.reader();
    reader->open(job.source);
    if (reader->errorState() < 0 || reader->channels() != 1) {
        jobs_.pop_front();
        return;
    }
    writer_ = platform_.audioFiles.flacWriter();
    writer_->create(partOf(job), reader->sampleRate());
    reader_ = std::move(reader);
    packed_ = 0;
}

void FlacPacker::packBlock() {
    const QByteArray block = reader_->readBlock();
    if (block.isEmpty()) {
        if (packed_ < reader_->frames()) {
            throw RuntimeError(ErrorNumber::DeviceError, jobs_.front().source);
        }
        end();
        return;
    }
    std::vector<std::int16_t> samples(static_cast<std::size_t>(block.size()) / sizeof(std::int16_t));
    std::memcpy(samples.data(), block.constData(), samples.size() * sizeof(std::int16_t));
    writer_->write(samples);
    packed_ += static_cast<std::int64_t>(samples.size());
}

void FlacPacker::end() {
    writer_->close();
    writer_.reset();
    reader_->close();
    reader_.reset();
    const Job job = jobs_.front();
    platform_.files.move(partOf(job), job.target);
    platform_.files.remove(job.source);
    jobs_.pop_front();
}

/// The file stays as it was.
void FlacPacker::giveUp() {
    const QString part = partOf(jobs_.front());
    writer_.reset();
    reader_.reset();
    jobs_.pop_front();
    ignoringErrors([&] {
        if (platform_.files.fileExists(part)) {
            platform_.files.remove(part);
        }
    });
}

} // namespace orvel
