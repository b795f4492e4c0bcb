#pragma once

#include "platform/audio_file.h"
#include "recording/take.h"

#include <QCoreApplication>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace orvel {

class Journal;
class Places;
class Recovery;
class TakeStore;
struct Platform;
struct Settings;

/// What filing needs of the rest of the program; all of it outlives it.
struct FilingContext {
    Platform &platform;
    const Settings &settings;
    const Places &places;
    Recovery &recovery;
    Journal &journal;
    TakeStore &takes;
    StepMarks &marks;
    /// One sentence for the status line.
    std::function<void(const QString &sentence)> tell;
    /// How much of a conversion is done, 0..100; nothing when none runs any more. Lets window events run.
    std::function<void(std::optional<int> percent)> progress;
};

/// The one way from a take to its voice track. It ends in one of two ways: filed, or as it was before, with the take in
/// its place and its step's mark as it was. The journal says what is under way, for the next start.
class Filing {
    Q_DECLARE_TR_FUNCTIONS(Filing)

  public:
    enum class Outcome {
        Filed,
        NoTake,  ///< there never was one: the mark stays
        AsBefore ///< told in the status line
    };

    explicit Filing(FilingContext context);

    /// The format of the files to write; without one nothing can be converted.
    void setFormat(const Mp3Format &format);
    [[nodiscard]] Mp3Format format() const { return FileW->format(); }

    /// Marks the take's step as done; gives the mark that it had. Nothing to mark in the plain recorder.
    bool mark(const Take &take);
    /// The mark as it was.
    void takeBackMark(const Take &take, bool markBefore);
    /// Encodes and files a take whose step is marked. Throws FatalError where a local voice track cannot be written;
    /// what it says tells where the take is.
    Outcome file(const Take &take, bool markBefore);
    /// Encodes a take of the plain recorder into a file of the presenter's choice.
    Outcome saveAs(const Take &take, const QString &target);
    /// Files a take that is an MP3 file already.
    void fileEncoded(const Take &take);
    /// Files an MP3 that was made elsewhere as a local voice track, in one step; the file itself goes. Throws what the
    /// disk throws; nothing is changed then.
    void place(const QString &mp3, const Take &take);
    /// A local voice track that is about to be replaced goes to recovery.
    void keepReplaced(const QString &voiceTrack);

    /// Converts with progress; the window stays responsive. False when it failed: the MP3 is gone then.
    bool TranscodeToMp3(const QString &wavPath, const QString &mp3Path);

  private:
    /// Whether there is a folder to file a voice track in.
    [[nodiscard]] bool copyToPlace(const TakeFiles &files);
    [[nodiscard]] bool shellCopy(const QString &source, const QString &target);
    void begin(const Take &take, const TakeFiles &files, bool markBefore);
    Outcome goBack(const Take &take, bool markBefore, const QString &sentence);
    void finish(const Take &take, const TakeFiles &files);
    void removeIfThere(const QString &path);

    FilingContext context_;
    std::unique_ptr<AudioFileReader> FileR;
    std::unique_ptr<AudioFileWriter> FileW;
};

} // namespace orvel
