#pragma once

#include "recording/take.h"
#include "recording/take_shelf.h"
#include "station/journal.h"

#include <QHash>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace orvel {

class FileLock;
class FileSystem;
class Recovery;

/// The takes that were recorded and are not filed, with what the journal says of them: whose each one is, whatever is
/// selected, also after a restart.
class TakeStore {
  public:
    /// holder: whom another program finds as the holder of a take's name.
    TakeStore(FileSystem &files, const Places &places, Journal &journal, Recovery &recovery, QByteArray holder)
        : files_(files), places_(places), journal_(journal), recovery_(recovery), holder_(std::move(holder)) {}
    ~TakeStore();
    TakeStore(const TakeStore &) = delete;
    TakeStore &operator=(const TakeStore &) = delete;
    TakeStore(TakeStore &&) = delete;
    TakeStore &operator=(TakeStore &&) = delete;

    /// A take of this name was filed, deleted or recorded anew: what belongs to the one before goes with it.
    std::function<void(const QString &name)> ended = [](const QString &) {};

    /// Keeps other programs on this station from using a name, until the take is filed. False when one of them does so
    /// already. Throws BadFileName.
    [[nodiscard]] bool reserve(const QString &name);
    /// Gives a name back under which nothing was begun.
    void release(const QString &name);
    /// Whether there is a take of exactly this step, with something in it.
    [[nodiscard]] bool isKept(const Take &take) const;

    /// Before the recorder starts: an earlier take of that name goes to recovery. Throws what the disk throws; like any
    /// start that fails it is then to be abandoned.
    void begin(const Take &take);
    /// The recording is complete, and not processed yet.
    void recorded(const Take &take);
    /// It is ready to be listened to and saved.
    void keep(const Take &take);
    /// Nothing was recorded: what is left of it goes, the earlier take comes back.
    void abandon(const Take &take);
    /// It was filed: it goes, but stays among the step's takes.
    void filed(const Take &take);
    /// It was filed elsewhere, or is gone.
    void forget(const QString &name);

    /// Every take of a step.
    [[nodiscard]] TakeShelf &shelf() { return shelf_; }
    [[nodiscard]] const TakeShelf &shelf() const { return shelf_; }
    /// Another take of the step is the one that can be listened to and saved. Throws what the shelf throws.
    void choose(const Take &take, int number);

  private:
    struct Earlier {
        QString moved; ///< in recovery
        std::optional<JournalEntry> entry;
    };

    [[nodiscard]] static JournalEntry entryOf(const Take &take, JournalEntry::Phase phase);
    [[nodiscard]] bool hasSound(const QString &wav) const;

    FileSystem &files_;
    const Places &places_;
    Journal &journal_;
    Recovery &recovery_;
    QByteArray holder_;
    QHash<QString, std::shared_ptr<FileLock>> locks_;
    Earlier earlier_;
    TakeShelf shelf_{files_, places_, recovery_};
};

} // namespace orvel
