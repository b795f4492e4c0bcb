#include "platform/qt/qt_report_viewer.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QTextDocument>

namespace orvel {

namespace {

constexpr double marginMm = 15;
constexpr int fontPoints = 9;

void makeA4(QPrinter &printer) {
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageMargins(QMarginsF(marginMm, marginMm, marginMm, marginMm), QPageLayout::Millimeter);
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

} // namespace

void paintReport(QPrinter &printer, const QString &title, const QString &html) {
    QPainter painter(&printer);
    if (!painter.isActive()) {
        return;
    }
    QTextDocument document;
    document.documentLayout()->setPaintDevice(&printer);
    document.setDefaultFont(reportFont());
    document.setDocumentMargin(0);
    document.setHtml(html);
    const QRectF page(QPointF(0, 0), printer.pageRect(QPrinter::DevicePixel).size());
    const double footHeight = QFontMetricsF(reportFont(), &printer).height() * 2;
    const QSizeF body(page.width(), page.height() - footHeight);
    document.setPageSize(body);
    const int pages = document.pageCount();
    for (int number = 0; number < pages; ++number) {
        if (number > 0) {
            printer.newPage();
        }
        paintBody(painter, document, number, body);
        const QRectF foot(0, body.height(), page.width(), footHeight);
        painter.setFont(reportFont());
        painter.setPen(Qt::darkGray);
        painter.drawText(foot, Qt::AlignLeft | Qt::AlignBottom, title);
        painter.drawText(foot, Qt::AlignRight | Qt::AlignBottom,
                         QStringLiteral("pagina %1 van %2").arg(number + 1).arg(pages));
    }
}

void QtReportViewer::preview(QWidget *owner, const QString &title, const QString &html) {
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
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog,
                     [&](QPrinter *target) { paintReport(*target, title, html); });
    dialog.exec();
}

bool renderPdf(const QString &title, const QString &html, const QString &path) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    printer.setDocName(title);
    makeA4(printer);
    paintReport(printer, title, html);
    return printer.printerState() != QPrinter::Error;
}

} // namespace orvel
