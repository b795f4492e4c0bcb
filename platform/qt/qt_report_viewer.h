#pragma once

#include "platform/prompts.h"
#include "platform/report.h"

class QPagedPaintDevice;

namespace orvel {

/// Shows reports in a print preview with a button that saves a PDF file.
class QtReportViewer : public ReportViewer {
  public:
    /// prompts: tells when a PDF file could not be written.
    explicit QtReportViewer(Prompts &prompts) : prompts_(prompts) {}

    void preview(QWidget *owner, const QString &title, const QString &html) override;

  private:
    void savePdf(QWidget *owner, const QString &title, const QString &html);

    Prompts &prompts_;
};

/// Paints a report on pages: title and "pagina n van m" at the foot of every page, table heads (<thead>) repeated.
/// False when the device takes nothing.
bool paintReport(QPagedPaintDevice &pages, const QString &title, const QString &html);

/// Writes a report as an A4 PDF file with margins of 15 mm. False when the file cannot be written; one that stood there
/// is kept then.
bool renderPdf(const QString &title, const QString &html, const QString &path);

} // namespace orvel
