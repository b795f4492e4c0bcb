#pragma once

#include "platform/loudness.h"

#include <QHash>
#include <QString>

#include <optional>

namespace orvel {

struct Platform;

/// How loud the takes of this run are, as they were recorded and processed.
class TakeLoudness {
  public:
    /// platform: outlives this.
    explicit TakeLoudness(Platform &platform) : platform_(platform) {}

    /// Reads a finished take from its file. One that cannot be read is a take all the same, without a loudness.
    void measure(const QString &wavPath);
    /// Nothing for one that has none, or was not measured.
    [[nodiscard]] std::optional<Loudness> of(const QString &wavPath) const;

  private:
    Platform &platform_;
    QHash<QString, Loudness> known_;
};

/// "-18,3 LUFS, piek -2,1 dBTP".
[[nodiscard]] QString toText(const Loudness &loudness);

} // namespace orvel
