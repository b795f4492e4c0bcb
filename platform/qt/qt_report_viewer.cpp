#include "platform/qt/qt_report_viewer.h"

#include "platform/file_system.h"
#include "platform/qt/active_window.h"
#include "platform/runtime_error.h"

#include <QAbstractTextDocumentLayout>
#include <QAction>
#include <QBuffer>
#include <QFileDialog>
#include <QFileInfo>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QStandardPaths>
#include <QTextDocument>
#include <QToolBar>
#include <QToolButton>

namespace orvel {

namespace {

constexpr double marginMm = 15;
constexpr int fontPoints = 9;

void makeA4(QPagedPaintDevice &pages) {
    pages.setPageSize(QPageSize(QPageSize::A4));
    pages.setPageMargins(QMarginsF(marginMm, marginMm, marginMm, marginMm), QPageLayout::Millimeter);
}

QFont reportFont() {
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setStyleHint(QFont::SansSerif);
    font.setPointSize(fontPoints);
    return font;
}

/// One page's part of the document, in the document's own coordinates.
void paintBody(QPainter &painter, const QTextDocument &document, int page, const QSizeF &body) {
    const QRectF part(0, page * body.height(), body.width(), body.height());
    painter.save();
    painter.translate(0, -part.top());
    painter.setClipRect(part);
    QAbstractTextDocumentLayout::PaintContext context;
    context.clip = part;
    context.palette.setColor(QPalette::Text, Qt::black);
    document.documentLayout()->draw(&painter, context);
    painter.restore();
}

/// In front of Qt's own buttons, where it is seen at every width.
template <class Handler>
void addPdfButton(QPrintPreviewDialog &dialog, Handler clicked) {
    auto *tools = dialog.findChild<QToolBar *>();
    if (tools == nullptr) {
        return;
    }
    const int icon = dialog.fontMetrics().height() * 3 / 2;
    tools->setIconSize(QSize(icon, icon));
    tools->setMovable(false);
    auto *save = new QAction(QIcon(QStringLiteral(":/icons/save.svg")), QObject::tr("PDF bewaren"), &dialog);
    save->setObjectName(QStringLiteral("cmdPdf"));
    save->setToolTip(QObject::tr("Draaiorde als PDF-bestand bewaren"));
    tools->insertAction(tools->actions().value(0), save);
    if (auto *button = qobject_cast<QToolButton *>(tools->widgetForAction(save))) {
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    }
    QObject::connect(save, &QAction::triggered, &dialog, clicked);
}

} // namespace

bool paintReport(QPagedPaintDevice &pages, const QString &title, const QString &html) {
    QPainter painter(&pages);
    if (!painter.isActive()) {
        return false;
    }
    QTextDocument document;
    document.documentLayout()->setPaintDevice(&pages);
    document.setDefaultFont(reportFont());
    document.setDocumentMargin(0);
    document.setHtml(html);
    const QRectF page(QPointF(0, 0), pages.pageLayout().paintRectPixels(pages.logicalDpiX()).size());
    const double footHeight = QFontMetricsF(reportFont(), &pages).height() * 2;
    const QSizeF body(page.width(), page.height() - footHeight);
    document.setPageSize(body);
    const int count = document.pageCount();
    for (int number = 0; number < count; ++number) {
        if (number > 0) {
            pages.newPage();
        }
        paintBody(painter, document, number, body);
        const QRectF foot(0, body.height(), page.width(), footHeight);
        painter.setFont(reportFont());
        painter.setPen(Qt::darkGray);
        painter.drawText(foot, Qt::AlignLeft | Qt::AlignBottom, title);
        painter.drawText(foot, Qt::AlignRight | Qt::AlignBottom,
                         QStringLiteral("pagina %1 van %2").arg(number + 1).arg(count));
    }
    return painter.end();
}

void QtReportViewer::preview(const QString &title, const QString &html) {
    QWidget *owner = activeWindow();
    QPrinter printer(QPrinter::HighResolution);
    makeA4(printer);
    printer.setDocName(title);
    QPrintPreviewDialog dialog(&printer, owner);
    dialog.setObjectName(QStringLiteral("frmPrintPreview"));
    dialog.setWindowTitle(title);
    dialog.setWindowFlag(Qt::WindowMaximizeButtonHint);
    if (owner != nullptr) {
        dialog.resize(owner->window()->size() * 9 / 10);
    }
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog, [&](QPrinter *target) {
        if (!paintReport(*target, title, html)) {
            prompts_.message(QObject::tr("Het afdrukken is niet gelukt."), title, MessageIcon::Exclamation);
        }
    });
    addPdfButton(dialog, [&] { savePdf(&dialog, title, html); });
    dialog.exec();
}

void QtReportViewer::savePdf(QWidget *owner, const QString &title, const QString &html) {
    QFileDialog dialog(owner, QObject::tr("PDF bewaren"),
                       QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilter(QObject::tr("PDF-bestanden (*.pdf)"));
    dialog.setDefaultSuffix(QStringLiteral("pdf"));
    dialog.selectFile(QFileInfo(title).completeBaseName() + QStringLiteral(".pdf"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return;
    }
    const QString path = dialog.selectedFiles().constFirst();
    try {
        const QByteArray pdf = renderPdf(title, html);
        if (pdf.isEmpty()) {
            throw RuntimeError(ErrorNumber::DeviceError, path);
        }
        files_.write(path, pdf);
    } catch (const RuntimeError &error) {
        prompts_.message(QObject::tr("%1 kon niet worden geschreven.\n\n%2.").arg(path, error.description()),
                         QObject::tr("PDF bewaren"), MessageIcon::Exclamation);
    }
}

QByteArray renderPdf(const QString &title, const QString &html) {
    QBuffer pdf;
    pdf.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&pdf);
        writer.setTitle(title);
        writer.setCreator(QStringLiteral("ORVEL"));
        makeA4(writer);
        if (!paintReport(writer, title, html)) {
            return {};
        }
    }
    return pdf.data();
}

} // namespace orvel
