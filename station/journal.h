#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace orvel {

class FileSystem;
class Places;

/// What is under way with one take, as it is written down for the next start of the program.
struct JournalEntry {
    enum class Phase {
        Recording, ///< or being processed
        Kept,      ///< recorded, not filed
        Filing     ///< marked, being encoded and filed
    };

    QString name;     ///< of the take's files
    QString playlist; ///< file name in the to-do folder; empty for a take of the plain recorder
    int stap = 0;     ///< of the step
    Phase phase = Phase::Recording;
    bool markBefore = false; ///< the step's mark before it was filed
    QString target;          ///< the voice track that is being filed
    QString begun;           ///< local time of the recording, for people

    bool operator==(const JournalEntry &) const = default;
};

/// One small file a take ("\journal\" + name + ".take", JSON), written as one step and synced, so that whatever ends
/// the program leaves a true account. Entries that cannot be read are passed over.
class Journal {
  public:
    Journal(FileSystem &files, const Places &places) : files_(files), places_(places) {}

    /// Throws what the disk throws; the entry before stays then.
    void write(const JournalEntry &entry);
    /// Nothing happens when there is none, or when the disk refuses.
    void remove(const QString &name);
    [[nodiscard]] std::optional<JournalEntry> entry(const QString &name) const;
    /// All of them, sorted by name.
    [[nodiscard]] std::vector<JournalEntry> entries() const;

  private:
    FileSystem &files_;
    const Places &places_;
};

} // namespace orvel
