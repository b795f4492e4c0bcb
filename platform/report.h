#pragma once

#include <QString>

class QWidget;

namespace orvel {

/// Shows a finished report to the presenter, who prints it or saves it as a PDF file from there.
class ReportViewer {
  public:
    virtual ~ReportViewer() = default;

    /// html: a subset of HTML 4 as QTextDocument reads it. Pages are A4 and numbered. Returns when the presenter has
    /// closed the preview.
    virtual void preview(QWidget *owner, const QString &title, const QString &html) = 0;
};

} // namespace orvel
