#pragma once

#include <QString>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>

namespace orvel {

/// A piece of work on another thread. Both threads share it, and it outlives the one that gave up waiting for it.
class AwayTask {
  public:
    /// job: owns all that it touches. place: the folder that it works in.
    AwayTask(QString place, std::function<void(AwayTask &)> job) : place_(std::move(place)), job_(std::move(job)) {}

    [[nodiscard]] const QString &place() const { return place_; }
    /// Of a job that counts bytes; -1 before it knows how many there are.
    std::atomic<qint64> bytesDone{0};
    std::atomic<qint64> bytesTotal{-1};
    /// Nobody waits for the job any more: it must leave everything as it was, and end when it can.
    std::atomic<bool> abandoned{false};

    /// Runs the job. Once, on the worker's thread.
    void run();
    /// True when the job has ended.
    bool waitFor(std::chrono::milliseconds longest);
    /// Throws what the job threw. Once, after its end.
    void rethrow();

  private:
    QString place_;
    std::function<void(AwayTask &)> job_;
    std::mutex mutex_;
    std::condition_variable ended_;
    bool hasEnded_ = false;
    std::exception_ptr error_;
};

/// A thread that runs one task after the other. Destroying it waits for no task: one that hangs ends by itself.
class AwayWorker {
  public:
    AwayWorker();
    ~AwayWorker();
    AwayWorker(const AwayWorker &) = delete;
    AwayWorker(AwayWorker &&) = delete;
    AwayWorker &operator=(const AwayWorker &) = delete;
    AwayWorker &operator=(AwayWorker &&) = delete;

    void post(std::shared_ptr<AwayTask> task);

  private:
    struct State;
    std::shared_ptr<State> state_;
};

} // namespace orvel
