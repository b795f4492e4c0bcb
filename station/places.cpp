#include "station/places.h"

#include "station/paths.h"

namespace orvel {

namespace {

const QString wav = QStringLiteral(".wav");
const QString mp3 = QStringLiteral(".mp3");
const QString temp = QStringLiteral("\\temp\\");
const QString journal = QStringLiteral("\\journal\\");
const QString takes = QStringLiteral("\\takes\\");
const QString shelfExtension = QStringLiteral(".takes");
const QString temp2 = QStringLiteral("\\temp2\\");

} // namespace

QString Places::newFolder() const {
    return joined(programFolder_, QStringLiteral("\\new"));
}

QString Places::okFolder() const {
    return joined(programFolder_, QStringLiteral("\\ok"));
}

QString Places::tempFolder() const {
    return joined(programFolder_, QStringLiteral("\\temp"));
}

QString Places::temp2Folder() const {
    return joined(programFolder_, QStringLiteral("\\temp2"));
}

QString Places::recoveryFolder() const {
    return joined(programFolder_, QStringLiteral("\\herstel"));
}

QString Places::journalFolder() const {
    return joined(programFolder_, QStringLiteral("\\journal"));
}

QString Places::takesFolder() const {
    return joined(programFolder_, QStringLiteral("\\takes"));
}

QString Places::deskFile() const {
    return joined(programFolder_, QStringLiteral("\\orvel-desk.ini"));
}

QString Places::settingsFile() const {
    return joined(programFolder_, QStringLiteral("\\orvel.ini"));
}

QString Places::stationList() const {
    return joined(programFolder_, QStringLiteral("\\syncstations.mdb"));
}

QString Places::reportTemplate() const {
    return joined(programFolder_, QStringLiteral("\\rep\\play0.rpt"));
}

QString Places::lockFile() const {
    return joined(programFolder_, QStringLiteral("\\orvel.lock"));
}

QString Places::delayProbe() const {
    return joined(programFolder_, QStringLiteral("\\temp2\\meting.signaal.wav"));
}

QString Places::delayRecording() const {
    return joined(programFolder_, QStringLiteral("\\temp2\\meting.opname.wav"));
}

QString Places::take(const QString &name) const {
    return takeFile(programFolder_, temp, name, wav);
}

QString Places::encoded(const QString &name) const {
    return takeFile(programFolder_, temp, name, mp3);
}

QString Places::journalEntry(const QString &name) const {
    return takeFile(programFolder_, journal, name, QStringLiteral(".take"));
}

QString Places::takeLock(const QString &name) const {
    return takeFile(programFolder_, journal, name, QStringLiteral(".slot"));
}

QString Places::stageOutput(const QString &name) const {
    return takeFile(programFolder_, temp2, name, wav);
}

QString Places::rawTake(const QString &name) const {
    return takeFile(programFolder_, temp2, name, QStringLiteral(".ruw.wav"));
}

QString Places::shelf(const QString &name) const {
    return takeFile(programFolder_, takes, name, shelfExtension);
}

QString Places::shelvedTake(const QString &name, int take) const {
    return takeFile(programFolder_, takes, name, QStringLiteral(".%1.wav").arg(take));
}

QString Places::dryTake(const QString &name, int take) const {
    return takeFile(programFolder_, takes, name, QStringLiteral(".%1.droog.wav").arg(take));
}

QString Places::packedDryTake(const QString &name, int take) const {
    return takeFile(programFolder_, takes, name, QStringLiteral(".%1.droog.flac").arg(take));
}

QString Places::dryBeside(const QString &name) const {
    return takeFile(programFolder_, temp2, name, QStringLiteral(".droog.wav"));
}

QString Places::takeVersion(const QString &name, int number) const {
    return takeFile(programFolder_, temp2, name, QStringLiteral(".versie-%1.wav").arg(number));
}

QString Places::filed(const QString &name) const {
    return takeFile(programFolder_, QStringLiteral("\\ok\\"), name, mp3);
}

QString Places::filedOnServer(const QString &VoicetrackPath, const QString &name) {
    return takeFile(VoicetrackPath, QStringLiteral("\\"), name, mp3);
}

QString Places::tracks(const QString &Databasepath) {
    return joined(Databasepath, QStringLiteral("\\digital.mdb"));
}

QString Places::jingles(const QString &Databasepath) {
    return joined(Databasepath, QStringLiteral("\\jingles.mdb"));
}

} // namespace orvel
