#include "windows/mixer_strip.h"

#include "windows/named.h"

#include <QGridLayout>

namespace orvel {

namespace {

constexpr int mostVolume = 65535;
constexpr int mostBalance = 100;

/// The name ends in the strip's number; the tooltip tells what the control does.
template <class Control>
Control *numbered(Control *control, const char *name, int index, const QString &accessibleName) {
    named(control, name, accessibleName)->setToolTip(accessibleName);
    control->setObjectName(control->objectName() + QString::number(index));
    return control;
}

} // namespace

MixerStrip::MixerStrip(int index, QWidget *parent)
    : QWidget(parent), Label(new QLabel(this)),
      slVolume(numbered(new QSlider(Qt::Vertical, this), "slVolume", index, tr("Volume van ingang %1").arg(index))),
      slBalance(numbered(new QSlider(Qt::Horizontal, this), "slBalance", index, tr("Balans van ingang %1").arg(index))),
      chSelect(numbered(new QCheckBox(this), "chSelect", index, tr("Opnemen van ingang %1").arg(index))),
      cmdAdvanced(numbered(new QToolButton(this), "cmdAdvanced", index,
                           tr("Geavanceerde instellingen van ingang %1").arg(index))) {
    Label->setObjectName(QStringLiteral("Label%1").arg(index));
    Label->setAlignment(Qt::AlignCenter);
    slVolume->setRange(0, mostVolume);
    slVolume->setPageStep(mostVolume / 10);
    slVolume->setSingleStep(mostVolume / 50);
    slVolume->setProperty("percent", true);
    slVolume->setInvertedAppearance(true);
    slVolume->setInvertedControls(true);
    slBalance->setRange(-mostBalance, mostBalance);
    slBalance->setPageStep(mostBalance / 4);
    chSelect->setText(tr("Rec"));
    cmdAdvanced->setIcon(QIcon(QStringLiteral(":/icons/settings.svg")));

    // Few pixels: the playlist needs the window's height more.
    slVolume->setMinimumHeight(fontMetrics().height() * 4);
    slBalance->setMinimumWidth(fontMetrics().averageCharWidth() * 6);
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(fontMetrics().height() / 4);
    layout->addWidget(Label, 0, 0, 1, 2);
    layout->addWidget(slVolume, 1, 0, 3, 1, Qt::AlignHCenter);
    layout->addWidget(chSelect, 1, 1, Qt::AlignLeft | Qt::AlignVCenter);
    layout->addWidget(slBalance, 2, 1);
    layout->addWidget(cmdAdvanced, 3, 1, Qt::AlignLeft | Qt::AlignVCenter);
    layout->setColumnStretch(1, 1);
}

void MixerStrip::setName(const QString &name) {
    Label->setText(fontMetrics().elidedText(name, Qt::ElideRight, width()));
    Label->setToolTip(name);
    Label->setAccessibleName(name);
}

} // namespace orvel
