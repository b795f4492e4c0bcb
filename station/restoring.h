#pragma once

#include "station/recovery.h"

#include <functional>

namespace orvel {

class FileSystem;
class Prompts;

/// What putting kept files back needs of the rest of the program; all of it outlives it.
struct RestoringContext {
    FileSystem &files;
    Prompts &prompts;
    Recovery &recovery;
    QString programFolder;
    /// Whether a take runs, of a playlist or of the recorder.
    std::function<bool()> takeRuns;
};

/// The name that a kept take had, without an extension: also of one that was kept as it was before processing.
QString takeNameOf(const KeptFile &kept);

/// Puts kept files back where the program looks for them: playlists to do in "\new", takes in "\temp", voice tracks in
/// "\ok".
class Restoring {
  public:
    struct Result {
        bool done = false;
        bool replaced = false; ///< another file that had the name; it is kept now
        QString sentence;      ///< for the presenter
    };

    explicit Restoring(RestoringContext context) : context_(std::move(context)) {}

    /// Asks before it replaces a file, with No as the default. Nothing is put back while a take runs: it could be the
    /// take's own file or playlist. What fails is told in the sentence.
    Result putBack(const KeptFile &file);

  private:
    RestoringContext context_;
};

/// What people call a kind of kept file.
[[nodiscard]] QString kindName(KeptKind kind);

} // namespace orvel
