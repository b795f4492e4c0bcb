#include "windows/manual_sections.h"

#include <QWidget>

#include <algorithm>
#include <array>

namespace orvel {

std::span<const ManualSection> manualSections() {
    static constexpr std::array sections = {
        ManualSection{"FilePanel", "de-lijst-met-playlists"},
        ManualSection{"GridPanel", "de-stappen"},
        ManualSection{"StepPanel", "de-praattijd-en-de-golfvorm"},
        ManualSection{"TakesPanel", "takes"},
        ManualSection{"RecorderPanel", "opnemen"},
        ManualSection{"PlaybackPanel", "beluisteren-en-bewerken"},
        ManualSection{"EditPanel", "beluisteren-en-bewerken"},
        ManualSection{"SavePanel", "bewaren"},
        ManualSection{"JoinPanel", "in-verband-en-meeluisteren"},
        ManualSection{"InputPanel", "hoe-luid-de-microfoon-is"},
        ManualSection{"MeterPanel", "hoe-luid-de-microfoon-is"},
        ManualSection{"CardPanel", "opnamekaart-en-mixer"},
        ManualSection{"ProcessorPanel", "de-processor"},
        ManualSection{"frmMain", "het-hoofdvenster"},
        ManualSection{"frmAdv", "geavanceerde-instellingen-van-een-ingang"},
        ManualSection{"frmConvert", "geluidsbestanden-importeren"},
        ManualSection{"frmDelay", "vertraging-meten"},
        ManualSection{"frmExport", "playlists-exporteren"},
        ManualSection{"frmHomes", "werkmappen"},
        ManualSection{"frmImport", "playlists-importeren"},
        ManualSection{"frmKeys", "toetsen"},
        ManualSection{"frmManual", "deze-handleiding"},
        ManualSection{"frmPreview", "voorbeluistering"},
        ManualSection{"frmRecover", "herstellen"},
        ManualSection{"frmSetup", "instellingen"},
        ManualSection{"frmSplash", "informatie"},
        ManualSection{"frmStation", "een-station-kiezen"},
        ManualSection{"frmUnfiled", "opnames-die-nog-niet-bewaard-zijn"},
        ManualSection{"QPrintPreviewDialog", "de-draaiorde-afdrukken"},
    };
    return sections;
}

QString manualAnchorOf(const QWidget &control) {
    for (const QWidget *part = &control; part != nullptr; part = part->parentWidget()) {
        const QString name = QString::fromLatin1(part->metaObject()->className()).section(QStringLiteral("::"), -1);
        const auto sections = manualSections();
        const auto found = std::ranges::find_if(
            sections, [&name](const ManualSection &one) { return name == QLatin1String(one.className); });
        if (found != sections.end()) {
            return QString::fromLatin1(found->anchor);
        }
        if (part->isWindow()) {
            break;
        }
    }
    return {};
}

QString anchorOfHeading(const QString &heading) {
    QString anchor;
    for (const QChar sign : heading.toLower()) {
        if (sign.isSpace()) {
            anchor += u'-';
        } else if (sign.isLetterOrNumber() || sign == u'-') {
            anchor += sign;
        }
    }
    return anchor;
}

} // namespace orvel
