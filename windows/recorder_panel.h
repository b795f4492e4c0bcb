#pragma once

#include "widgets/time_display.h"

#include <QIcon>
#include <QLabel>
#include <QPushButton>

#include <vector>

namespace orvel {

class TakeSession;

/// The record button with the count-down, the elapsed time and the notices of a running take.
class RecorderPanel : public QWidget {
    Q_OBJECT

  public:
    explicit RecorderPanel(TakeSession &session, QWidget *parent = nullptr);

    QPushButton *const cmdRec;
    TimeDisplay *const ledCount;
    TimeDisplay *const ledTijd;
    QLabel *const lblOpname;
    QLabel *const lblProcess;

    /// Caption, notices and count-down as the session has them.
    void show();
    void showCount();
    /// Milliseconds, of the running take or of what is listened to. Throws Overflow.
    void showElapsed(std::int32_t milliseconds);

    /// A label that says something when no take runs, where the notices of a running one stand.
    void addNotice(QLabel *label);
    /// Small times under the button, without captions.
    void setDense(bool dense);

    void cmdRec_Click();

  private:
    void setCaption(const QString &caption, bool recording);
    void layOut();

    TakeSession &session_;
    QLabel *lblCount_;
    QLabel *lblTime_;
    std::vector<QLabel *> notices_; ///< never two at once
    // Made once: a new icon is drawn anew, and its pictures stay in a cache.
    QIcon startIcon_{QStringLiteral(":/icons/record.svg")};
    QIcon stopIcon_{QStringLiteral(":/icons/record_stop.svg")};
};

} // namespace orvel
