#pragma once

#include "dsp/audio_transform.h"
#include "production/loudness_stage.h"
#include "production/stages.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <vector>

namespace orvel {

/// What the stages are to do: the panel and the station's goal as they are at one moment.
struct StageWishes {
    ProcessorSettings settings;
    LoudnessGoal goal;
};

/// One run of the stages that are on, in their order, loudness last, over samples in memory. For any thread.
class StageRun {
  public:
    using Samples = std::vector<std::int16_t>;
    /// Does a stage's work, with whatever belongs before and after it. What it throws ends the run.
    using Around = std::function<void(const std::function<void()> &work)>;

    /// transform, meter: nobody else's as long as it runs.
    StageRun(StageWishes wishes, AudioTransform &transform, LoudnessMeter &meter)
        : wishes_(std::move(wishes)), transform_(transform), meter_(meter) {}

    /// Signed 16-bit mono, in place.
    void run(Samples &samples, int sampleRate, const Around &around);

    /// Sentences for the presenter.
    [[nodiscard]] const QStringList &notes() const { return notes_; }
    /// The stage after which nothing was to be heard any more, of a take that could be heard before; empty when there
    /// is none. Heard is a peak above -60 dB below full scale, not heard one below -70.
    [[nodiscard]] const QString &silencer() const { return silencer_; }

  private:
    void stage(const QString &caption, Samples &samples, const Around &around, const std::function<void()> &work);
    void bringToGoal(Samples &samples, int sampleRate, const Around &around);

    StageWishes wishes_;
    AudioTransform &transform_; // NOLINT(cppcoreguidelines-avoid-const-or-ref-data-members): lent for one run
    LoudnessMeter &meter_;      // NOLINT(cppcoreguidelines-avoid-const-or-ref-data-members)
    bool isFirst_ = true;
    bool wasAudible_ = false;
    QStringList notes_;
    QString silencer_;
};

} // namespace orvel
