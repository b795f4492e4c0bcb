#pragma once

#include <QApplication>

namespace orvel {

class Prompts;

/// The one boundary for errors: what a handler lets through is reported, and the handler is over.
class OrvelApplication : public QApplication {
    Q_OBJECT

  public:
    OrvelApplication(int &argc, char **argv) : QApplication(argc, argv) {}

    void setPrompts(Prompts &prompts) { prompts_ = &prompts; }
    /// Runs something outside the event loop inside the boundary; false when it failed.
    bool guard(const std::function<void()> &action);

    bool notify(QObject *receiver, QEvent *event) override;
    /// 1 after an error that ends the program, else 0.
    [[nodiscard]] int exitCode() const { return exitCode_; }

  private:
    Prompts *prompts_ = nullptr;
    int exitCode_ = 0;
};

} // namespace orvel
