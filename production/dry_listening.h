#pragma once

#include "production/aside.h"

#include <QCoreApplication>
#include <QString>

#include <functional>

namespace orvel {

class Listening;
class Places;
class TakeSession;
class TakeStore;
struct CurrentStep;
struct Platform;

/// What listening to the dry original needs of the rest of the program; all of it outlives it.
struct DryListeningContext {
    Platform &platform;
    const Places &places;
    const CurrentStep &step;
    const TakeSession &session;
    const TakeStore &takes;
    Listening &listening;
    /// One sentence for the status line.
    std::function<void(const QString &sentence)> tell;
    /// It is on or off now.
    std::function<void()> changed;
};

/// The switch between a take and what was recorded, while it is listened to: the same words, equally loud. What is
/// compared is made on a thread of its own when it is first wanted; the take is heard meanwhile. Off when listening
/// ends.
class DryListening {
    Q_DECLARE_TR_FUNCTIONS(DryListening)

  public:
    explicit DryListening(DryListeningContext context);
    ~DryListening();
    DryListening(const DryListening &) = delete;
    DryListening &operator=(const DryListening &) = delete;
    DryListening(DryListening &&) = delete;
    DryListening &operator=(DryListening &&) = delete;

    /// On or off; ignores a call that allowed() does not allow.
    void cmdDroog_Click();
    [[nodiscard]] bool isOn() const;
    /// The session's state is another one.
    void sessionChanged();

  private:
    struct Work;

    void prepare();
    void ready(const Work &work);
    void end();

    DryListeningContext context_;
    bool isOn_ = false;
    bool isReady_ = false;
    QString file_; ///< that was made, or is being made; empty without
    Aside aside_;
};

} // namespace orvel
