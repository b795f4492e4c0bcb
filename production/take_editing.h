#pragma once

#include <QHash>
#include <QString>

#include <cstdint>
#include <functional>
#include <vector>

namespace orvel {

class FileSystem;
class Places;
class Recovery;
struct Platform;

/// Something that is done to the sound of a take, with its name for the presenter ("Past op de intro").
struct TakeEdit {
    using Samples = std::vector<std::int16_t>;

    QString name;
    /// Signed 16-bit mono in and out, on a thread of its own. What it throws leaves the take as it was.
    std::function<Samples(Samples samples, int sampleRate)> apply;
};

/// Both ends cut off, with fades of 2 ms; begin and end in samples of the take.
[[nodiscard]] TakeEdit trimBoth(std::size_t begin, std::size_t end);

/// Edits of recorded takes, each of which can be undone and done again, bit for bit, until the take is filed, deleted
/// or recorded anew. A take is called by its name. The states before and after lie in "\temp2\"; at no moment is there
/// no whole take in "\temp\". Whatever fails throws RuntimeError and leaves the take, and what can be undone, as it
/// was.
class TakeEditing {
  public:
    static constexpr std::size_t mostSteps = 50;

    TakeEditing(Platform &platform, const Places &places, Recovery &recovery)
        : platform_(platform), places_(places), recovery_(recovery) {}

    /// False when the edit changed nothing, or would have left nothing. What was undone before cannot be done again
    /// afterwards.
    bool apply(const QString &take, const TakeEdit &edit);
    /// Names of what can be undone or done again; empty when there is nothing.
    [[nodiscard]] QString undoable(const QString &take) const;
    [[nodiscard]] QString redoable(const QString &take) const;
    /// Nothing happens when there is nothing.
    void undo(const QString &take);
    void redo(const QString &take);
    /// The take was filed, deleted or recorded anew. As it was before all edits it goes to recovery, the other states
    /// are gone.
    void forget(const QString &take);

  private:
    struct Step {
        QString edit;
        QString file; ///< the take as it was on the other side of this edit
    };
    struct History {
        std::vector<Step> done;
        std::vector<Step> undone;
        int lastNumber = 0;
    };

    [[nodiscard]] QString newVersion(const QString &take, History &history) const;
    void replace(const QString &take, const QString &file, const QString &kept);
    void step(const QString &take, History &history, std::vector<Step> &from, std::vector<Step> &to);
    void write(const QString &file, const TakeEdit::Samples &samples, int sampleRate);
    void removeAll(std::vector<Step> &steps);

    Platform &platform_;   // NOLINT(cppcoreguidelines-avoid-const-or-ref-data-members): one a station
    const Places &places_; // NOLINT(cppcoreguidelines-avoid-const-or-ref-data-members)
    Recovery &recovery_;   // NOLINT(cppcoreguidelines-avoid-const-or-ref-data-members)
    QHash<QString, History> histories_;
};

/// What the edits of a take left behind when the program ended goes to recovery.
void keepVersions(FileSystem &files, const Places &places, Recovery &recovery, const QString &take);

} // namespace orvel
