#pragma once

#include "recording/join.h"

#include <QCoreApplication>

namespace orvel {

class Catalogues;
class DriveMap;
class FileSystem;
class Places;
class Playlist;
struct Settings;

/// Finds what meets in a slot: the items around it as the preview finds them, and its take.
class JoinFiles {
    Q_DECLARE_TR_FUNCTIONS(JoinFiles)

  public:
    struct Sources {
        FileSystem &files;
        const Settings &settings;
        const DriveMap &drives;
        Catalogues &catalogues;
        const Playlist &playlist;
        const Places &places;
    };

    /// All of it outlives the search.
    explicit JoinFiles(Sources sources) : sources_(sources) {}

    /// Of a row of the open playlist that is a slot. A file that is not there is a problem in words. Throws
    /// TypeMismatch, SubscriptOutOfRange for a row without a usable number.
    [[nodiscard]] JoinParts around(int row) const;
    /// The take of a row, recorded or filed; empty where there is none, or the row is no slot.
    [[nodiscard]] QString takeOf(int row) const;

  private:
    [[nodiscard]] std::optional<JoinItem> item(int row, std::int32_t talkMs) const;
    void findMusicOf(int row, int type, JoinItem &item) const;

    Sources sources_;
};

} // namespace orvel
