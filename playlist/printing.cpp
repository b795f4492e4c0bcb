#include "playlist/printing.h"

#include "platform/file_system.h"
#include "platform/report.h"
#include "platform/report_template.h"
#include "playlist/field_values.h"
#include "playlist/step_types.h"
#include "playlist/voice_tracks.h"
#include "station/places.h"

#include <QDateTime>
#include <QFileInfo>
#include <QLocale>

namespace orvel {

namespace {

constexpr int secondsPerMinute = 60;

QVariant fieldOf(const RecordSet &step, int column) {
    return step.field(QString::fromLatin1(stepField(column).name));
}

QString minutesAndSeconds(int seconds) {
    return QStringLiteral("%1:%2").arg(seconds / secondsPerMinute).arg(seconds % secondsPerMinute, 2, 10, QChar(u'0'));
}

/// Nothing for a step without a length of talk-over.
QString talkOver(const QVariant &milliseconds) {
    const int value = milliseconds.toInt();
    return value == 0 ? QString() : secondsOneDecimal(value);
}

int lengthOf(const RecordSet &steps) {
    return fieldOf(steps, LengteMinColumn).toInt() * secondsPerMinute + fieldOf(steps, LengteSecColumn).toInt();
}

QVariantMap stepValues(const RecordSet &steps) {
    QVariantMap step;
    for (int column = 0; column < steps.fieldCount(); ++column) {
        step.insert(steps.fieldName(column).toLower(), asStored(steps.field(column)));
    }
    for (const StepField &field : stepFields) {
        if (field.printed != nullptr) {
            step.insert(QString::fromLatin1(field.printed), step.value(QString::fromLatin1(field.name).toLower()));
        }
    }
    const QString track = fieldOf(steps, AtrackColumn).toString();
    step.insert(QStringLiteral("length"), minutesAndSeconds(lengthOf(steps)));
    step.insert(QStringLiteral("intro"), talkOver(fieldOf(steps, IntroColumn)));
    step.insert(QStringLiteral("outro"), talkOver(fieldOf(steps, OuttroColumn)));
    step.insert(QStringLiteral("voicetrack"), track == QStringLiteral("NONE") ? QString() : track);
    step.insert(QStringLiteral("presentation"), fieldOf(steps, TypeColumn).toInt() == PresStep);
    step.insert(QStringLiteral("finished"), fieldOf(steps, ImportedColumn).toBool());
    return step;
}

} // namespace

QVariantMap Printing::values() const {
    const auto steps =
        platform_.databases.open(playlist_.fullPath())->query(QStringLiteral("SELECT * FROM Steps ORDER BY [Stap]"));
    const std::optional<FiledTracks> filed = tracks_.filed();
    QVariantList rows;
    int length = 0;
    int slots_ = 0;
    int done = 0;
    for (int row = 0; row < steps->recordCount(); ++row) {
        steps->moveTo(row);
        QVariantMap step = stepValues(*steps);
        // By what was just read: another program may have added steps to the open playlist.
        const StepTrack track = filed ? tracks_.look(*filed, fieldOf(*steps, TypeColumn),
                                                     fieldOf(*steps, ImportedColumn), fieldOf(*steps, AtrackColumn))
                                      : StepTrack();
        step.insert(QStringLiteral("missing"), track.isMissing);
        step.insert(QStringLiteral("lacking"), step.value(QStringLiteral("finished")).toBool()
                                                   ? track.stations.lacking.join(QStringLiteral(", "))
                                                   : QString());
        const bool isSlot = step.value(QStringLiteral("presentation")).toBool();
        length += lengthOf(*steps);
        slots_ += isSlot ? 1 : 0;
        done += isSlot && step.value(QStringLiteral("finished")).toBool() ? 1 : 0;
        rows.append(step);
    }
    const QLocale dutch(QLocale::Dutch);
    return {{QStringLiteral("playlist"), QFileInfo(playlist_.fileName()).completeBaseName()},
            {QStringLiteral("date"), dutch.toString(QDate::currentDate(), QStringLiteral("d MMMM yyyy"))},
            {QStringLiteral("steps"), rows},
            {QStringLiteral("count"), QString::number(rows.size())},
            {QStringLiteral("slots"), QString::number(slots_)},
            {QStringLiteral("done"), QString::number(done)},
            {QStringLiteral("length"), minutesAndSeconds(length)}};
}

void Printing::Printen() const {
    if (step_.VoiceTrackName.isEmpty()) {
        return;
    }
    const QString path = places_.reportTemplate();
    const QByteArray reportTemplate = platform_.files.read(path);
    rptPrint.preview(QStringLiteral("Playlist ") + playlist_.fileName(), fillTemplate(reportTemplate, values(), path));
}

} // namespace orvel
