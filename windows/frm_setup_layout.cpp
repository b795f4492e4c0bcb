// How the setup dialog is put together.
#include "windows/frm_setup.h"
#include "windows/named.h"
#include "windows/on.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <initializer_list>
#include <utility>

namespace orvel {

namespace {

QCheckBox *check(QWidget *parent, const char *name, const QString &caption) {
    return named(new QCheckBox(caption, parent), name, caption);
}

LedSpin *number(QWidget *parent, const char *name, const QString &label, std::pair<int, int> range, int step) {
    auto *spin = named(new LedSpin(parent), name, label);
    spin->setRange(range.first, range.second);
    spin->setStep(step);
    spin->setDigits(static_cast<int>(QString::number(range.second).size()));
    return spin;
}

QPushButton *chooser(QWidget *parent, const char *name, const QString &toolTip) {
    auto *button =
        named(new QPushButton(QIcon(QStringLiteral(":/icons/folder.svg")), QString(), parent), name, toolTip);
    button->setToolTip(toolTip);
    button->setAutoDefault(false);
    return button;
}

/// Keeps its place, so that nothing moves when there is something to tell.
QLabel *problemLine(QWidget *parent, const char *name) {
    auto *label = new QLabel(parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setProperty("role", QStringLiteral("attention"));
    label->setWordWrap(true);
    label->setMinimumHeight(label->fontMetrics().lineSpacing());
    return label;
}

/// Rows of a caption and its controls, one under the other. A form layout would hang the captions of tall rows too
/// high.
class Rows {
  public:
    explicit Rows(QWidget *page) : page_(page), grid_(new QGridLayout(page)) {
        grid_->setVerticalSpacing(gap());
        grid_->setHorizontalSpacing(gap());
        grid_->setColumnStretch(1, 1);
    }

    /// The first control is what the caption names.
    void add(const QString &caption, std::initializer_list<QWidget *> controls) {
        auto *label = new QLabel(caption, page_);
        label->setBuddy(*controls.begin());
        auto *line = new QHBoxLayout;
        line->setSpacing(gap());
        for (QWidget *control : controls) {
            const bool isWide = control->sizePolicy().expandingDirections().testFlag(Qt::Horizontal);
            line->addWidget(control, isWide ? 1 : 0);
        }
        line->addStretch(0);
        grid_->addWidget(label, grid_->rowCount(), 0);
        grid_->addLayout(line, grid_->rowCount() - 1, 1);
    }
    /// Words that belong to the row above.
    void addBelow(QWidget *words) { grid_->addWidget(words, grid_->rowCount(), 1); }
    void add(QWidget *control) { grid_->addWidget(control, grid_->rowCount(), 0, 1, 2); }
    void fillUp() { grid_->setRowStretch(grid_->rowCount(), 1); }

  private:
    [[nodiscard]] int gap() const { return page_->fontMetrics().height() / 2; }

    QWidget *page_;
    QGridLayout *grid_;
};

} // namespace

frmSetup::frmSetup(Platform &platform, Settings &settings, Settings stored, QString programFolder,
                   std::function<void()> coloursChanged, QWidget *parent)
    : QDialog(parent), tabSetup(named(new QTabWidget(this), "tabSetup", tr("Instellingen"))),
      cmdSave(named(new QPushButton(tr("Bewaren"), this), "cmdSave", tr("Bewaren"))),
      cmdExit(named(new QPushButton(tr("Sluiten"), this), "cmdExit", tr("Sluiten"))),
      txtPath(named(new QLineEdit(this), "txtPath", QStringLiteral("DatabasePath"))),
      cmdPath(chooser(this, "cmdPath", tr("Kies de map van de databasebestanden"))),
      lblPath(problemLine(this, "lblPath")),
      txtVoice(named(new QLineEdit(this), "txtVoice", QStringLiteral("VoicetrackPath"))),
      cmdVoice(chooser(this, "cmdVoice", tr("Kies de map van de voicetracks"))),
      lblVoice(problemLine(this, "lblVoice")),
      chkData(check(this, "chkData", QStringLiteral("Voicetracker gebruiken met voorbeluisteringsmogelijkheid"))),
      chkServer(check(this, "chkServer", QStringLiteral("VoiceTracks onmiddellijk op SERVER wegschrijven"))),
      updKaart(named(new SpinButton(this), "updKaart", QStringLiteral("Kaart"))),
      ledKaart(named(new LedLabel(this), "ledKaart", tr("Naam van de kaart"))),
      updCallback(named(new SpinButton(this), "updCallback", QStringLiteral("Callback"))),
      ledCallback(named(new LedLabel(this), "ledCallback", tr("Soort callback"))),
      ledCBufsize(number(this, "ledCBufsize", QStringLiteral("Buffergrootte"), {0, 32767}, 256)),
      ledCBuf(number(this, "ledCBuf", QStringLiteral("Buffers"), {0, 100}, 1)),
      chkMute(check(this, "chkMute", QStringLiteral("Uitgang van de geluidskaart dichtzetten bij start opname"))),
      ledCountDown(number(this, "ledCountDown", QStringLiteral("Count-Down"), {0, 99}, 1)),
      cobBitrate(named(new QComboBox(this), "cobBitrate", QStringLiteral("MP3-Bitrate"))),
      fraColors(new ColourPage(platform.prompts, settings, std::move(coloursChanged), this)), platform_(platform),
      settings_(settings), saved_(std::move(stored)), programFolder_(std::move(programFolder)) {
    setObjectName(QStringLiteral("frmSetup"));
    setWindowTitle(QStringLiteral("Programma instellingen"));
    layOut();
    explain();
    connectControls();
}

/// Words of the trade.
void frmSetup::explain() {
    const QString callback = tr("Hoe de voorbeluistering haar geluid krijgt; wordt bewaard, maar maakt geen verschil");
    const std::initializer_list<std::pair<QWidget *, QString>> words = {
        {updCallback, callback},
        {ledCallback, callback},
        {ledCBufsize, tr("Hoeveel geluid de voorbeluistering in één keer klaarzet; groter hapert minder")},
        {ledCBuf, tr("Hoe vaak dat vooruit gebeurt; meer hapert minder")},
        {cobBitrate, tr("Hoe goed de MP3 klinkt; een hoger getal maakt een groter bestand")},
        {ledCountDown, tr("Zo lang wordt er afgeteld voor de opname begint")},
    };
    for (const auto &[control, meaning] : words) {
        control->setToolTip(meaning);
    }
}

void frmSetup::layOut() {
    cmdSave->setToolTip(QStringLiteral("Bewaar de wijzigingen"));
    cmdSave->setProperty("role", QStringLiteral("primary"));
    cmdSave->setDefault(true);
    cmdExit->setToolTip(QStringLiteral("Verlaat dit scherm"));
    cmdExit->setAutoDefault(false);
    tabSetup->addTab(optionsPage(), QStringLiteral("Opties"));
    tabSetup->addTab(soundPage(), QStringLiteral("Geluidskaart"));
    tabSetup->addTab(generalPage(), QStringLiteral("Algemeen"));
    auto *colours = new QWidget(this);
    (new QVBoxLayout(colours))->addWidget(fraColors);
    tabSetup->addTab(colours, QStringLiteral("Kleuren"));
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdSave);
    buttons->addWidget(cmdExit);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(tabSetup, 1);
    layout->addLayout(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 70);
}

QWidget *frmSetup::optionsPage() {
    auto *page = new QWidget(this);
    Rows rows(page);
    rows.add(QStringLiteral("DatabasePath"), {txtPath, cmdPath});
    rows.addBelow(lblPath);
    rows.add(QStringLiteral("VoicetrackPath"), {txtVoice, cmdVoice});
    rows.addBelow(lblVoice);
    rows.add(chkData);
    rows.add(chkServer);
    rows.fillUp();
    return page;
}

QWidget *frmSetup::soundPage() {
    auto *frame = new QGroupBox(QStringLiteral("Trackbeluistering"), this);
    Rows rows(frame);
    rows.add(QStringLiteral("Kaart"), {ledKaart, updKaart});
    rows.add(QStringLiteral("Callback"), {ledCallback, updCallback});
    rows.add(QStringLiteral("Buffergrootte"), {ledCBufsize});
    rows.add(QStringLiteral("Buffers"), {ledCBuf});
    auto *page = new QWidget(this);
    auto *layout = new QVBoxLayout(page);
    layout->addWidget(frame);
    layout->addWidget(chkMute);
    layout->addStretch();
    return page;
}

QWidget *frmSetup::generalPage() {
    for (const char *rate : {"128 Kbit/Sec", "192 Kbit/Sec", "256 Kbit/Sec", "320 Kbit/Sec", "350 Kbit/Sec"}) {
        cobBitrate->addItem(QString::fromLatin1(rate));
    }
    auto *page = new QWidget(this);
    Rows rows(page);
    rows.add(QStringLiteral("Count-Down"), {ledCountDown, new QLabel(QStringLiteral("Seconden"), page)});
    rows.add(QStringLiteral("MP3-Bitrate"), {cobBitrate});
    rows.fillUp();
    return page;
}

void frmSetup::connectControls() {
    updCallback->setRange(0, 2);
    on(cmdSave, &QPushButton::clicked, this, &frmSetup::cmdSave_Click);
    on(cmdExit, &QPushButton::clicked, this, &frmSetup::cmdExit_Click);
    on(cmdPath, &QPushButton::clicked, this, &frmSetup::cmdPath_Click);
    on(cmdVoice, &QPushButton::clicked, this, &frmSetup::cmdVoice_Click);
    on(updKaart, &SpinButton::valueChanged, this, &frmSetup::updKaart_Change);
    on(updCallback, &SpinButton::valueChanged, this, &frmSetup::updCallback_Change);
    for (QLineEdit *folder : {txtPath, txtVoice}) {
        on(folder, &QLineEdit::textChanged, this, &frmSetup::checkFolders);
    }
    for (QCheckBox *box : {chkData, chkServer}) {
        on(box, &QCheckBox::toggled, this, &frmSetup::checkFolders);
    }
}

} // namespace orvel
