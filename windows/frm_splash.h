#pragma once

#include <QLabel>
#include <QWidget>

namespace orvel {

/// Splash window while the program starts, and its about box. A key press or a click on the logo closes it.
class frmSplash : public QWidget {
    Q_OBJECT

  public:
    explicit frmSplash(QWidget *parent = nullptr);

    QLabel *const Label1;
    QLabel *const lblVersion;
    QLabel *const lblWarning;
    QWidget *const imgLogo;

    void Form_Load();

  protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

  private:
    void Form_KeyPress();
    void imgLogo_Click();
};

} // namespace orvel
