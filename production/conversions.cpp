#include "production/conversions.h"

#include "production/mix_down.h"
#include "production/transcode.h"

#include <QThread>

#include <algorithm>
#include <thread>

namespace orvel {

namespace {

constexpr unsigned long pollMs = 4;

/// Ends a conversion in its middle.
struct Stopped {};

} // namespace

/// One file, with a reader and a writer of its own.
struct Conversions::Job {
    QString source;
    QString target;
    std::unique_ptr<AudioFileReader> reader;
    std::unique_ptr<AudioFileWriter> writer;
    std::atomic<int> percent{0};
    std::atomic<bool> converted{false};
};

Conversions::Conversions(AudioFiles &files, const Mp3Format &format) : files_(files), format_(format) {}
Conversions::~Conversions() = default;

void Conversions::add(const QString &source, const QString &target) {
    auto job = std::make_unique<Job>();
    job->source = source;
    job->target = target;
    job->reader = files_.reader();
    job->writer = files_.mp3Writer();
    job->writer->setFormat(format_);
    jobs_.push_back(std::move(job));
}

void Conversions::run(const std::function<bool(int done, int percent)> &pump) {
    const auto cores = static_cast<std::size_t>(std::max(QThread::idealThreadCount(), 1));
    std::vector<std::jthread> threads; // joined however this is left
    for (std::size_t i = 0; i < std::min(cores, jobs_.size()); ++i) {
        threads.emplace_back([this] { work(); });
    }
    while (done_ < static_cast<int>(jobs_.size())) {
        if (!pump(done_, percent())) {
            stopped_ = true;
        }
        QThread::msleep(pollMs);
    }
    threads.clear();
    pump(done_, percent());
}

void Conversions::work() {
    for (std::size_t number = next_++; number < jobs_.size(); number = next_++) {
        ConvertFile(*jobs_[number]);
        ++done_;
    }
}

void Conversions::ConvertFile(Job &job) const {
    if (stopped_) {
        return;
    }
    StereoReader reader(*job.reader);
    try {
        job.converted = convert(reader, *job.writer, job.source, job.target, [&](int percent) {
            job.percent = percent;
            if (stopped_) {
                throw Stopped();
            }
        });
    } catch (const Stopped &) {
        job.converted = false;
    }
    job.percent = 100;
    // The file is complete only when its writer has let it go.
    job.writer.reset();
    job.reader.reset();
}

int Conversions::percent() const {
    int sum = 0;
    for (const auto &job : jobs_) {
        sum += job->percent;
    }
    return jobs_.empty() ? 100 : sum / static_cast<int>(jobs_.size());
}

bool Conversions::isConverted(std::size_t number) const {
    return jobs_.at(number)->converted;
}

} // namespace orvel
