#pragma once

#include "platform/away/away_worker.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace orvel {

class Prompts;

/// Whether a path lies outside a folder, by its name alone: nothing is asked of the disk.
bool isOutside(const QString &path, const QString &folder);

/// Runs what touches a folder outside the station without ever blocking the window. An answer that comes at once is
/// waited for; while it takes longer the window's events run (without the presenter's clicks, which come after it), and
/// a sign tells what is being waited for and lets the presenter go on without it. After that everything in the same
/// folder fails at once until the call has come back: a dead server is waited for once, not once a call.
///
/// From the window's thread; on any other thread a job simply runs there.
class AwayWork {
  public:
    /// Called while waiting; may run window events. false stops the job.
    using Progress = std::function<bool(qint64 done, qint64 total)>;

    explicit AwayWork(Prompts &prompts) : prompts_(prompts) {}

    /// What the job returns or throws; it must own all that it touches. place: the folder that it works in.
    /// Throws DiskNotReady when the presenter did not wait, or when an earlier call has not come back.
    template <class Job>
    auto run(const QString &place, Job job) -> decltype(job()) {
        using Result = decltype(job());
        if constexpr (std::is_void_v<Result>) {
            perform(place, [job = std::move(job)](AwayTask &) { job(); }, {});
        } else {
            auto result = std::make_shared<std::optional<Result>>();
            perform(place, [result, job = std::move(job)](AwayTask &) { *result = job(); }, {});
            return std::move(**result);
        }
    }

    /// A job that counts bytes in its task and looks whether it was abandoned; the window sees its progress instead of
    /// the sign. Returns when it has ended, or when progress stopped it and it did not notice.
    void runWithProgress(const QString &place, std::function<void(AwayTask &)> job, const Progress &progress);

    /// For players' files: those of the station directly, all others like run().
    [[nodiscard]] std::function<void(const QString &path, const std::function<void()> &work)>
    opener(const QString &station);

    /// Lets something go that may take its time; nobody waits for it.
    void post(const QString &place, std::function<void()> job);

  private:
    void perform(const QString &place, std::function<void(AwayTask &)> job, const Progress &progress);
    bool waitFor(const std::shared_ptr<AwayTask> &task, const Progress &progress);
    /// After a job was stopped: whether it ends within a moment.
    static bool noticesItsEnd(AwayTask &task);
    bool waitShowingProgress(AwayTask &task, const Progress &progress);
    void waitShowingSign(AwayTask &task);
    void refuseWhereOneHangs(const QString &place);
    [[nodiscard]] std::unique_ptr<AwayWorker> takeWorker();

    Prompts &prompts_;
    std::unique_ptr<AwayWorker> idle_;
    std::vector<std::shared_ptr<AwayTask>> hanging_;
};

} // namespace orvel
