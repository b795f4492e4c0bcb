#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace orvel {

enum class MessageIcon { Information, Exclamation, Critical };

/// Every modal question and message that the presenter gets. Calls return when the box is closed.
class Prompts {
  public:
    virtual ~Prompts() = default;

    /// A box with only an OK button.
    virtual void message(const QString &text, const QString &title, MessageIcon icon) = 0;
    /// A Yes/No box with a question icon; true for Yes. Closing the box is No.
    virtual bool ask(const QString &text, const QString &title) = 0;
    /// A one-line text; empty when the box was cancelled.
    virtual QString input(const QString &prompt, const QString &title) = 0;
    /// A file to write, chosen in a save dialog that starts on proposal; empty when it was cancelled.
    virtual QString saveFileName(const QString &title, const QString &proposal) = 0;
    /// A folder; empty when the dialog was cancelled.
    virtual QString folder(const QString &instruction, const QString &start) = 0;
    /// A colour as red + green * 256 + blue * 65536; nothing when the dialog was cancelled.
    virtual std::optional<std::int32_t> colour(std::int32_t initial) = 0;
};

} // namespace orvel
