#pragma once

#include "dsp/audio_transform.h"
#include "platform/audio_file.h"
#include "platform/platform.h"
#include "production/stage_run.h"
#include "station/recovery.h"

#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace orvel {

/// What processing a take needs of the rest of the program; all of it outlives the chain.
struct ProcessingContext {
    Platform &platform;
    const QString &programFolder;
    /// The stages' settings; asked for once a take.
    std::function<ProcessorSettings()> settings;
    Recovery &recovery;
    /// Shows lblProcess and a waiting cursor and lets the window repaint, or takes them away.
    std::function<void(bool visible)> showProcess;
    /// One sentence for the status line.
    std::function<void(const QString &sentence)> tell;
    /// How loud the station wants its takes; asked for once a take.
    std::function<LoudnessGoal()> loudness = [] { return LoudnessGoal(); };
};

/// The studio stages between the end of a recording and its encoding. Each one that is on rewrites the take's file
/// through "\temp2\".
class ProcessingChain {
  public:
    explicit ProcessingChain(ProcessingContext context);

    /// Runs the stages that are on, always in the order gain, normalisation, compressor, reverb, trim, and loudness,
    /// where the station has a goal for that, then measures how loud the take has become. The window is
    /// blocked until it returns. Throws FatalError where a folder or a file is missing or a file cannot be
    /// replaced. When the take's sound cannot be read, or a stage's cannot be written, the take stays as it was before
    /// that stage and the status line tells it. In every case the take is complete in "\temp\" or in "\temp2\"; what
    /// is left in the latter goes to recovery before the name is used again. The raw take of one that a stage replaced
    /// goes to recovery; when the stages have made it inaudible (a peak above -60 dB below full scale came in, nothing
    /// above -70 dB came out), the status line names the stage.
    void AudioProcessing(const QString &wavPath);
    /// What it would do now.
    [[nodiscard]] StageWishes wishes() const;

  private:
    void stage(const std::function<void()> &work);
    void StartOperation();
    void EndOperation();
    void keepRaw();
    void settleRaw(const QString &silencer);
    void openTake();
    void createOutput();
    void readTake();
    void giveUp();
    void abandonStage();
    void dropOutput();

    ProcessingContext context_;
    std::unique_ptr<AudioFileReader> AudioFile2;
    std::unique_ptr<WavFileWriter> AudioFile3;
    AudioTransform AudioTransform1;
    std::vector<std::int16_t> samples_; ///< the whole take, reused by every stage
    QString take_;
    QString stageOutput_;
    QString raw_;                  ///< a second name of the raw take, as soon as there is one
    bool isChanged_ = false;       ///< a stage's sound stands in the take's place
    bool outputIsPartial_ = false; ///< nothing but a part of what the take still has
};

} // namespace orvel
