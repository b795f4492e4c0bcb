#pragma once

#include "platform/prompts.h"

namespace orvel {

/// Message boxes and dialogs over the active window.
class QtPrompts : public Prompts {
  public:
    void message(const QString &text, const QString &title, MessageIcon icon) override;
    bool ask(const QString &text, const QString &title) override;
    QString input(const QString &prompt, const QString &title) override;
    QString saveFileName(const QString &title, const QString &proposal) override;
    QString folder(const QString &instruction, const QString &start) override;
    std::optional<std::int32_t> colour(std::int32_t initial) override;
};

} // namespace orvel
