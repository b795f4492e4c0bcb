#pragma once

#include <QApplication>

#include <exception>

namespace orvel {

class Prompts;

/// Reports what handlers let through: a message box with number and description. After an error that must end the
/// program it ends it, with exit code 1.
class OrvelApplication : public QApplication {
    Q_OBJECT

  public:
    OrvelApplication(int &argc, char **argv);
    OrvelApplication(const OrvelApplication &) = delete;
    OrvelApplication &operator=(const OrvelApplication &) = delete;
    OrvelApplication(OrvelApplication &&) = delete;
    OrvelApplication &operator=(OrvelApplication &&) = delete;
    ~OrvelApplication() override;

    void setPrompts(Prompts &prompts) { prompts_ = &prompts; }
    /// 1 after an error that ends the program, else 0.
    [[nodiscard]] int exitCode() const { return exitCode_; }

  private:
    void report(const std::exception_ptr &error);

    Prompts *prompts_ = nullptr;
    int exitCode_ = 0;
};

} // namespace orvel
