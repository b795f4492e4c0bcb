#pragma once

#include "production/filing.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace orvel {

class Playlist;
struct CurrentStep;

/// What importing sound files needs of the rest of the program; all of it outlives it.
struct SoundImportContext {
    Platform &platform;
    const Settings &settings;
    const Places &places;
    const Playlist &playlist;
    CurrentStep &step;
    StepMarks &marks;
    Filing &filing;
    /// How far it is, 0..100, and at what; runs window events. False stops the import.
    std::function<bool(int percent, const QString &what)> progress;
    /// The job with this number, from 0, is filed now.
    std::function<void(std::size_t number)> begins;
    /// A file that could not be converted, and its step.
    std::function<void(const QString &sentence)> failed;
};

/// Files voice tracks that were recorded elsewhere: WAV files become MP3 files, MP3 files are copied as they are. They
/// always go to the finished folder. A step is marked also when its file could not be converted.
class SoundImport {
    Q_DECLARE_TR_FUNCTIONS(SoundImport)

  public:
    /// One file on its way to a step's voice track.
    struct Job {
        QString source; ///< full path
        Take take;
        int row = -1; ///< of the step

        bool operator==(const Job &) const = default;
    };

    explicit SoundImport(SoundImportContext context) : context_(std::move(context)) {}

    /// Why nothing can be imported for the selected step, or so many files for all of them; empty when it can.
    [[nodiscard]] QString singleProblem() const;
    [[nodiscard]] QString batchProblem(qsizetype files) const;
    /// Whether a row is a step with a name for a voice track.
    [[nodiscard]] bool hasName(int row) const;
    /// The one of a row, whichever is selected. Throws TypeMismatch for a step without a name.
    [[nodiscard]] Job into(int row, const QString &source) const;
    /// The selected step's.
    [[nodiscard]] Job single(const QString &source) const;
    /// The n-th presentation step gets the n-th file; the last one serves the steps that are left; no files, no jobs.
    /// Throws TypeMismatch for a step without a name.
    [[nodiscard]] std::vector<Job> batch(const QString &folder, const QStringList &files) const;
    /// Converts, then files and marks in order; false when the presenter stopped it. What was filed until then stays.
    /// Throws what the disk and the playlist throw; BadFileName before anything is done.
    bool run(const std::vector<Job> &jobs);
    /// Row of the job that was filed, or failed, last.
    [[nodiscard]] int lastRow() const { return lastRow_; }

  private:
    bool ConvertFiles(const std::vector<Job> &jobs, std::vector<bool> &converted);
    bool fileOne(const Job &job, bool converted);
    bool copyMp3(const Job &job);
    [[nodiscard]] QString partPath(const Job &job) const;

    SoundImportContext context_;
    int lastRow_ = -1;
};

} // namespace orvel
