#pragma once

#include "platform/platform.h"
#include "settings/settings.h"
#include "widgets/led_label.h"
#include "widgets/led_spin.h"
#include "widgets/spin_button.h"
#include "windows/colour_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>

#include <functional>

namespace orvel {

/// The setup dialog. What it saves takes effect at the next start, but for colours, folders, the count-down and the
/// server mode.
class frmSetup : public QDialog {
    Q_OBJECT

  public:
    /// settings: in force now. stored: as the settings file has them; what was switched off for this run only is on
    /// there. coloursChanged: a colour of the settings is another one now.
    frmSetup(Platform &platform, Settings &settings, Settings stored, QString programFolder,
             std::function<void()> coloursChanged, QWidget *parent = nullptr);

    QTabWidget *const tabSetup;
    QPushButton *const cmdSave;
    QPushButton *const cmdExit;

    QLineEdit *const txtPath;
    QPushButton *const cmdPath;
    QLabel *const lblPath; ///< what is wrong with that folder
    QLineEdit *const txtVoice;
    QPushButton *const cmdVoice;
    QLabel *const lblVoice;
    QCheckBox *const chkData;
    QCheckBox *const chkServer;

    SpinButton *const updKaart;
    LedLabel *const ledKaart;
    SpinButton *const updCallback;
    LedLabel *const ledCallback;
    LedSpin *const ledCBufsize;
    LedSpin *const ledCBuf;
    QCheckBox *const chkMute;

    LedSpin *const ledCountDown;
    QComboBox *const cobBitrate;

    ColourPage *const fraColors;

    /// Fills every control; called each time before the dialog opens. While it is open nothing happens.
    void Form_Load();
    /// For a station that was never set up: what is still to be filled in is marked, until it is or the setup is saved.
    void markMissing();
    void cmdSave_Click();
    void cmdExit_Click() { close(); }
    void cmdPath_Click();
    void cmdVoice_Click();
    void updKaart_Change();
    void updCallback_Change();
    /// Sets the range of the card numbers: the system's default output and every output device.
    void UpdateWave();

  private:
    void layOut();
    void explain();
    QWidget *optionsPage();
    QWidget *soundPage();
    QWidget *generalPage();
    void connectControls();
    void checkFolders();
    [[nodiscard]] Settings edited() const;

    Platform &platform_;
    Settings &settings_;
    Settings saved_; ///< as the settings file has them: most of it is in force after a restart only
    QString programFolder_;
    bool isNew_ = false; ///< never set up
};

} // namespace orvel
