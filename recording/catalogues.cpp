#include "recording/catalogues.h"

#include "platform/file_system.h"
#include "platform/platform.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "playlist/step_types.h"
#include "settings/settings.h"
#include "station/places.h"

namespace orvel {

QString Catalogues::fileName(int kind) {
    return kind == TrackStep ? QStringLiteral("digital.mdb") : QStringLiteral("jingles.mdb");
}

bool Catalogues::open() {
    if (!settings_.Network) {
        return true;
    }
    if (!platform_.files.fileExists(Places::tracks(settings_.Databasepath))) {
        settings_.Network = {};
        platform_.prompts.message(
            QStringLiteral("Databasebestanden van de server werden niet gevonden, controleer instellingen !"),
            errorTitle, MessageIcon::Exclamation);
        return false;
    }
    for (const int kind : {TrackStep, JingleStep}) {
        try {
            reopen(kind);
        } catch (const RuntimeError &error) {
            platform_.prompts.message(error.report(), errorTitle, MessageIcon::Exclamation);
        }
    }
    return true;
}

void Catalogues::reopen(int kind) {
    const bool isTracks = kind == TrackStep;
    std::unique_ptr<RecordSet> &records = isTracks ? datTracks : datJingles;
    records.reset();
    const QString &folder = settings_.Databasepath;
    records = platform_.databases.open(isTracks ? Places::tracks(folder) : Places::jingles(folder))
                  ->query(isTracks ? QStringLiteral("SELECT * From Audio ORDER BY TrackNr")
                                   : QStringLiteral("SELECT * From jingles ORDER BY TrackNr"));
}

RecordSet *Catalogues::of(int kind) const {
    return kind == TrackStep ? datTracks.get() : datJingles.get();
}

} // namespace orvel
