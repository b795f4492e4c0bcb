#pragma once

#include "platform/audio_file.h"
#include "platform/platform.h"
#include "playlist/current_step.h"
#include "settings/settings.h"
#include "station/recovery.h"
#include "widgets/gauge.h"
#include "widgets/lamp.h"
#include "windows/completion.h"
#include "windows/grid_panel.h"

#include <QPushButton>

#include <functional>
#include <memory>

namespace orvel {

/// What saving needs of the rest of the program; all of it outlives the panel.
struct SaveContext {
    Platform &platform;
    const Settings &settings;
    const QString &programFolder;
    CurrentStep &step;
    GridPanel &grid;
    Completion &completion;
    Recovery &recovery;
    /// One sentence for the status line.
    std::function<void(const QString &sentence)> tell;
    /// True while a take is being converted and filed: no other one may be started meanwhile.
    std::function<void(bool busy)> setBusy;
    /// Stops listening to a take.
    std::function<void()> stopPlayer;
    /// Opens the station chooser.
    std::function<void()> showStations;
};

/// The save button and what it does with a take: mark, encode, file, go on to the next step.
class SavePanel : public QWidget {
    Q_OBJECT

  public:
    explicit SavePanel(SaveContext context, QWidget *parent = nullptr);

    QPushButton *const cmdSave;
    QPushButton *const cmdImport;
    QPushButton *const cmdMultivoice;
    Lamp *const ledMulti;
    Gauge *const barProgress;

    bool RecorderOnly = false;
    /// Of the station that the next version is for: three characters, "999" and "000" for no station in particular.
    QString StationCode;

    /// The format of the files to write; without one nothing can be converted.
    void setFormat(const Mp3Format &format);
    [[nodiscard]] AudioFileWriter &writer() { return *FileW; }

    void cmdSave_Click();
    void cmdMultivoice_Click();
    /// Saves the take as the version of the station whose code StationCode holds, and asks whether it was the last one.
    /// False when nothing can be saved now: a take is running, or another one is being saved.
    bool ExternalSave();
    /// Converts with progress in barProgress; the window stays responsive. False when it failed: the MP3 is gone then.
    bool TranscodeToMp3(const QString &wavPath, const QString &mp3Path);

  private:
    struct Take {
        QString name;
        QString wav;
        QString mp3;
    };

    [[nodiscard]] Take take() const;
    /// Runs something with the rest of the program told that a take is being saved.
    void whileBusy(const std::function<void()> &action);
    void saveVersion();
    /// The mode-dependent part of saving; false when the save button must stay enabled.
    bool save();
    bool saveAs(const Take &take);
    bool saveForPlaylist(const Take &take);
    /// Looks in server mode whether there is a folder to file a voice track in, and tells when not. Nothing is made: in
    /// the place of a share that is not mounted it would be a folder that nobody looks in.
    [[nodiscard]] bool isServerThere(const Take &take);
    /// False when it could not be filed: the take is then where it was before, and its mark as it was.
    bool encodeAndFile(const Take &take);
    void takeBackMark();
    /// Converts, then moves the take's WAV to safety: it is dropped when the MP3 has been filed.
    QString encodeAndKeep(const Take &take);
    [[nodiscard]] bool fileVoiceTrack(const Take &take);
    [[nodiscard]] bool shellCopy(const QString &source, const QString &target);
    void settle(const QString &kept, bool filed, const Take &take);

    SaveContext context_;
    std::unique_ptr<AudioFileReader> FileR;
    std::unique_ptr<AudioFileWriter> FileW;
    bool saving_ = false;
    bool converted_ = false;
    bool markBefore_ = false; ///< of the step that is being saved
};

} // namespace orvel
