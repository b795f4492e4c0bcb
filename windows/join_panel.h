#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSlider>

namespace orvel {

class JoinListening;
class TalkAlong;
struct Allowed;

/// What lets the presenter hear a join: a take between its neighbours, the whole hour, and the items along with the
/// take that is being spoken.
class JoinPanel : public QWidget {
    Q_OBJECT

  public:
    JoinPanel(JoinListening &joins, TalkAlong &along, QWidget *parent = nullptr);

    QPushButton *const cmdInVerband;
    QPushButton *const cmdHeleUur;
    QCheckBox *const chkMeeluisteren;
    QSlider *const sldMeeluisteren; ///< how loud, in percent
    QLabel *const lblMeeluisteren;  ///< why nothing, or not everything, will be heard

    /// Captions, switch, volume and remark as the rooms have them, and what is enabled.
    void show(const Allowed &may);
    /// Without icons, and with a shorter slider.
    void setDense(bool dense);

    void cmdInVerband_Click();
    void cmdHeleUur_Click();
    void chkMeeluisteren_Click();
    void sldMeeluisteren_Change();

  private:
    void layOut();
    [[nodiscard]] int remarkWidth() const;

    JoinListening &joins_;
    TalkAlong &along_;
};

} // namespace orvel
