#pragma once

#include "platform/prompts.h"

namespace orvel {

/// Message boxes and dialogs over the active window.
class QtPrompts : public Prompts {
  public:
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
};

} // namespace orvel
