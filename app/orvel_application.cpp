#include "app/orvel_application.h"

#include "platform/prompts.h"
#include "platform/runtime_error.h"

namespace orvel {

bool OrvelApplication::guard(const std::function<void()> &action) {
    const auto report = [this](const RuntimeError &error, MessageIcon icon) {
        if (prompts_) {
            prompts_->message(error.report(), QStringLiteral("ORVEL"), icon);
        }
    };
    try {
        action();
        return true;
    } catch (const FatalError &error) {
        report(error, MessageIcon::Critical);
        exitCode_ = 1;
        exit(exitCode_);
    } catch (const RuntimeError &error) {
        report(error, MessageIcon::Exclamation);
    } catch (const std::exception &error) {
        report(RuntimeError(ErrorNumber::InternalError, {}, QString::fromUtf8(error.what())), MessageIcon::Critical);
    }
    return false;
}

bool OrvelApplication::notify(QObject *receiver, QEvent *event) {
    bool handled = false;
    guard([&] { handled = QApplication::notify(receiver, event); });
    return handled;
}

} // namespace orvel
