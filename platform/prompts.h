#pragma once

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace orvel {

/// Above every message of what went wrong.
inline const QString errorTitle = QStringLiteral("Foutmelding");

enum class MessageIcon { Information, Exclamation, Critical };

/// The button of a question that Enter presses.
enum class Preset { Yes, No };

/// What the two buttons of a question say; the system's own questions are answered with Ja and Nee.
struct Verbs {
    QString yes = QStringLiteral("&Ja");
    QString no = QStringLiteral("&Nee");

    bool operator==(const Verbs &) const = default;
};

/// Tells the presenter what the program waits for, as long as it lives, and offers to go on without it.
class WaitingSign {
  public:
    virtual ~WaitingSign() = default;

    /// Whether it covers the windows: from then on clicks reach nothing but the sign.
    [[nodiscard]] virtual bool isShown() const = 0;
    /// Whether the presenter does not want to wait any longer.
    [[nodiscard]] virtual bool isGivenUp() const = 0;
};

/// A window that shows how far a long work is, as long as it lives, with a button that stops it.
class ProgressSign {
  public:
    virtual ~ProgressSign() = default;

    /// what: the file at hand, say. step: 0 .. the number of steps.
    virtual void advance(const QString &what, int step) = 0;
    [[nodiscard]] virtual bool isStopped() const = 0;
};

/// Every modal question and message that the presenter gets. Calls return when the box is closed.
class Prompts {
  public:
    virtual ~Prompts() = default;

    /// A box with only an OK button.
    virtual void message(const QString &text, const QString &title, MessageIcon icon) = 0;
    /// A box with two buttons and a question icon; true for the first. Closing the box is the second. What destroys
    /// anything is never the preset.
    virtual bool ask(const QString &text, const QString &title, Preset preset, const Verbs &verbs) = 0;
    bool ask(const QString &text, const QString &title, Preset preset = Preset::Yes) {
        return ask(text, title, preset, Verbs());
    }
    /// A box that stays until isOver() says so (it is asked once a second) or the presenter gives up; false for the
    /// latter.
    virtual bool waitUntil(const QString &text, const QString &title, const std::function<bool()> &isOver) = 0;
    /// A one-line text; empty when the box was cancelled.
    virtual QString input(const QString &prompt, const QString &title) = 0;
    /// A file to write, chosen in a save dialog that starts on proposal, a name or a path; empty when it was cancelled.
    /// The folder must answer: the dialog reads it in the window's thread.
    virtual QString saveFileName(const QString &title, const QString &proposal) = 0;
    /// A folder; empty when the dialog was cancelled. start: answers, as above.
    virtual QString folder(const QString &instruction, const QString &start) = 0;
    /// A colour as red + green * 256 + blue * 65536; nothing when the dialog was cancelled.
    virtual std::optional<std::int32_t> colour(std::int32_t initial) = 0;
    /// A sign that it waits for a folder; it shows itself when that takes a while. Returns at once.
    virtual std::unique_ptr<WaitingSign> waitFor(const QString &folder) = 0;
    /// A window that shows progress, at once. Returns at once.
    virtual std::unique_ptr<ProgressSign> progress(const QString &title, int steps) = 0;
};

} // namespace orvel
