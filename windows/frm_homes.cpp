#include "windows/frm_homes.h"

#include "platform/prompts.h"
#include "station/homes.h"
#include "windows/named.h"
#include "windows/on.h"
#include "windows/whole_rows.h"

#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include <utility>

namespace orvel {

namespace {

enum HomeColumn { HomeNameColumn, HomeFolderColumn, HomeStateColumn, HomeColumnCount };

QString shownFolder(const QString &folder) {
    return QDir::toNativeSeparators(folder);
}

} // namespace

frmHomes::frmHomes(Homes &homes, Prompts &prompts, QString current, QWidget *parent)
    : QDialog(parent), lblNotice(new QLabel(this)),
      lstHomes(named(new QTableWidget(this), "lstHomes", tr("Werkmappen"))),
      cmdOpen(namedButton(this, "cmdOpen", tr("Openen"), tr("Werk in de gekozen werkmap"))),
      cmdForget(namedButton(this, "cmdForget", tr("Uit de lijst"), tr("De map zelf blijft staan"))),
      cmdNew(namedButton(this, "cmdNew", tr("Nieuwe werkmap..."), QString())),
      cmdSample(namedButton(this, "cmdSample", tr("Voorbeeld"), QString())),
      cmdExisting(namedButton(this, "cmdExisting", tr("Bestaande map..."), QString())),
      cmdExit(namedButton(this, "cmdExit", tr("Sluiten"), tr("Verlaat dit scherm"))), homes_(homes), prompts_(prompts),
      current_(std::move(current)) {
    setObjectName(QStringLiteral("frmHomes"));
    setWindowTitle(current_.isEmpty() ? QStringLiteral("ORVEL") : tr("Werkmappen"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/orvel.svg")));
    cmdSample->setVisible(homes_.hasSample());
    layOut();
    fill();
    on(cmdOpen, &QPushButton::clicked, this, &frmHomes::cmdOpen_Click);
    on(cmdForget, &QPushButton::clicked, this, &frmHomes::cmdForget_Click);
    on(cmdNew, &QPushButton::clicked, this, &frmHomes::cmdNew_Click);
    on(cmdSample, &QPushButton::clicked, this, &frmHomes::cmdSample_Click);
    on(cmdExisting, &QPushButton::clicked, this, &frmHomes::cmdExisting_Click);
    on(cmdExit, &QPushButton::clicked, this, &QDialog::reject);
    on(lstHomes, &QTableWidget::itemSelectionChanged, this, &frmHomes::lstHomes_Change);
    on(lstHomes, &QTableWidget::itemActivated, this, &frmHomes::cmdOpen_Click);
}

void frmHomes::layOut() {
    const int line = fontMetrics().height();
    lstHomes->setColumnCount(HomeColumnCount);
    lstHomes->setHorizontalHeaderLabels({tr("Werkmap"), tr("Map"), tr("Toestand")});
    showWholeRows(*lstHomes);
    lstHomes->horizontalHeader()->setSectionResizeMode(HomeFolderColumn, QHeaderView::Stretch);
    lstHomes->setMinimumSize(fontMetrics().averageCharWidth() * 90, line * 9);
    lblNotice->setObjectName(QStringLiteral("lblNotice"));
    lblNotice->setProperty("role", QStringLiteral("attention"));
    lblNotice->setWordWrap(true);
    auto *intro = new QLabel(tr("In een werkmap staan de playlists, de opnames en de instellingen bij elkaar."), this);
    intro->setWordWrap(true);
    auto *ways = new QGridLayout;
    ways->setHorizontalSpacing(line);
    ways->setColumnStretch(1, 1);
    const auto add = [&](QPushButton *button, const QString &text) {
        auto *label = new QLabel(text, this);
        label->setWordWrap(true);
        label->setVisible(button->isVisibleTo(this));
        button->setAccessibleDescription(text);
        const int row = ways->rowCount();
        ways->addWidget(button, row, 0);
        ways->addWidget(label, row, 1);
    };
    add(cmdNew, tr("Voor eigen playlists; ze komt in %1.").arg(shownFolder(homes_.folder())));
    add(cmdSample, tr("Een nieuwe werkmap met playlists, om ORVEL te leren kennen."));
    add(cmdExisting, tr("Een map op deze computer, een stick of een server."));
    cmdOpen->setProperty("role", QStringLiteral("primary"));
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdForget);
    buttons->addStretch();
    buttons->addWidget(cmdOpen);
    buttons->addWidget(cmdExit);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(line, line, line, line);
    layout->setSpacing(line * 3 / 4);
    layout->addWidget(intro);
    layout->addWidget(lblNotice);
    layout->addWidget(lstHomes, 1);
    layout->addLayout(ways);
    layout->addLayout(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 90);
}

void frmHomes::fill() {
    const QStringList homes = homes_.all();
    lstHomes->setRowCount(static_cast<int>(homes.size()));
    QString lost;
    for (int row = 0; row < lstHomes->rowCount(); ++row) {
        const QString &home = homes.at(row);
        const bool isThere = homes_.isThere(home);
        const QString state = home == current_ ? tr("in gebruik") : isThere ? QString() : tr("niet gevonden");
        lstHomes->setItem(row, HomeNameColumn, new QTableWidgetItem(QFileInfo(home).fileName()));
        lstHomes->setItem(row, HomeFolderColumn, new QTableWidgetItem(shownFolder(home)));
        lstHomes->item(row, HomeFolderColumn)->setData(Qt::UserRole, home);
        lstHomes->setItem(row, HomeStateColumn, new QTableWidgetItem(state));
        if (row == 0 && !isThere && current_.isEmpty()) {
            lost = home;
        }
    }
    lblNotice->setText(tr("De werkmap %1 werd niet gevonden. Staat ze op een stick of een server, sluit die dan aan en "
                          "kies \"Openen\"; of kies een andere werkmap.")
                           .arg(shownFolder(lost)));
    lblNotice->setVisible(!lost.isEmpty());
    for (QWidget *ofList :
         {static_cast<QWidget *>(lstHomes), static_cast<QWidget *>(cmdOpen), static_cast<QWidget *>(cmdForget)}) {
        ofList->setVisible(!homes.isEmpty());
    }
    if (!homes.isEmpty()) {
        lstHomes->selectRow(0);
    }
    lstHomes_Change();
}

QString frmHomes::selected() const {
    const QTableWidgetItem *item = lstHomes->item(lstHomes->currentRow(), HomeFolderColumn);
    return item == nullptr ? QString() : item->data(Qt::UserRole).toString();
}

void frmHomes::lstHomes_Change() {
    const bool other = !selected().isEmpty() && selected() != current_;
    cmdOpen->setEnabled(other);
    cmdForget->setEnabled(other);
    cmdOpen->setDefault(other);
}

void frmHomes::cmdOpen_Click() {
    if (!cmdOpen->isEnabled()) {
        return;
    }
    if (!homes_.isThere(selected())) {
        prompts_.message(tr("De werkmap %1 werd niet gevonden.").arg(shownFolder(selected())), errorTitle,
                         MessageIcon::Exclamation);
        return;
    }
    choose(selected());
}

void frmHomes::cmdForget_Click() {
    homes_.forget(selected());
    fill();
}

void frmHomes::cmdNew_Click() {
    const QString name =
        prompts_.input(tr("Hoe heet de nieuwe werkmap? De naam van de zender, bijvoorbeeld."), tr("Nieuwe werkmap"));
    if (!name.trimmed().isEmpty()) {
        choose(homes_.make(name));
    }
}

void frmHomes::cmdSample_Click() {
    choose(homes_.makeSample());
}

void frmHomes::cmdExisting_Click() {
    const QString folder = prompts_.folder(tr("Kies een werkmap"), QDir::homePath());
    if (!folder.isEmpty() && folder != current_ && homes_.adopt(prompts_, folder)) {
        choose(folder);
    }
}

void frmHomes::choose(const QString &home) {
    home_ = home;
    accept();
}

} // namespace orvel
