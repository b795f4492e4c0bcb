#pragma once

#include "platform/loudness.h"
#include "production/aside.h"
#include "recording/take_marks.h"

#include <QHash>
#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace orvel {

class Places;
struct Platform;

/// What is found in a take.
struct Findings {
    /// Speech as it is in the take. Too loud is where its original, as it was recorded, was at full scale; what was cut
    /// out of the take is left out.
    TakeMarks marks;
    std::optional<Loudness> loudness; ///< nothing for a take that has none

    bool operator==(const Findings &) const = default;
};

/// Looks where speech is in takes of this run, how loud they are, and where they were too loud when they were recorded.
/// Of a take up to a minute that is known at once; a longer one is read on a thread of its own.
class TakeFindings {
  public:
    static constexpr int atOnce = 60; ///< seconds

    /// changed: something more is known. All of them live longer.
    TakeFindings(Platform &platform, const Places &places, std::function<void()> changed);

    /// Nothing happens where the take is known, or is being looked at. dry: the take as it was recorded; empty where
    /// there is none. What cannot be read has no findings, and is not looked at again.
    void want(const QString &take, const QString &dry);
    /// The take is another one now, or gone.
    void forget(const QString &take);
    /// Nothing as long as it is not known, and for what cannot be read.
    [[nodiscard]] const Findings *of(const QString &take) const;

  private:
    struct Look;

    Platform &platform_;
    const Places &places_;
    std::function<void()> changed_;
    QHash<QString, std::optional<Findings>> known_; ///< empty for what cannot be read
    QString wanted_;                                ///< what is being looked at
    Aside aside_;
};

/// "-18,3 LUFS, piek -2,1 dBTP".
[[nodiscard]] QString toText(const Loudness &loudness);

} // namespace orvel
