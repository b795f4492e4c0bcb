#include "production/import_plan.h"

#include "playlist/field_values.h"
#include "playlist/playlist.h"
#include "playlist/step_types.h"
#include "production/sound_lengths.h"
#include "station/checked.h"
#include "station/ignore_errors.h"

#include <QObject>

#include <algorithm>
#include <optional>

namespace orvel {

namespace {

struct Slot {
    std::int32_t stap = 0;
    QString name;
    std::optional<std::int32_t> talkMs; ///< nothing outside the time tables
};

QString seconds(std::int32_t milliseconds) {
    return QObject::tr("%1 s").arg(secondsOneDecimal(milliseconds));
}

Slot slotOf(const Playlist &playlist, int row) {
    Slot slot;
    ignoringErrors([&] { slot.name = toText(playlist.value(row, AtrackColumn)); });
    ignoringErrors([&] {
        slot.stap = toWholeNumber(playlist.value(row, StapColumn));
        slot.talkMs =
            checkedInt32(std::int64_t{playlist.outtro(slot.stap - 1)} + std::int64_t{playlist.intro(slot.stap + 1)});
    });
    return slot;
}

std::vector<Slot> slotsOf(const Playlist &playlist) {
    std::vector<Slot> slots;
    for (int row = 0; row < playlist.stepCount(); ++row) {
        ignoringErrors([&] {
            if (toWholeNumber(playlist.value(row, TypeColumn)) == PresStep) {
                slots.push_back(slotOf(playlist, row));
            }
        });
    }
    return slots;
}

QString shownLength(std::int32_t length) {
    switch (length) {
    case SoundLengths::notYet:
        return QStringLiteral("...");
    case SoundLengths::unreadable:
        return {};
    default:
        return seconds(length);
    }
}

QString problemOf(const Slot &slot, std::int32_t length) {
    if (slot.name.isEmpty()) {
        return QObject::tr("deze stap heeft geen naam");
    }
    if (length == SoundLengths::unreadable) {
        return QObject::tr("niet leesbaar");
    }
    const std::int32_t over = slot.talkMs ? length - *slot.talkMs : 0;
    // What is shown has one decimal: less than that is no misfit.
    constexpr std::int32_t leastShown = 50;
    return length >= 0 && over >= leastShown ? QObject::tr("%1 te lang").arg(seconds(over)) : QString();
}

void fill(PlannedImport &line, const Slot &slot) {
    line.slot = QObject::tr("Stap %1").arg(slot.stap);
    if (!slot.name.isEmpty()) {
        line.slot += QStringLiteral(": ") + slot.name;
    }
    line.talk = slot.talkMs ? seconds(*slot.talkMs) : QString();
}

} // namespace

std::vector<PlannedImport> planBatch(const Playlist &playlist, const QStringList &files,
                                     const std::function<std::int32_t(std::size_t number)> &lengthOf) {
    const std::vector<Slot> slots = slotsOf(playlist);
    std::vector<PlannedImport> plan(std::max(slots.size(), static_cast<std::size_t>(files.size())));
    for (std::size_t number = 0; number < plan.size(); ++number) {
        PlannedImport &line = plan[number];
        const bool hasFile = number < static_cast<std::size_t>(files.size());
        const bool hasSlot = number < slots.size();
        const std::int32_t length = hasFile ? lengthOf(number) : 0;
        if (hasFile) {
            line.file = files.at(static_cast<qsizetype>(number));
            line.length = shownLength(length);
        }
        if (hasSlot) {
            fill(line, slots[number]);
        }
        if (hasFile && hasSlot) {
            line.problem = problemOf(slots[number], length);
        } else {
            line.problem =
                hasFile ? QObject::tr("geen link voor dit bestand") : QObject::tr("geen bestand voor deze link");
        }
    }
    return plan;
}

QString singleTarget(const Playlist &playlist, int row) {
    if (!playlist.isOpen() || row < 0 || row >= playlist.stepCount()) {
        return QObject::tr("Er is geen stap gekozen om een bestand voor te importeren.");
    }
    const Slot slot = slotOf(playlist, row);
    const QString sentence = QObject::tr("Importeer Bestand is voor stap %1 (%2)").arg(slot.stap).arg(slot.name);
    return slot.talkMs && *slot.talkMs > 0 ? sentence + QObject::tr(", praattijd %1.").arg(seconds(*slot.talkMs))
                                           : sentence + u'.';
}

} // namespace orvel
