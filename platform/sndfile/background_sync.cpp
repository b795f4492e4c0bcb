#include "platform/sndfile/background_sync.h"

#include "platform/runtime_error.h"

#include <utility>

namespace orvel {

using namespace std::chrono_literals;

void BackgroundSync::post() {
    task_ = std::make_shared<AwayTask>(path_, [file = file_](AwayTask &) { file->sync(); });
    worker_.post(task_);
}

void BackgroundSync::begin() {
    if (task_) {
        if (!task_->waitFor(0ms)) {
            return;
        }
        std::exchange(task_, nullptr)->rethrow();
    }
    post();
}

void BackgroundSync::finish(std::chrono::milliseconds longest) {
    const auto until = std::chrono::steady_clock::now() + longest;
    const auto await = [&] {
        const auto left = until - std::chrono::steady_clock::now();
        if (!task_->waitFor(std::max(std::chrono::duration_cast<std::chrono::milliseconds>(left), 0ms))) {
            throw RuntimeError(ErrorNumber::DiskNotReady, path_, QStringLiteral("de schijf geeft geen antwoord"));
        }
        std::exchange(task_, nullptr)->rethrow();
    };
    if (task_) {
        await();
    }
    post();
    await();
}

} // namespace orvel
