#include "app/orvel_application.h"

#include "platform/guarded.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"

namespace orvel {

OrvelApplication::OrvelApplication(int &argc, char **argv) : QApplication(argc, argv) {
    setErrorReport([this](const std::exception_ptr &error) { report(error); });
}

OrvelApplication::~OrvelApplication() {
    setErrorReport({});
}

void OrvelApplication::report(const std::exception_ptr &error) {
    const auto tell = [this](const RuntimeError &what, MessageIcon icon) {
        if (prompts_) {
            prompts_->message(what.report(), QStringLiteral("ORVEL"), icon);
        }
    };
    try {
        std::rethrow_exception(error);
    } catch (const FatalError &fatal) {
        tell(fatal, MessageIcon::Critical);
        exitCode_ = 1;
        exit(exitCode_);
    } catch (const RuntimeError &failure) {
        tell(failure, MessageIcon::Exclamation);
    } catch (const std::exception &failure) {
        tell(RuntimeError(ErrorNumber::InternalError, {}, QString::fromUtf8(failure.what())), MessageIcon::Critical);
    }
}

} // namespace orvel
