// How the window that imports sound files is put together.
#include "platform/audio.h"
#include "windows/frm_convert.h"
#include "windows/named.h"
#include "windows/on.h"
#include "windows/open_as.h"
#include "windows/whole_rows.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace orvel {

namespace {

constexpr int lengthsMs = 100;

void setUpPlan(QTableWidget &list) {
    list.setObjectName(QStringLiteral("lstPlan"));
    list.setAccessibleName(QObject::tr("Wat Batch Import doet"));
    list.setHorizontalHeaderLabels({QObject::tr("Bestand"), QObject::tr("Lengte"), QObject::tr("Link"),
                                    QObject::tr("Praattijd"), QObject::tr("Past niet")});
    showWholeRows(list);
    list.setSelectionMode(QAbstractItemView::NoSelection);
    list.horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    list.setMinimumHeight(list.fontMetrics().height() * 4);
}

} // namespace

frmConvert::frmConvert(ImportDesk context, QWidget *parent)
    : QDialog(parent), browser(new FolderBrowser(context.platform.files, QStringLiteral("*.WAV;*.MP3").split(u';'),
                                                 FolderBrowser::Files::Shown, this)),
      cmdBatch(namedButton(this, "cmdBatch", QStringLiteral("Batch Import"),
                           tr("Gebruik de bestanden in hun volgorde voor alle presentaties"), "")),
      cmdSingle(namedButton(this, "cmdSingle", QStringLiteral("Importeer Bestand"),
                            tr("Gebruik het gekozen bestand voor de gekozen stap"), "")),
      cmdQuit(namedButton(this, "cmdQuit", tr("Sluiten"), tr("Verlaat dit scherm"), ":/icons/exit.svg")),
      cmdPlay(namedButton(this, "cmdPlay", tr("Beluister"), tr("Beluister het gekozen bestand"), "")),
      progressconvert(new Gauge(this)), lblStep(new QLabel(this)), lstPlan(new QTableWidget(this)),
      lstFailed(new QListWidget(this)), context_(std::move(context)),
      import_({context_.platform, context_.settings, context_.places, context_.datList, context_.step, context_.marks,
               context_.filing, [this](int percent, const QString &what) { return showProgress(percent, what); },
               [this](std::size_t number) { showFile(number); },
               [this](const QString &sentence) { noteFailure(sentence); }}),
      player_(context_.platform.sound.makePlayer()), lengths_(context_.platform.audioFiles),
      tmrLengths_(context_.platform.timers.create(lengthsMs, MissedTicks::Drop, [this] { showPlan(); })) {
    setObjectName(QStringLiteral("frmConvert"));
    setWindowTitle(QStringLiteral("Geluidsbestanden importeren"));
    progressconvert->setObjectName(QStringLiteral("progressconvert"));
    progressconvert->setAccessibleName(tr("Voortgang"));
    lstFailed->setObjectName(QStringLiteral("lstFailed"));
    lstFailed->setAccessibleName(tr("Bestanden die niet konden worden omgezet"));
    lstFailed->setSelectionMode(QAbstractItemView::NoSelection);
    lstFailed->setMinimumHeight(fontMetrics().height() * 2);
    lstFailed->setMaximumHeight(fontMetrics().height() * 4);
    lblStep->setObjectName(QStringLiteral("lblStep"));
    lblStep->setWordWrap(true);
    lstPlan->setColumnCount(5);
    setUpPlan(*lstPlan);
    cmdPlay->setIcon(playIcon_);
    cmdSingle->setProperty("role", QStringLiteral("primary"));
    browser->letBrowse(context_.platform.prompts);
    layOut();
    player_->setEndHandler([this] { guarded([this] { player_End(); }); });
    on(browser, &FolderBrowser::folderChanged, this, [this] {
        showState();
        plan();
    });
    on(browser, &FolderBrowser::fileSelected, this, &frmConvert::showState);
    on(cmdBatch, &QPushButton::clicked, this, &frmConvert::cmdBatch_Click);
    on(cmdSingle, &QPushButton::clicked, this, &frmConvert::cmdSingle_Click);
    on(cmdQuit, &QPushButton::clicked, this, &frmConvert::cmdQuit_Click);
    on(cmdPlay, &QPushButton::clicked, this, &frmConvert::cmdPlay_Click);
}

void frmConvert::layOut() {
    auto *failed = new QLabel(tr("Niet omgezet"), this);
    failed->setProperty("role", QStringLiteral("muted"));
    failed->setBuddy(lstFailed);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdPlay);
    buttons->addStretch();
    buttons->addWidget(cmdSingle);
    buttons->addWidget(cmdBatch);
    buttons->addWidget(cmdQuit);
    auto *layout = new QVBoxLayout(this);
    auto *planned = new QLabel(tr("Dit doet Batch Import"), this);
    planned->setProperty("role", QStringLiteral("muted"));
    planned->setBuddy(lstPlan);
    layout->addWidget(browser, 3);
    layout->addWidget(planned);
    layout->addWidget(lstPlan, 2);
    layout->addWidget(lblStep);
    layout->addWidget(progressconvert);
    layout->addWidget(failed);
    layout->addWidget(lstFailed);
    layout->addLayout(buttons);
    const int line = fontMetrics().height();
    openAs(*this, {line * 46, line * 40});
}

} // namespace orvel
