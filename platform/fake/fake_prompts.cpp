#include "platform/fake/fake_prompts.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

const QString separator = QStringLiteral(" | ");

QString iconName(MessageIcon icon) {
    switch (icon) {
    case MessageIcon::Information:
        return QStringLiteral("information");
    case MessageIcon::Exclamation:
        return QStringLiteral("exclamation");
    case MessageIcon::Critical:
        return QStringLiteral("critical");
    }
    return {};
}

QString questionKind(Preset preset, const Verbs &verbs) {
    const QString kind = preset == Preset::Yes ? QStringLiteral("ask") : QStringLiteral("ask, No preset");
    return verbs == Verbs() ? kind : kind + QStringLiteral(", %1 or %2").arg(verbs.yes, verbs.no);
}

/// Runs out of patience by being looked at.
class FakeWaitingSign : public WaitingSign {
  public:
    explicit FakeWaitingSign(int patience) : patience_(patience) {}

    [[nodiscard]] bool isShown() const override { return true; }
    [[nodiscard]] bool isGivenUp() const override { return patience_-- <= 0; }

  private:
    mutable int patience_;
};

class FakeProgressSign : public ProgressSign {
  public:
    explicit FakeProgressSign(QString stopAt) : stopAt_(std::move(stopAt)) {}

    void advance(const QString &what, int /*step*/) override { stopped_ = stopped_ || what == stopAt_; }
    [[nodiscard]] bool isStopped() const override { return stopped_; }

  private:
    QString stopAt_;
    bool stopped_ = false;
};

} // namespace

FakePrompts::~FakePrompts() {
    for (const Expectation &expectation : script_) {
        ADD_FAILURE() << "nobody asked: " << expectation.question.toStdString();
    }
}

void FakePrompts::expect(const QStringList &question, const QString &answer, bool beginningOnly) {
    script_.push_back({question.join(separator), answer, beginningOnly});
}

QString FakePrompts::answer(const QStringList &question) {
    const QString asked = question.join(separator);
    if (script_.empty()) {
        ADD_FAILURE() << "unexpected: " << asked.toStdString();
        return {};
    }
    const Expectation expected = script_.front();
    script_.pop_front();
    const bool met = expected.beginningOnly ? asked.startsWith(expected.question) : asked == expected.question;
    EXPECT_TRUE(met) << "asked:    " << asked.toStdString() << "\nexpected: " << expected.question.toStdString();
    if (const std::function<void()> action = std::exchange(whileOpen_, {})) {
        action();
    }
    return expected.answer;
}

void FakePrompts::expectMessage(const QString &text, const QString &title, MessageIcon icon) {
    expect({QStringLiteral("message"), text, title, iconName(icon)}, {});
}

void FakePrompts::expectReport(const QString &beginning) {
    expect({QStringLiteral("message"), beginning}, {}, true);
}

void FakePrompts::expectAsk(const QString &text, const QString &title, bool answer, Preset preset, const Verbs &verbs) {
    expect({questionKind(preset, verbs), text, title}, answer ? QStringLiteral("yes") : QString());
}

void FakePrompts::expectOverwrite(const QString &text, const QString &title, bool answer) {
    expectAsk(text, title, answer, Preset::No, {QStringLiteral("&Overschrijf"), QStringLiteral("&Laat staan")});
}

void FakePrompts::expectWait(const QString &beginning, bool answer) {
    expect({QStringLiteral("wait"), beginning}, answer ? QStringLiteral("yes") : QString(), true);
}

void FakePrompts::expectInput(const QString &prompt, const QString &title, const QString &answer) {
    expect({QStringLiteral("input"), prompt, title}, answer);
}

void FakePrompts::expectSaveFileName(const QString &title, const QString &proposal, const QString &answer) {
    expect({QStringLiteral("save"), title, proposal}, answer);
}

void FakePrompts::expectFolder(const QString &instruction, const QString &start, const QString &answer) {
    expect({QStringLiteral("folder"), instruction, start}, answer);
}

void FakePrompts::expectColour(std::optional<std::int32_t> answer) {
    expect({QStringLiteral("colour")}, answer ? QString::number(*answer) : QString());
}

void FakePrompts::message(const QString &text, const QString &title, MessageIcon icon) {
    answer({QStringLiteral("message"), text, title, iconName(icon)});
}

bool FakePrompts::ask(const QString &text, const QString &title, Preset preset, const Verbs &verbs) {
    return !answer({questionKind(preset, verbs), text, title}).isEmpty();
}

bool FakePrompts::waitUntil(const QString &text, const QString &title, const std::function<bool()> &isOver) {
    return !answer({QStringLiteral("wait"), text, title}).isEmpty() && isOver();
}

QString FakePrompts::input(const QString &prompt, const QString &title) {
    return answer({QStringLiteral("input"), prompt, title});
}

QString FakePrompts::saveFileName(const QString &title, const QString &proposal) {
    return answer({QStringLiteral("save"), title, proposal});
}

QString FakePrompts::folder(const QString &instruction, const QString &start) {
    return answer({QStringLiteral("folder"), instruction, start});
}

std::optional<std::int32_t> FakePrompts::colour(std::int32_t /*initial*/) {
    const QString chosen = answer({QStringLiteral("colour")});
    return chosen.isEmpty() ? std::nullopt : std::optional<std::int32_t>(chosen.toInt());
}

std::unique_ptr<WaitingSign> FakePrompts::waitFor(const QString &folder) {
    waitedFor << folder;
    return std::make_unique<FakeWaitingSign>(patience);
}

std::unique_ptr<ProgressSign> FakePrompts::progress(const QString &title, int /*steps*/) {
    progressTitles << title;
    return std::make_unique<FakeProgressSign>(stopAt);
}

} // namespace orvel
