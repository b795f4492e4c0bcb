#include "windows/card_panel.h"

#include "platform/audio.h"
#include "recording/delay_measurement.h"
#include "windows/named.h"
#include "windows/on.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace orvel {

namespace {

constexpr int mostStrips = 7;
constexpr int stripTwips = 1260;
constexpr int twipsPerInch = 1440;
constexpr int watchMs = 1000;
constexpr int loudest = 65535;

} // namespace

CardPanel::CardPanel(Platform &platform, const DelayMeasurement &delay, std::function<void(const QString &)> tell,
                     QWidget *parent)
    : QWidget(parent), cobKaart(new QComboBox(this)), lblDelay(new QLabel(this)),
      cmdDelay(namedButton(this, "cmdDelay", tr("Vertraging meten..."),
                           tr("Meet hoe laat de kaart hoort wat de uitgang speelt, voor het meeluisteren"))),
      Frame14(new QGroupBox(tr("Mixer"), this)), platform_(platform), delay_(delay), tell_(std::move(tell)),
      tmrCards_(platform.timers.create(watchMs, MissedTicks::Drop, [this] { lookForChanges(); })) {
    cobKaart->setObjectName(QStringLiteral("cobKaart"));
    cobKaart->setAccessibleName(QStringLiteral("Opnamekaart"));
    cobKaart->setMinimumContentsLength(28);
    cobKaart->setPlaceholderText(tr("De gekozen kaart is losgekoppeld"));
    Frame14->setObjectName(QStringLiteral("Frame14"));
    lblDelay->setObjectName(QStringLiteral("lblDelay"));
    lblDelay->setProperty("role", QStringLiteral("muted"));
    cmdDelay->setProperty("role", QStringLiteral("low"));
    makeStrips();
    auto *caption = new QLabel(QStringLiteral("Opnamekaart"), this);
    caption->setProperty("role", QStringLiteral("muted"));
    caption->setBuddy(cobKaart);
    auto *choice = new QVBoxLayout;
    choice->addWidget(caption);
    choice->addWidget(cobKaart);
    choice->addWidget(lblDelay);
    choice->addWidget(cmdDelay, 0, Qt::AlignLeft);
    choice->addStretch();
    auto *layout = new QHBoxLayout(this);
    layout->addLayout(choice);
    layout->addWidget(Frame14);
    layout->addStretch();
    on(cobKaart, &QComboBox::currentIndexChanged, this, &CardPanel::cobKaart_Click);
    on(cmdDelay, &QPushButton::clicked, this, &CardPanel::delayWanted);
}

void CardPanel::makeStrips() {
    auto *stripsLayout = new QHBoxLayout(Frame14);
    stripsLayout->setSpacing(fontMetrics().averageCharWidth());
    for (int index = 1; index <= mostStrips; ++index) {
        auto *strip = new MixerStrip(index, Frame14);
        strip->hide();
        stripsLayout->addWidget(strip);
        strips_.push_back(strip);
        connectStrip(index);
    }
}

void CardPanel::connectStrip(int index) {
    MixerStrip &controls = strip(index);
    on(controls.slVolume, &QSlider::valueChanged, this, [this, index] { slVolume_Change(index); });
    on(controls.slBalance, &QSlider::valueChanged, this, [this, index] { slBalance_Change(index); });
    on(controls.chSelect, &QCheckBox::clicked, this, [this, index] { chSelect_MouseUp(index); });
    on(controls.cmdAdvanced, &QToolButton::clicked, this, [this, index] { cmdAdvanced_Click(index); });
}

void CardPanel::listCards() {
    cards_ = listedCards(platform_.sound.audioRecord());
    const QSignalBlocker quiet(cobKaart);
    cobKaart->clear();
    for (const ListedCard &card : cards_) {
        cobKaart->addItem(card.name, card.device);
    }
    cobKaart->setCurrentIndex(-1);
}

void CardPanel::selectCard(const StoredCard &card) {
    const auto [position, sentence] = choice_.begin(card, cards_);
    show(position);
    useCard();
    if (!sentence.isEmpty()) {
        tell_(sentence);
    }
}

void CardPanel::show(int position) {
    const QSignalBlocker quiet(cobKaart);
    cobKaart->setCurrentIndex(position);
}

void CardPanel::cobKaart_Click() {
    const int position = cobKaart->currentIndex();
    if (position >= 0) {
        choice_.choose(position, cards_.at(static_cast<std::size_t>(position)));
        useCard();
    }
}

void CardPanel::useCard() {
    AudioRecord &audioRecord = platform_.sound.audioRecord();
    audioRecord.setCurrentDevice(cobKaart->currentData().toInt());
    // The mixer counts cards from 1, the recorder from 0.
    platform_.sound.recorder().setDevice(audioRecord.currentDevice() - 1);
    LineCount = static_cast<std::int16_t>(lineCount());
    BuildMixerStrips(LineCount);
    showDelay(cmdDelay->isEnabled());
}

