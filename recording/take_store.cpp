#include "recording/take_store.h"

#include "platform/file_system.h"
#include "station/ignore_errors.h"
#include "station/places.h"
#include "station/recovery.h"

#include <QDateTime>

#include <utility>

namespace orvel {

TakeStore::~TakeStore() = default;

bool TakeStore::reserve(const QString &name) {
    if (locks_.contains(name)) {
        return true;
    }
    std::shared_ptr<FileLock> lock = files_.tryLock(places_.takeLock(name), holder_);
    if (!lock) {
        return false;
    }
    locks_.insert(name, lock);
    return true;
}

void TakeStore::release(const QString &name) {
    if (!journal_.entry(name)) {
        locks_.remove(name);
    }
}

bool TakeStore::hasSound(const QString &wav) const {
    constexpr qint64 header = 44; // bytes
    bool has = false;
    ignoringErrors([&] { has = files_.fileExists(wav) && files_.fileSize(wav) > header; });
    return has;
}

bool TakeStore::isKept(const Take &take) const {
    bool kept = false;
    ignoringErrors([&] { kept = hasSound(places_.take(take.name())); });
    if (!kept) {
        return false;
    }
    const auto entry = journal_.entry(take.name());
    return !entry || (entry->playlist == take.step.playlist && entry->stap == take.step.stap);
}

JournalEntry TakeStore::entryOf(const Take &take, JournalEntry::Phase phase) {
    JournalEntry entry;
    entry.name = take.name();
    entry.playlist = take.step.playlist;
    entry.stap = take.step.stap;
    entry.phase = phase;
    entry.begun = QDateTime::currentDateTime().toString(Qt::ISODate);
    return entry;
}

void TakeStore::begin(const Take &take) {
    const QString wav = places_.take(take.name());
    earlier_ = {{}, journal_.entry(take.name())}; // first: what fails from here on is abandoned
    if (files_.fileExists(wav)) {
        if (isKept(take)) {
            // What cannot be put there is in recovery all the same.
            ignoringErrors([&] { shelf_.putAside(take); });
        }
        earlier_.moved = recovery_.keep(wav);
    }
    journal_.write(entryOf(take, JournalEntry::Phase::Recording));
}

void TakeStore::recorded(const Take &take) {
    // A take is whole without its second name.
    ignoringErrors([&] { shelf_.add(take); });
}

void TakeStore::filed(const Take &take) {
    const QString wav = places_.take(take.name());
    ignoringErrors([&] {
        if (files_.fileExists(wav)) {
            shelf_.filed(take);
        }
    });
    ignoringErrors([&] {
        if (files_.fileExists(wav)) {
            files_.remove(wav);
        }
    });
    forget(take.name());
}

void TakeStore::choose(const Take &take, int number) {
    const QString wav = places_.take(take.name());
    if (files_.fileExists(wav) && !isKept(take)) {
        recovery_.keep(wav); // another step's
    }
    shelf_.choose(take, number);
    if (files_.fileExists(wav)) {
        keep(take);
    } else {
        forget(take.name());
    }
}

void TakeStore::keep(const Take &take) {
    JournalEntry entry = entryOf(take, JournalEntry::Phase::Kept);
    if (const auto begun = journal_.entry(take.name())) {
        entry.begun = begun->begun;
    }
    // Without it the take is offered as an unfinished one at the next start.
    ignoringErrors([&] { journal_.write(entry); });
    earlier_ = {};
    ended(take.name());
}

void TakeStore::abandon(const Take &take) {
    const Earlier earlier = std::exchange(earlier_, {});
    const QString wav = places_.take(take.name());
    ignoringErrors([&] {
        if (files_.fileExists(wav) && !hasSound(wav)) {
            files_.remove(wav);
        }
        if (!earlier.moved.isEmpty() && !files_.fileExists(wav)) {
            files_.move(earlier.moved, wav);
        }
    });
    if (!earlier.entry) {
        forget(take.name());
        return;
    }
    ignoringErrors([&] { journal_.write(*earlier.entry); });
}

void TakeStore::forget(const QString &name) {
    journal_.remove(name);
    locks_.remove(name);
    ended(name);
}

} // namespace orvel
