#pragma once

#include "platform/platform.h"
#include "playlist/voice_tracks.h"
#include "windows/station_versions.h"

#include <QComboBox>
#include <QDialog>
#include <QPushButton>
#include <QStandardItemModel>

#include <functional>

namespace orvel {

/// Asks for which station a version of a multivoice take is meant. Made anew for every version, so that the list is
/// always the station's latest.
class frmStation : public QDialog {
    Q_OBJECT

  public:
    /// save: saves the take for a station's code; false when that is not possible now, and the window stays open.
    /// Throws FatalError when the station list cannot be read.
    /// look: which stations have their version of the step; output: where those are played.
    frmStation(Platform &platform, const QString &programFolder, std::function<bool(const QString &code)> save,
               std::function<std::vector<StationVersion>()> look = {}, const PlayerSettings &output = {},
               QWidget *parent = nullptr);

    /// Names with their codes; no typing, so every text in it has a code.
    QComboBox *const cobStation;
    QPushButton *const cmdSave;
    StationVersions *const versions; ///< who has its version already

    void cmdSave_Click();

    /// Looks again who has its version.
    void showVersions();
    /// Stays open while its version is being saved.
    void reject() override;

  private:
    void fillStations(const QString &programFolder);
    void layOut();

    void chooseCode(const QString &code);

    Platform &platform_;
    std::function<std::vector<StationVersion>()> look_;
    std::function<bool(const QString &code)> save_;
    QStandardItemModel stations_;
    bool saving_ = false;
};

} // namespace orvel
