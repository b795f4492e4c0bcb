#include "app/dutch_texts.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include <algorithm>
#include <array>
#include <cstring>

namespace orvel {

namespace {

struct Text {
    const char *context;
    const char *english;
    const char *dutch;
};

/// What the Dutch translation of Qt 6.4 does not have, or has in English.
constexpr std::array texts = {
    Text{"QAbstractFileIconProvider", "Drive", "Schijf"},
    Text{"QAbstractFileIconProvider", "Folder", "Map"},
    Text{"QAbstractFileIconProvider", "Shortcut", "Snelkoppeling"},
    Text{"QAbstractFileIconProvider", "Unknown", "Onbekend"},
    Text{"QPageSetupWidget", "Inches (in)", "Inch (in)"},
    Text{"QPageSetupWidget", "Millimeters (mm)", "Millimeter (mm)"},
    Text{"QPageSize", "Envelope US 9", "Envelop US 9"},
    Text{"QPageSize", "Fan-fold German (8.5 x 12 in)", "Kettingpapier Duits (8.5 x 12 in)"},
    Text{"QPageSize", "Fan-fold German Legal (8.5 x 13 in)", "Kettingpapier Duits Legal (8.5 x 13 in)"},
    Text{"QPageSize", "Fan-fold US (14.875 x 11 in)", "Kettingpapier US (14.875 x 11 in)"},
    Text{"QPageSize", "Letter Small", "Letter klein"},
    Text{"QPageSize", "PRC 32K Big", "PRC 32K groot"},
    Text{"QPrintDialog", "Automatic", "Automatisch"},
    Text{"QPrintSettingsOutput", "Double Sided Printing", "Dubbelzijdig afdrukken"},
    Text{"QPrintSettingsOutput", "Long side binding", "Langs de lange kant gebonden"},
    Text{"QPrintSettingsOutput", "Off", "Uit"},
    Text{"QPrintSettingsOutput", "Short side binding", "Langs de korte kant gebonden"},
    Text{"QShortcut", "Control", "Ctrl"},
};

class OwnTexts : public QTranslator {
  public:
    using QTranslator::QTranslator;

    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char *context, const char *sourceText, const char * /*disambiguation*/,
                                    int /*n*/) const override {
        const auto *found = std::find_if(texts.begin(), texts.end(), [&](const Text &text) {
            return std::strcmp(text.english, sourceText) == 0 && std::strcmp(text.context, context) == 0;
        });
        return found == texts.end() ? QString() : QString::fromUtf8(found->dutch);
    }
};

} // namespace

void speakDutch(QObject &owner) {
    auto *standard = new QTranslator(&owner);
    if (standard->load(QStringLiteral("qtbase_nl"), QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(standard);
    }
    // What was installed last is asked first.
    QCoreApplication::installTranslator(new OwnTexts(&owner));
}

} // namespace orvel
