#pragma once

#include <QString>

namespace orvel {

/// Shows a finished report to the presenter, who prints it or saves it as a PDF file from there.
class ReportViewer {
  public:
    virtual ~ReportViewer() = default;

    /// Over the active window. html: a subset of HTML 4 as QTextDocument reads it. Pages are A4 and numbered. Returns
    /// when the presenter has closed the preview.
    virtual void preview(const QString &title, const QString &html) = 0;
};

} // namespace orvel
