#include "platform/away/away_work.h"

#include "platform/prompts.h"
#include "platform/runtime_error.h"

#include <QCoreApplication>
#include <QDir>
#include <QThread>

#include <algorithm>

namespace orvel {

namespace {

using namespace std::chrono_literals;

/// As long as nobody notices; most servers answer sooner.
constexpr auto kUnnoticed = 50ms;
constexpr auto kPumpInterval = 10ms;
/// For a job that was stopped to notice it.
constexpr auto kGrace = 500ms;

bool onWindowThread() {
    const QCoreApplication *application = QCoreApplication::instance();
    return application != nullptr && QThread::currentThread() == application->thread();
}

bool isIn(const QString &place, const QString &folder) {
    return place == folder || place.startsWith(folder + u'/');
}

RuntimeError noAnswer(const QString &place) {
    return RuntimeError(ErrorNumber::DiskNotReady, place, QStringLiteral("de map geeft geen antwoord"));
}

} // namespace

bool isOutside(const QString &path, const QString &folder) {
    const QString clean = QDir::cleanPath(path);
    return !clean.isEmpty() && clean != folder && !clean.startsWith(folder + u'/');
}

void AwayWork::runWithProgress(const QString &place, std::function<void(AwayTask &)> job, const Progress &progress) {
    perform(place, std::move(job), progress);
}

std::function<void(const QString &, const std::function<void()> &)> AwayWork::opener(const QString &station) {
    return [this, home = QDir::cleanPath(station)](const QString &path, const std::function<void()> &work) {
        if (isOutside(path, home)) {
            run(path.section(u'/', 0, -2), work);
        } else {
            work();
        }
    };
}

void AwayWork::post(const QString &place, std::function<void()> job) {
    takeWorker()->post(std::make_shared<AwayTask>(place, [job = std::move(job)](AwayTask &) { job(); }));
}

void AwayWork::perform(const QString &place, std::function<void(AwayTask &)> job, const Progress &progress) {
    const auto task = std::make_shared<AwayTask>(place, std::move(job));
    if (!onWindowThread()) {
        task->run();
        task->rethrow();
        return;
    }
    refuseWhereOneHangs(place);
    // While this one waits, a window event may have work of its own: it gets another worker.
    std::unique_ptr<AwayWorker> worker = takeWorker();
    worker->post(task);
    if (waitFor(task, progress)) {
        idle_ = std::move(worker);
        task->rethrow();
    }
}

/// Whether the task has ended; one that was stopped may go on hanging.
bool AwayWork::waitFor(const std::shared_ptr<AwayTask> &task, const Progress &progress) {
    if (task->waitFor(kUnnoticed)) {
        return true;
    }
    const auto abandon = [&] {
        task->abandoned = true;
        hanging_.push_back(task);
    };
    try {
        if (progress) {
            if (waitShowingProgress(*task, progress)) {
                return true;
            }
        } else {
            waitShowingSign(*task);
            return true;
        }
    } catch (...) {
        abandon();
        throw;
    }
    abandon();
    return noticesItsEnd(*task);
}

bool AwayWork::noticesItsEnd(AwayTask &task) {
    const auto patience = std::chrono::steady_clock::now() + kGrace;
    while (!task.waitFor(kPumpInterval)) {
        if (std::chrono::steady_clock::now() > patience) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    return true;
}

bool AwayWork::waitShowingProgress(AwayTask &task, const Progress &progress) {
    while (!task.waitFor(kPumpInterval)) {
        const qint64 total = std::max<qint64>(task.bytesTotal, 1);
        if (!progress(std::min<qint64>(task.bytesDone, total), total)) {
            return false;
        }
    }
    return true;
}

void AwayWork::waitShowingSign(AwayTask &task) {
    const std::unique_ptr<WaitingSign> sign = prompts_.waitFor(task.place());
    while (!task.waitFor(kPumpInterval)) {
        // Without the sign nothing keeps the presenter from other controls: clicks wait until it is there.
        QCoreApplication::processEvents(sign->isShown() ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
        if (sign->isGivenUp()) {
            throw noAnswer(task.place());
        }
    }
}

void AwayWork::refuseWhereOneHangs(const QString &place) {
    std::erase_if(hanging_, [](const auto &task) { return task->waitFor(0ms); });
    const bool hangs = std::any_of(hanging_.begin(), hanging_.end(), [&](const auto &task) {
        return isIn(place, task->place()) || isIn(task->place(), place);
    });
    if (hangs) {
        throw noAnswer(place);
    }
}

std::unique_ptr<AwayWorker> AwayWork::takeWorker() {
    return idle_ ? std::move(idle_) : std::make_unique<AwayWorker>();
}

} // namespace orvel
