#pragma once

#include "platform/database.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace orvel {

class Catalogues;
class DriveMap;

/// A track or jingle as its catalogue has it.
struct FoundMusic {
    QString cataloguePath; ///< as it stands in the catalogue
    QString path;          ///< on this machine; whether it is there is not looked at
    QString title;
    QString description; ///< of a track its artist
};

/// The records of a kind (TrackStep or JingleStep) as their file has them now. Throws what opening and querying throw.
[[nodiscard]] RecordSet &freshRecords(Catalogues &catalogues, int kind);

/// The record with this number among those of a kind; nothing where there is no such record. Throws what reading it
/// throws.
[[nodiscard]] std::optional<FoundMusic> findMusic(RecordSet &records, int kind, std::int32_t track,
                                                  const DriveMap &drives);

} // namespace orvel
