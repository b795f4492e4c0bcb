#include "production/conversions.h"

#include "production/mix_down.h"
#include "production/transcode.h"

#include <QElapsedTimer>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace orvel {

namespace {

constexpr unsigned long pollMs = 4;
/// For a thread to notice that it was stopped; one that does not hangs in a call.
constexpr int graceMs = 500;

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

/// What the threads share with the window's.
struct Conversions::Work {
    std::vector<std::unique_ptr<Job>> jobs; ///< complete before the threads start
    std::atomic<std::size_t> next{0};
    std::atomic<std::size_t> done{0};
    std::atomic<bool> stopped{false};

    void run();
    void ConvertFile(Job &job) const;
    [[nodiscard]] int percent() const;
};

void Conversions::Work::run() {
    for (std::size_t number = next++; number < jobs.size(); number = next++) {
        ConvertFile(*jobs[number]);
        ++done;
    }
}

void Conversions::Work::ConvertFile(Job &job) const {
    if (stopped) {
        return;
    }
    StereoReader reader(*job.reader);
    try {
        job.converted = convert(reader, *job.writer, job.source, job.target, [&](int percent) {
            job.percent = percent;
            if (stopped) {
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

int Conversions::Work::percent() const {
    int sum = 0;
    for (const auto &job : jobs) {
        sum += job->percent;
    }
    return jobs.empty() ? 100 : sum / static_cast<int>(jobs.size());
}

Conversions::Conversions(AudioFiles &files, const Mp3Format &format)
    : files_(files), format_(format), work_(std::make_shared<Work>()) {}
Conversions::~Conversions() = default;

void Conversions::add(const QString &source, const QString &target) {
    auto job = std::make_unique<Job>();
    job->source = source;
    job->target = target;
    job->reader = files_.reader();
    job->writer = files_.mp3Writer();
    job->writer->setFormat(format_);
    work_->jobs.push_back(std::move(job));
}

std::size_t Conversions::count() const {
    return work_->jobs.size();
}

void Conversions::run(const std::function<bool(int done, int percent)> &pump) {
    const auto cores = static_cast<std::size_t>(std::max(QThread::idealThreadCount(), 1));
    for (std::size_t i = 0; i < std::min(cores, count()); ++i) {
        std::thread([work = work_] { work->run(); }).detach();
    }
    const auto report = [&] { return pump(static_cast<int>(work_->done), work_->percent()); };
    QElapsedTimer sinceStop;
    while (work_->done < count() && !(sinceStop.isValid() && sinceStop.hasExpired(graceMs))) {
        if (!report() && !sinceStop.isValid()) {
            work_->stopped = true;
            sinceStop.start();
        }
        QThread::msleep(pollMs);
    }
    report();
}

bool Conversions::isConverted(std::size_t number) const {
    return work_->jobs.at(number)->converted;
}

} // namespace orvel
