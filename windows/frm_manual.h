#pragma once

#include <QDialog>
#include <QLineEdit>
#include <QTextBrowser>

namespace orvel {

/// A Markdown document of the resources with its pictures; its headings can be gone to.
class ManualBrowser : public QTextBrowser {
    Q_OBJECT

  public:
    using QTextBrowser::QTextBrowser;

    /// Pictures are made to fit the width that there is when the document is loaded.
    QVariant loadResource(int type, const QUrl &name) override;

  protected:
    void doSetSource(const QUrl &name, QTextDocument::ResourceType type) override;

  private:
    /// A Markdown document's headings are no places for links by themselves.
    void makeAnchors();
};

/// The manual for presenters.
class frmManual : public QDialog {
    Q_OBJECT

  public:
    explicit frmManual(QWidget *parent = nullptr);

    /// Shows the heading with this anchor; without one the beginning. For a window that is shown.
    void goTo(const QString &anchor);
    void txtZoek_ReturnPressed();

    ManualBrowser *const txtManual;
    QLineEdit *const txtZoek;

  private:
    void layOut();
};

} // namespace orvel
