#pragma once

#include "platform/database.h"

#include <QString>

#include <memory>

namespace orvel {

class FileSystem;
class Prompts;
struct Platform;
struct Settings;

/// The tracks and jingles of the whole network, for the preview. Recording works without them.
class Catalogues {
  public:
    /// All of it outlives the catalogues.
    Catalogues(Platform &platform, Settings &settings) : platform_(platform), settings_(settings) {}

    /// Name of the file that holds the records of a kind of step (TrackStep or JingleStep).
    [[nodiscard]] static QString fileName(int kind);

    /// Opens both where the settings use them. One that cannot be opened is told; the other one stays open. False, told
    /// as well, where there are none: until the settings are read again they are not used.
    bool open();
    /// Opens a kind's catalogue anew, in the order of its numbers. Throws what opening and querying throw; the kind's
    /// catalogue is null then.
    void reopen(int kind);
    /// Null while it is not open.
    [[nodiscard]] RecordSet *of(int kind) const;

    std::unique_ptr<RecordSet> datTracks;
    std::unique_ptr<RecordSet> datJingles;

  private:
    Platform &platform_;
    Settings &settings_;
};

} // namespace orvel
