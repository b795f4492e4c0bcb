#pragma once

#include "platform/prompts.h"
#include "platform/report.h"

#include <QByteArray>

class QPagedPaintDevice;
class QWidget;

namespace orvel {

class FileSystem;

/// Shows reports in a print preview with a button that saves a PDF file.
class QtReportViewer : public ReportViewer {
  public:
    /// prompts: tells when a PDF file could not be written to files.
    QtReportViewer(Prompts &prompts, FileSystem &files) : prompts_(prompts), files_(files) {}

    void preview(const QString &title, const QString &html) override;

  private:
    void savePdf(QWidget *owner, const QString &title, const QString &html);

    Prompts &prompts_;
    FileSystem &files_;
};

/// Paints a report on pages: title and "pagina n van m" at the foot of every page, table heads (<thead>) repeated.
/// False when the device takes nothing.
bool paintReport(QPagedPaintDevice &pages, const QString &title, const QString &html);

/// A report as an A4 PDF file with margins of 15 mm. Empty when it cannot be painted.
QByteArray renderPdf(const QString &title, const QString &html);

} // namespace orvel
