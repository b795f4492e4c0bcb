#pragma once

#include <QObject>

#include <functional>

class QWidget;

namespace orvel {

/// F1 in the windows that open from the main one, with or without Shift: the manual about the control that has the
/// focus. Windows that the manual does not tell about keep the key, and so does the main window, whose own keys it is
/// among.
class ManualKey : public QObject {
  public:
    ManualKey(const QWidget &mainWindow, std::function<void(QWidget &control)> open, QObject *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    const QWidget &mainWindow_;
    std::function<void(QWidget &control)> open_;
};

} // namespace orvel
