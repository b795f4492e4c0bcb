#pragma once

#include "platform/report.h"

#include <QStringList>

namespace orvel {

/// Keeps what would have been shown.
class FakeReportViewer : public ReportViewer {
  public:
    void preview(const QString &title, const QString &html) override {
        titles << title;
        reports << html;
    }

    QStringList titles;
    QStringList reports;
};

} // namespace orvel
