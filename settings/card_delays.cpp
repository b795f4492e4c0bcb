#include "settings/card_delays.h"

#include "platform/ini_file.h"
#include "station/places.h"

#include <algorithm>
#include <cmath>

namespace orvel {

namespace {

const QString delaysSection = QStringLiteral("Delays");

IniFile delaysFile(FileSystem &files, const QString &programFolder) {
    return {files, Places(programFolder).settingsFile()};
}

} // namespace

CardDelays::CardDelays(FileSystem &files, QString programFolder)
    : files_(files), programFolder_(std::move(programFolder)) {}

void CardDelays::load() {
    measured_.clear();
    const IniFile file = delaysFile(files_, programFolder_);
    for (const QString &key : file.keys(delaysSection)) {
        const QString text = file.value(delaysSection, key).simplified();
        bool isNumber = false;
        const double milliseconds = text.section(u' ', 0, 0).toDouble(&isNumber);
        const QString card = text.section(u' ', 1);
        if (isNumber && std::isfinite(milliseconds) && !card.isEmpty()) {
            measured_.push_back({key, card, milliseconds});
        }
    }
}

std::optional<double> CardDelays::of(const QString &card) const {
    const QString name = card.simplified();
    const auto found =
        std::find_if(measured_.begin(), measured_.end(), [&](const Measured &one) { return one.card == name; });
    return found == measured_.end() ? std::nullopt : std::optional(found->milliseconds);
}

void CardDelays::keep(const QString &card, double milliseconds) {
    load(); // of cards that somebody else measured meanwhile, nothing is written over
    IniFile file = delaysFile(files_, programFolder_);
    const QString name = card.simplified();
    const auto found =
        std::find_if(measured_.begin(), measured_.end(), [&](const Measured &one) { return one.card == name; });
    QString key;
    if (found != measured_.end()) {
        key = found->key;
    } else {
        const QStringList taken = file.keys(delaysSection);
        int number = 1;
        while (taken.contains(QString::number(number))) {
            ++number;
        }
        key = QString::number(number);
    }
    file.setValue(delaysSection, key, QString::number(milliseconds, 'f', 1) + u' ' + name);
    file.save();
    load();
}

} // namespace orvel
