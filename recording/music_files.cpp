#include "recording/music_files.h"

#include "platform/runtime_error.h"
#include "playlist/field_values.h"
#include "playlist/step_types.h"
#include "recording/catalogues.h"
#include "station/drive_map.h"

namespace orvel {

namespace {

/// Catalogues leave fields empty.
QString textOrNothing(const QVariant &value) {
    return value.isNull() ? QString() : toText(value);
}

} // namespace

RecordSet &freshRecords(Catalogues &catalogues, int kind) {
    if (RecordSet *open = catalogues.of(kind)) {
        try {
            open->refresh();
            return *open;
        } catch (const RuntimeError &) { // NOLINT(bugprone-empty-catch)
            // A station replaces its catalogues while the program runs.
        }
    }
    catalogues.reopen(kind);
    return *catalogues.of(kind);
}

std::optional<FoundMusic> findMusic(RecordSet &records, int kind, std::int32_t track, const DriveMap &drives) {
    const QString SearchCriterion = QStringLiteral("tracknr=") + QString::number(track);
    if (records.recordCount() == 0 || !records.findFirst(SearchCriterion)) {
        return {};
    }
    FoundMusic found;
    found.cataloguePath = textOrNothing(records.field(QStringLiteral("path")));
    found.path = drives.resolve(found.cataloguePath);
    found.title = textOrNothing(records.field(QStringLiteral("titel")));
    found.description =
        textOrNothing(records.field(kind == TrackStep ? QStringLiteral("artiest") : QStringLiteral("Omschrijving")));
    return found;
}

} // namespace orvel
