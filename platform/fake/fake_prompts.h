#pragma once

#include "platform/prompts.h"

#include <QStringList>

#include <deque>
#include <functional>

namespace orvel {

/// Answers questions by a script. A question that the script does not expect next, and an expectation that nobody asked
/// for, fail the running test.
class FakePrompts : public Prompts {
  public:
    FakePrompts() = default;
    ~FakePrompts() override;
    FakePrompts(const FakePrompts &) = delete;
    FakePrompts(FakePrompts &&) = delete;
    FakePrompts &operator=(const FakePrompts &) = delete;
    FakePrompts &operator=(FakePrompts &&) = delete;

    void expectMessage(const QString &text, const QString &title, MessageIcon icon);
    /// A message of which only the beginning is known (a report with a number).
    void expectReport(const QString &beginning);
    void expectAsk(const QString &text, const QString &title, bool answer, Preset preset = Preset::Yes,
                   const Verbs &verbs = {});
    /// The question whether a file that stands there may be overwritten.
    void expectOverwrite(const QString &text, const QString &title, bool answer);
    /// The box closes by itself when it is over; until then whileOpen() runs. answer: whether the presenter waits.
    void expectWait(const QString &beginning, bool answer);
    void expectInput(const QString &prompt, const QString &title, const QString &answer);
    void expectSaveFileName(const QString &title, const QString &proposal, const QString &answer);
    void expectFolder(const QString &instruction, const QString &start, const QString &answer);
    void expectColour(std::optional<std::int32_t> answer);
    /// Runs while the next expected box is open.
    void whileOpen(std::function<void()> action) { whileOpen_ = std::move(action); }
    /// Expectations not met yet.
    [[nodiscard]] std::size_t open() const { return script_.size(); }

    void message(const QString &text, const QString &title, MessageIcon icon) override;
    using Prompts::ask;
    bool ask(const QString &text, const QString &title, Preset preset, const Verbs &verbs) override;
    bool waitUntil(const QString &text, const QString &title, const std::function<bool()> &isOver) override;
    QString input(const QString &prompt, const QString &title) override;
    QString saveFileName(const QString &title, const QString &proposal) override;
    QString folder(const QString &instruction, const QString &start) override;
    std::optional<std::int32_t> colour(std::int32_t initial) override;
    std::unique_ptr<WaitingSign> waitFor(const QString &folder) override;
    std::unique_ptr<ProgressSign> progress(const QString &title, int steps) override;

    /// What was waited for; whoever sees a sign gives up after so many looks at it.
    QStringList waitedFor;
    int patience = 1'000'000;
    /// Titles of the progress windows that were shown; the presenter stops the work when it comes to stopAt.
    QStringList progressTitles;
    QString stopAt;

  private:
    struct Expectation {
        QString question; ///< kind and texts in one line
        QString answer;
        bool beginningOnly = false;
    };

    void expect(const QStringList &question, const QString &answer, bool beginningOnly = false);
    QString answer(const QStringList &question);

    std::deque<Expectation> script_;
    std::function<void()> whileOpen_;
};

} // namespace orvel
