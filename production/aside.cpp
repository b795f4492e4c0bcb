#include "production/aside.h"

#include "platform/timers.h"

#include <QCoreApplication>

#include <chrono>
#include <future>
#include <thread>
#include <utility>

namespace orvel {

namespace {

using namespace std::chrono_literals;

constexpr auto livingMs = 4ms;
constexpr int asideLookMs = 10;

} // namespace

void whileWindowLives(const std::function<void()> &work) {
    std::future<void> done = std::async(std::launch::async, work);
    while (done.wait_for(livingMs) != std::future_status::ready) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    done.get();
}

struct Aside::Job {
    Stopped isStopped{false};
    std::atomic<bool> isOver{false};
    std::thread thread;

    Job() = default;
    Job(const Job &) = delete;
    Job(Job &&) = delete;
    Job &operator=(const Job &) = delete;
    Job &operator=(Job &&) = delete;
    ~Job() {
        if (thread.joinable()) {
            thread.join();
        }
    }
};

Aside::Aside(Timers &timers) : tmrLook_(timers.create(asideLookMs, MissedTicks::Drop, [this] { look(); })) {}

Aside::~Aside() {
    drop();
}

void Aside::end() {
    drop();
    jobs_.clear();
    tmrLook_->setEnabled(false);
}

void Aside::begin(std::function<void(const Stopped &)> work, std::function<void()> done) {
    drop();
    const std::shared_ptr<Job> earlier = jobs_.empty() ? nullptr : jobs_.back();
    jobs_.push_back(std::make_shared<Job>());
    done_ = std::move(done);
    Job &job = *jobs_.back();
    job.thread = std::thread([&job, earlier, work = std::move(work)] {
        if (earlier != nullptr) {
            earlier->isOver.wait(false);
        }
        if (!job.isStopped) {
            work(job.isStopped);
        }
        job.isOver = true;
        job.isOver.notify_all();
    });
    tmrLook_->setEnabled(true);
}

void Aside::drop() {
    done_ = nullptr;
    for (const auto &job : jobs_) {
        job->isStopped = true;
    }
}

void Aside::look() {
    const bool isReady = done_ != nullptr && jobs_.back()->isOver;
    std::erase_if(jobs_, [](const auto &job) { return job->isOver.load(); });
    tmrLook_->setEnabled(!jobs_.empty());
    if (isReady) {
        std::exchange(done_, nullptr)();
    }
}

} // namespace orvel
