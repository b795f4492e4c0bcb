#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QSlider>
#include <QToolButton>

namespace orvel {

/// The controls of one input line: name, volume, balance, record select, advanced properties.
class MixerStrip : public QWidget {
    Q_OBJECT

  public:
    /// index: the line's number, from 1, that ends the names of the controls.
    explicit MixerStrip(int index, QWidget *parent = nullptr);

    QLabel *const Label;
    QSlider *const slVolume; ///< 0 is the loudest: 65535 minus the line's volume
    QSlider *const slBalance;
    QCheckBox *const chSelect;
    QToolButton *const cmdAdvanced;

    /// Shortened at its end when there is no room; the tooltip has all of it.
    void setName(const QString &name);
    /// Whether the presenter holds one of the sliders at this moment.
    [[nodiscard]] bool isHeld() const { return slVolume->isSliderDown() || slBalance->isSliderDown(); }
};

} // namespace orvel
