#pragma once

#include "widgets/gauge.h"
#include "widgets/lamp.h"

#include <QElapsedTimer>
#include <QPushButton>

#include <optional>

namespace orvel {

class Saving;

/// The buttons that make a voice track of a take or of a sound file, with the progress of a conversion.
class SavePanel : public QWidget {
    Q_OBJECT

  public:
    explicit SavePanel(Saving &saving, QWidget *parent = nullptr);

    QPushButton *const cmdSave;
    QPushButton *const cmdImport;
    QPushButton *const cmdMultivoice;
    Lamp *const ledMulti;
    Gauge *const barProgress;

    void show();
    /// 0..100, and the hourglass; nothing when no conversion runs. Lets window events run.
    void showProgress(std::optional<int> percent);

    void cmdSave_Click();
    void cmdMultivoice_Click();

  private:
    Saving &saving_;
    QElapsedTimer sincePump_;
};

} // namespace orvel
