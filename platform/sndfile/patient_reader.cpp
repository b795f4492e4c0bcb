#include "platform/sndfile/patient_reader.h"

#include "platform/runtime_error.h"

namespace orvel {

namespace {

using namespace std::chrono_literals;

constexpr auto kLook = 10ms;
/// A file that answers needs less.
constexpr int kMoment = 10;

} // namespace

PatientReader::PatientReader(std::shared_ptr<SndfileReader> file)
    : file_(std::move(file)), sampleRate_(file_->sampleRate()), channels_(file_->channels()), frames_(file_->frames()) {
}

PatientReader::PatientReader() : PatientReader(std::make_shared<SndfileReader>()) {}

void PatientReader::open(const QString &path) {
    // A name of its own: the file goes on another thread.
    perform([file = file_, own = QString(path.constData(), path.size())] {
        file->open(own);
        if (file->errorState() < 0) {
            throw RuntimeError(ErrorNumber::DeviceError, own);
        }
    });
    sampleRate_ = file_->sampleRate();
    channels_ = file_->channels();
    frames_ = file_->frames();
}

PatientReader::~PatientReader() {
    // Closing may take its time as well.
    worker_.post(std::make_shared<AwayTask>(QString(), [file = std::move(file_)](AwayTask &) {}));
}

QByteArray PatientReader::readBlock() {
    const auto block = std::make_shared<QByteArray>();
    perform([file = file_, block] { *block = file->readBlock(); });
    return *block;
}

void PatientReader::seek(std::int64_t frame) {
    perform([file = file_, frame] { file->seek(frame); });
}

void PatientReader::perform(std::function<void()> job) {
    if (!isLost_) {
        const auto task = std::make_shared<AwayTask>(QString(), [job = std::move(job)](AwayTask &) { job(); });
        worker_.post(task);
        for (int looks = 0; looks < kMoment; looks += interrupted_ ? 1 : 0) {
            if (task->waitFor(kLook)) {
                task->rethrow();
                return;
            }
        }
        isLost_ = true;
    }
    throw RuntimeError(ErrorNumber::DeviceError, {}, QStringLiteral("het bestand geeft geen antwoord"));
}

} // namespace orvel
