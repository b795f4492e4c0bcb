#include "station/station_lock.h"

#include "platform/file_system.h"
#include "platform/runtime_error.h"
#include "station/ignore_errors.h"
#include "station/places.h"

#include <QCoreApplication>

namespace orvel {

StationLock::StationLock(FileSystem &files, const Places &places) : files_(files), places_(places) {}
StationLock::~StationLock() = default;

bool StationLock::get() {
    if (lock_) {
        return true;
    }
    try {
        lock_ = files_.tryLock(places_.lockFile(), toText(presentHolder()));
    } catch (const RuntimeError &) {
        return true;
    }
    return lock_ != nullptr;
}

Holder StationLock::holder() const {
    Holder found;
    ignoringErrors([&] { found = holderIn(files_.read(places_.lockFile())); });
    return found;
}

QString StationLock::sentence() const {
    const Holder other = holder();
    const QString who = other == Holder() ? QCoreApplication::translate("StationLock", "een ander programma")
                                          : QCoreApplication::translate("StationLock", "%1 op %2, sinds %3")
                                                .arg(other.user, other.machine, other.since);
    return QCoreApplication::translate("StationLock",
                                       "Deze werkmap is in gebruik door %1.\n\nZolang dat zo is, "
                                       "verandert dit venster er niets aan. Het gaat verder zodra de map vrij is.")
        .arg(who);
}

} // namespace orvel