void CardPanel::showDelay(bool canMeasure) {
    lblDelay->setText(delay_.caption());
    cmdDelay->setEnabled(canMeasure);
}

int CardPanel::lineCount() const {
    return std::min(platform_.sound.audioRecord().lineCount(), mostStrips);
}

void CardPanel::BuildMixerStrips(int count) {
    for (int index = 1; index <= mostStrips; ++index) {
        strip(index).setVisible(index <= count);
    }
    Frame14->setFixedWidth((count + 1) * stripTwips * logicalDpiX() / twipsPerInch);
    Frame14->setVisible(count > 0);
    for (int index = 1; index <= count; ++index) {
        showLine(index);
    }
}

void CardPanel::showLine(int index) {
    AudioRecord &audioRecord = platform_.sound.audioRecord();
    audioRecord.setCurrentLine(index);
    MixerStrip &controls = strip(index);
    const QSignalBlocker quietVolume(controls.slVolume);
    const QSignalBlocker quietBalance(controls.slBalance);
    controls.setName(audioRecord.lineName());
    controls.slVolume->setEnabled(audioRecord.lineHasVolume());
    controls.slVolume->setValue(loudest - audioRecord.lineVolume());
    controls.slBalance->setEnabled(audioRecord.lineHasBalance());
    controls.slBalance->setValue(audioRecord.lineBalance());
    controls.chSelect->setEnabled(audioRecord.lineHasSelect());
    controls.chSelect->setChecked(audioRecord.lineSelected());
}

void CardPanel::slVolume_Change(int index) {
    AudioRecord &audioRecord = platform_.sound.audioRecord();
    QSlider &slider = *strip(index).slVolume;
    audioRecord.setCurrentLine(index);
    audioRecord.setLineVolume(loudest - slider.value());
    // The slider shows what the card accepted.
    const QSignalBlocker quiet(slider);
    slider.setValue(loudest - audioRecord.lineVolume());
}

void CardPanel::slBalance_Change(int index) {
    AudioRecord &audioRecord = platform_.sound.audioRecord();
    QSlider &slider = *strip(index).slBalance;
    audioRecord.setCurrentLine(index);
    audioRecord.setLineBalance(slider.value());
    const QSignalBlocker quiet(slider);
    slider.setValue(audioRecord.lineBalance());
}

void CardPanel::chSelect_MouseUp(int index) {
    AudioRecord &audioRecord = platform_.sound.audioRecord();
    const int remembered = audioRecord.currentLine();
    audioRecord.setCurrentLine(index);
    audioRecord.setLineSelected(strip(index).chSelect->isChecked());
    // Selecting one line may unselect the others, and the card may offer the mixer of the selected line only.
    BuildMixerStrips(LineCount);
    audioRecord.setCurrentLine(remembered);
}

void CardPanel::cmdAdvanced_Click(int index) {
    platform_.sound.audioRecord().setCurrentLine(index);
    Q_EMIT advancedWanted();
}

void CardPanel::lookForChanges() {
    AudioRecord &audioRecord = platform_.sound.audioRecord();
    const int remembered = audioRecord.currentLine(); // an open window of its properties goes on with that line
    if (audioRecord.refresh()) {
        followCards();
    }
    const bool held = std::any_of(strips_.begin(), strips_.end(), [](const MixerStrip *s) { return s->isHeld(); });
    if (!held) {
        LineCount = static_cast<std::int16_t>(lineCount());
        BuildMixerStrips(LineCount);
    }
    audioRecord.setCurrentLine(remembered);
}

void CardPanel::followCards() {
    const int before = cobKaart->currentIndex();
    listCards();
    const int position = cobKaart->findData(platform_.sound.audioRecord().currentDevice());
    // Without the card nothing is selected: another microphone is never taken unasked.
    show(position);
    if (position >= 0) {
        choice_.follow(position, cards_.at(static_cast<std::size_t>(position)));
        useCard();
    }
    if (before >= 0 && position < 0) {
        tell_(tr("De gekozen opnamekaart is losgekoppeld."));
    } else if (before < 0 && position >= 0) {
        tell_(tr("De opnamekaart %1 is er weer.").arg(cobKaart->currentText()));
    }
}

MeterPanel::MeterPanel(QWidget *parent)
    : QWidget(parent), levLeft(new LevelMeter(this)), levRight(new LevelMeter(this)), scale_(new LevelScale(this)) {
    levLeft->setObjectName(QStringLiteral("levLeft"));
    levLeft->setAccessibleName(tr("Niveau links"));
    levRight->setObjectName(QStringLiteral("levRight"));
    levRight->setAccessibleName(tr("Niveau rechts"));
    scale_->setObjectName(QStringLiteral("MMLevelScaleX1"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(levLeft);
    layout->addWidget(scale_);
    layout->addWidget(levRight);
}

void MeterPanel::setLevels(float left, float right) {
    levLeft->setLevel(left);
    levRight->setLevel(right);
}

} // namespace orvel
