#pragma once

#include <QLabel>
#include <QPushButton>

namespace orvel {

class Retouching;

/// What is done to a take that was recorded: making it fit the intro, undoing, doing again; and where speech is in it.
class EditPanel : public QWidget {
    Q_OBJECT

  public:
    explicit EditPanel(Retouching &retouching, QWidget *parent = nullptr);

    QPushButton *const cmdFit;
    // These stand elsewhere on the window, where there is room for them.
    QPushButton *const cmdUndo;
    QPushButton *const cmdRedo;
    QLabel *const lblSpraak;

    /// The sentence about the selected step's take.
    void show();

    void cmdFit_Click();
    void cmdUndo_Click();
    void cmdRedo_Click();

  private:
    Retouching &retouching_;
};

} // namespace orvel
