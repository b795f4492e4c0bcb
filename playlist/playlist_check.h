#pragma once

#include "platform/database.h"

#include <QHash>
#include <QString>

namespace orvel {

/// Why a file cannot be opened as a playlist; empty for one that can. Remembers what it found in a file as long as its
/// size and time stay, so that a list can be filled often; a file that could not be read is tried again each time.
class PlaylistCheck {
  public:
    explicit PlaylistCheck(DatabaseEngine &databases) : databases_(databases) {}

    [[nodiscard]] QString problem(const QString &folder, const QString &name);

  private:
    struct Answer {
        qint64 size = -1;
        qint64 time = 0;
        QString problem;
    };

    DatabaseEngine &databases_;
    QHash<QString, Answer> answers_;
};

} // namespace orvel
