#include "recording/card_panel.h"

#include "platform/audio.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace orvel {

namespace {

constexpr int mostStrips = 7;

} // namespace

CardPanel::CardPanel(Platform &platform, QWidget *parent)
    : QWidget(parent), cobKaart(new QComboBox(this)), Frame14(new QGroupBox(tr("Ingangen"), this)),
      platform_(platform) {
    cobKaart->setObjectName(QStringLiteral("cobKaart"));
    cobKaart->setAccessibleName(QStringLiteral("Opnamekaart"));
    cobKaart->setMinimumContentsLength(28);
    Frame14->setObjectName(QStringLiteral("Frame14"));
    auto *stripsLayout = new QHBoxLayout(Frame14);
    for (int line = 1; line <= mostStrips; ++line) {
        auto *strip = new QLabel(Frame14);
        strip->setObjectName(QStringLiteral("Label%1").arg(line));
        strip->hide();
        stripsLayout->addWidget(strip);
        strips_.push_back(strip);
    }
    stripsLayout->addStretch();
    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("Opnamekaart"), cobKaart);
    auto *layout = new QHBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(Frame14, 1);
    connect(cobKaart, &QComboBox::currentIndexChanged, this, &CardPanel::cobKaart_Click);
}

void CardPanel::listCards() {
    AudioRecord &audioRecord = platform_.sound.audioRecord();
    const int remembered = audioRecord.currentDevice();
    const QSignalBlocker quiet(cobKaart);
    cobKaart->clear();
    // One past the last card on purpose: it is reported as not valid.
    for (int device = 0; device <= audioRecord.deviceCount(); ++device) {
        audioRecord.setCurrentDevice(device);
        if (audioRecord.canRecord(device)) {
            cobKaart->addItem(audioRecord.deviceName(device), device);
        }
    }
    cobKaart->setCurrentIndex(-1);
    audioRecord.setCurrentDevice(remembered);
}

void CardPanel::selectCard(int position) {
    const bool valid = position >= 0 && position < cobKaart->count();
    cobKaart->setCurrentIndex(valid ? position : 0);
}

void CardPanel::cobKaart_Click() {
    if (cobKaart->currentIndex() < 0) {
        return;
    }
    AudioRecord &audioRecord = platform_.sound.audioRecord();
    audioRecord.setCurrentDevice(cobKaart->currentData().toInt());
    // The mixer counts cards from 1, the recorder from 0.
    platform_.sound.recorder().setDevice(audioRecord.currentDevice() - 1);
    BuildMixerStrips(lineCount());
}

int CardPanel::lineCount() const {
    return std::min(platform_.sound.audioRecord().lineCount(), mostStrips);
}

void CardPanel::BuildMixerStrips(int count) {
    AudioRecord &audioRecord = platform_.sound.audioRecord();
    for (int line = 1; line <= mostStrips; ++line) {
        QLabel *strip = strips_.at(static_cast<std::size_t>(line - 1));
        strip->setVisible(line <= count);
        if (line <= count) {
            audioRecord.setCurrentLine(line);
            strip->setText(audioRecord.lineName());
        }
    }
}

MeterPanel::MeterPanel(QWidget *parent)
    : QWidget(parent), levLeft(new LevelMeter(this)), levRight(new LevelMeter(this)) {
    levLeft->setObjectName(QStringLiteral("levLeft"));
    levLeft->setAccessibleName(tr("Niveau links"));
    levRight->setObjectName(QStringLiteral("levRight"));
    levRight->setAccessibleName(tr("Niveau rechts"));
    auto *scale = new LevelScale(this);
    scale->setObjectName(QStringLiteral("MMLevelScaleX1"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(levLeft);
    layout->addWidget(scale);
    layout->addWidget(levRight);
}

void MeterPanel::setLevel(float peak) {
    levLeft->setLevel(peak);
    levRight->setLevel(peak);
}

} // namespace orvel
