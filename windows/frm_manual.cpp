#include "windows/frm_manual.h"

#include "windows/manual_sections.h"
#include "windows/named.h"
#include "windows/on.h"

#include <QHBoxLayout>
#include <QImage>
#include <QScreen>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextTable>
#include <QVBoxLayout>

#include <algorithm>

namespace orvel {

namespace {

const QString manualSource = QStringLiteral("qrc:/docs/handleiding.md");

} // namespace

QVariant ManualBrowser::loadResource(int type, const QUrl &name) {
    if (type != QTextDocument::ImageResource) {
        return QTextBrowser::loadResource(type, name);
    }
    const QImage picture(u':' + source().resolved(name).path());
    const int width = viewport()->width() - static_cast<int>(4 * document()->documentMargin());
    return picture.width() <= width ? picture : picture.scaledToWidth(width, Qt::SmoothTransformation);
}

void ManualBrowser::doSetSource(const QUrl &name, QTextDocument::ResourceType type) {
    QTextBrowser::doSetSource(name, type);
    makeAnchors();
    for (QTextFrame *frame : document()->rootFrame()->childFrames()) {
        if (auto *table = qobject_cast<QTextTable *>(frame)) {
            QTextTableFormat lines = table->format();
            lines.setBorderCollapse(true);
            lines.setWidth(QTextLength(QTextLength::PercentageLength, 100));
            lines.setCellPadding(fontMetrics().height() / 4.0);
            table->setFormat(lines);
        }
    }
    if (name.hasFragment()) {
        scrollToAnchor(name.fragment());
    }
}

void ManualBrowser::makeAnchors() {
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 0 || block.length() < 2) {
            continue;
        }
        QTextCursor first(block);
        first.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
        QTextCharFormat anchor;
        anchor.setAnchor(true);
        anchor.setAnchorNames({anchorOfHeading(block.text())});
        first.mergeCharFormat(anchor);
    }
}

frmManual::frmManual(QWidget *parent)
    : QDialog(parent), txtManual(named(new ManualBrowser(this), "txtManual", tr("Handleiding"))),
      txtZoek(named(new QLineEdit(this), "txtZoek", tr("Zoek in de handleiding"))) {
    setObjectName(QStringLiteral("frmManual"));
    setWindowTitle(tr("Handleiding"));
    // What is loaded is made as wide as the window: a bar that came later would take some of that.
    txtManual->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    txtManual->setContextMenuPolicy(Qt::NoContextMenu); // what it offers, keys do too
    txtZoek->setPlaceholderText(tr("Zoek in de handleiding"));
    txtZoek->setClearButtonEnabled(true);
    layOut();
    on(txtZoek, &QLineEdit::returnPressed, this, &frmManual::txtZoek_ReturnPressed);
}

void frmManual::layOut() {
    QPushButton *contents = namedButton(this, "cmdInhoud", tr("Inhoud"), tr("Naar het begin van de handleiding"));
    QPushButton *back = namedButton(this, "cmdTerug", tr("Terug"), tr("Naar de vorige plaats"));
    QPushButton *close = namedButton(this, "cmdQuit", tr("Sluiten"), tr("Verlaat dit scherm"));
    back->setEnabled(false);
    on(contents, &QPushButton::clicked, this, [this] { goTo({}); });
    on(back, &QPushButton::clicked, txtManual, &QTextBrowser::backward);
    on(txtManual, &QTextBrowser::backwardAvailable, back, [back](auto... may) { (back->setEnabled(may), ...); });
    on(close, &QPushButton::clicked, this, &QDialog::accept);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(contents);
    buttons->addWidget(back);
    buttons->addWidget(txtZoek, 1);
    buttons->addWidget(close);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(txtManual, 1);
    layout->addLayout(buttons);
    const int line = fontMetrics().height();
    resize(QSize(line * 52, line * 44).boundedTo(screen()->availableSize() * 9 / 10));
}

void frmManual::goTo(const QString &anchor) {
    QUrl place(manualSource);
    if (!anchor.isEmpty()) {
        place.setFragment(anchor);
    }
    txtManual->setSource(place, QTextDocument::MarkdownResource);
    if (anchor.isEmpty()) {
        txtManual->verticalScrollBar()->setValue(0);
    }
    txtManual->setFocus();
}

void frmManual::txtZoek_ReturnPressed() {
    const QString words = txtZoek->text();
    if (!words.isEmpty() && !txtManual->find(words)) {
        // From the beginning again.
        txtManual->moveCursor(QTextCursor::Start);
        txtManual->find(words);
    }
}

} // namespace orvel
