#include "recording/talk_words.h"

#include "playlist/current_step.h"
#include "playlist/playlist.h"
#include "station/ignore_errors.h"

#include <QCoreApplication>
#include <QStringList>

namespace orvel {

namespace {

constexpr int performer = stepColumn("artiest");
constexpr int songTitle = stepColumn("Titel");

QString tr(const char *text) {
    return QCoreApplication::translate("TalkWords", text);
}

/// What there is of performer and title.
QString nameOf(const Playlist &playlist, int row, std::initializer_list<int> columns) {
    QStringList parts;
    for (const int column : columns) {
        ignoringErrors([&] { parts << playlist.value(row, column).toString().trimmed(); });
    }
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

/// "outro 3,4" beside a name, where there is one.
QString joined(const QStringList &parts) {
    QStringList there = parts;
    there.removeAll(QString());
    return there.join(QStringLiteral(", "));
}

} // namespace

QString inSeconds(std::int64_t milliseconds) {
    const std::int64_t tenths = (std::abs(milliseconds) + 50) / 100;
    const QString sign = milliseconds < 0 && tenths > 0 ? QStringLiteral("-") : QString();
    return sign + QStringLiteral("%1,%2").arg(tenths / 10).arg(tenths % 10);
}

Neighbours neighboursOf(const Playlist &playlist, const CurrentStep &step) {
    if (!playlist.isOpen() || !step.times.visible || step.row < 0) {
        return {};
    }
    Neighbours words;
    words.talk = tr("jij %1 s").arg(inSeconds(step.TalkTotalMs));
    if (step.row > 0) {
        words.previous = QStringLiteral("← ") + joined({nameOf(playlist, step.row - 1, {performer, songTitle}),
                                                        tr("outro %1").arg(inSeconds(step.PrevOutroMs))});
    }
    if (step.row + 1 < playlist.stepCount()) {
        words.next =
            joined({tr("intro %1").arg(inSeconds(step.NextIntroMs)), nameOf(playlist, step.row + 1, {songTitle})}) +
            QStringLiteral(" →");
    }
    return words;
}

TalkPhase phaseOf(const CurrentStep &step, std::int32_t elapsedMs) {
    if (!step.times.visible || step.TalkTotalMs <= 0) {
        return {};
    }
    const std::int64_t left = std::int64_t{step.TalkTotalMs} - elapsedMs;
    if (left < 0) {
        return {TalkPhase::Part::TooLong, tr("■ %1 s te lang").arg(inSeconds(-left))};
    }
    if (elapsedMs < step.PrevOutroMs) {
        return {TalkPhase::Part::Outro, tr("◀ outro, nog %1 s").arg(inSeconds(left))};
    }
    return {TalkPhase::Part::Intro, tr("▶ intro, nog %1 s").arg(inSeconds(left))};
}

} // namespace orvel
