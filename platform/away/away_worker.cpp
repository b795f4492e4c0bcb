#include "platform/away/away_worker.h"

#include <deque>
#include <thread>
#include <utility>

namespace orvel {

void AwayTask::run() {
    std::exception_ptr error;
    try {
        job_(*this);
    } catch (...) {
        error = std::current_exception();
    }
    job_ = nullptr; // what it owns goes on this thread: letting a file go may hang as well
    {
        const std::lock_guard lock(mutex_);
        error_ = std::move(error);
        hasEnded_ = true;
    }
    ended_.notify_all();
}

bool AwayTask::waitFor(std::chrono::milliseconds longest) {
    std::unique_lock lock(mutex_);
    return ended_.wait_for(lock, longest, [this] { return hasEnded_; });
}

void AwayTask::rethrow() {
    // Nobody else has it then: this thread also lets it go.
    if (const std::exception_ptr error = std::exchange(error_, nullptr)) {
        std::rethrow_exception(error);
    }
}

struct AwayWorker::State {
    std::mutex mutex;
    std::condition_variable wake;
    std::deque<std::shared_ptr<AwayTask>> tasks;
    bool over = false;

    void run() {
        while (const std::shared_ptr<AwayTask> task = next()) {
            task->run();
        }
    }

    std::shared_ptr<AwayTask> next() {
        std::unique_lock lock(mutex);
        wake.wait(lock, [this] { return over || !tasks.empty(); });
        if (tasks.empty()) {
            return {};
        }
        std::shared_ptr<AwayTask> task = std::move(tasks.front());
        tasks.pop_front();
        return task;
    }
};

AwayWorker::AwayWorker() : state_(std::make_shared<State>()) {
    // Nobody joins it: a thread that hangs in a call to a server would hang its owner, too.
    std::thread([state = state_] { state->run(); }).detach();
}

AwayWorker::~AwayWorker() {
    {
        const std::lock_guard lock(state_->mutex);
        state_->over = true;
    }
    state_->wake.notify_one();
}

void AwayWorker::post(std::shared_ptr<AwayTask> task) {
    {
        const std::lock_guard lock(state_->mutex);
        state_->tasks.push_back(std::move(task));
    }
    state_->wake.notify_one();
}

} // namespace orvel
