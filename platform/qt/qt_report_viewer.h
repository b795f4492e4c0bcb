#pragma once

#include "platform/report.h"

class QPrinter;

namespace orvel {

/// Shows reports in a print preview. Where no printer is installed, its print button saves a PDF file.
class QtReportViewer : public ReportViewer {
  public:
    void preview(QWidget *owner, const QString &title, const QString &html) override;
};

/// Paints a report on the pages of a printer: margins of 15 mm, title and "pagina n van m" at the foot of every page,
/// table heads (<thead>) repeated.
void paintReport(QPrinter &printer, const QString &title, const QString &html);

/// Writes a report as an A4 PDF file; false when the file cannot be written.
bool renderPdf(const QString &title, const QString &html, const QString &path);

} // namespace orvel
