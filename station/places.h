#pragma once

#include <QString>

namespace orvel {

/// Where everything of a station lies: every folder and every file name, as pure functions. Names of takes come from a
/// database or the presenter; one that would leave its folder throws BadFileName. Voice tracks may lie on a server.
class Places {
  public:
    /// programFolder: without a separator at its end.
    explicit Places(QString programFolder) : programFolder_(std::move(programFolder)) {}

    [[nodiscard]] const QString &programFolder() const { return programFolder_; }
    [[nodiscard]] QString newFolder() const; ///< playlists to do
    [[nodiscard]] QString okFolder() const;  ///< finished playlists and filed voice tracks
    [[nodiscard]] QString tempFolder() const;
    [[nodiscard]] QString temp2Folder() const;
    [[nodiscard]] QString recoveryFolder() const;
    [[nodiscard]] QString journalFolder() const;
    [[nodiscard]] QString takesFolder() const; ///< every take of the steps that are being worked on
    [[nodiscard]] QString settingsFile() const;
    [[nodiscard]] QString deskFile() const; ///< how the windows were left
    [[nodiscard]] QString stationList() const;
    [[nodiscard]] QString reportTemplate() const;
    [[nodiscard]] QString lockFile() const;
    [[nodiscard]] QString delayProbe() const;     ///< what is played to measure a card's delay
    [[nodiscard]] QString delayRecording() const; ///< what the card heard of it

    [[nodiscard]] QString take(const QString &name) const;    ///< as recorded and processed
    [[nodiscard]] QString encoded(const QString &name) const; ///< on its way to be filed
    [[nodiscard]] QString journalEntry(const QString &name) const;
    [[nodiscard]] QString takeLock(const QString &name) const;
    [[nodiscard]] QString stageOutput(const QString &name) const;
    [[nodiscard]] QString rawTake(const QString &name) const;               ///< as it was before processing
    [[nodiscard]] QString shelf(const QString &name) const;                 ///< what is known of a step's takes
    [[nodiscard]] QString shelvedTake(const QString &name, int take) const; ///< as it was left
    [[nodiscard]] QString dryTake(const QString &name, int take) const;     ///< as recorded
    [[nodiscard]] QString packedDryTake(const QString &name, int take) const;
    [[nodiscard]] QString dryBeside(const QString &name) const; ///< that one, to be compared with the take
    /// An earlier or later state of a take that was edited.
    [[nodiscard]] QString takeVersion(const QString &name, int number) const;
    [[nodiscard]] QString filed(const QString &name) const;
    [[nodiscard]] static QString filedOnServer(const QString &VoicetrackPath, const QString &name);

    [[nodiscard]] static QString tracks(const QString &Databasepath);
    [[nodiscard]] static QString jingles(const QString &Databasepath);

  private:
    QString programFolder_;
};

} // namespace orvel
