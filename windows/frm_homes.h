#pragma once

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

namespace orvel {

class Homes;
class Prompts;

/// Asks which home ("werkmap") to work in: one that is remembered, a new one, one with samples, or a folder.
class frmHomes : public QDialog {
    Q_OBJECT

  public:
    /// current: the home that is worked in; empty at the start of the program. Then the one used last is told to be
    /// away, if it is.
    frmHomes(Homes &homes, Prompts &prompts, QString current, QWidget *parent = nullptr);

    QLabel *const lblNotice; ///< what is wrong with the one used last
    QTableWidget *const lstHomes;
    QPushButton *const cmdOpen;
    QPushButton *const cmdForget;
    QPushButton *const cmdNew;
    QPushButton *const cmdSample;
    QPushButton *const cmdExisting;
    QPushButton *const cmdExit;

    /// Once it was accepted.
    [[nodiscard]] const QString &home() const { return home_; }

    void cmdOpen_Click();
    void cmdForget_Click();
    void cmdNew_Click();
    void cmdSample_Click();
    void cmdExisting_Click();
    void lstHomes_Change();

  private:
    void layOut();
    void fill();
    void choose(const QString &home);
    /// The folder of the selected row; empty without one.
    [[nodiscard]] QString selected() const;

    Homes &homes_;
    Prompts &prompts_;
    QString current_;
    QString home_;
};

} // namespace orvel
