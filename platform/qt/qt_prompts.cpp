#include "platform/qt/qt_prompts.h"

#include "platform/guarded.h"
#include "platform/qt/active_window.h"

#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QStandardPaths>
#include <QTimer>
#include <QToolButton>

namespace orvel {

namespace {

QMessageBox::Icon boxIcon(MessageIcon icon) {
    switch (icon) {
    case MessageIcon::Information:
        return QMessageBox::Information;
    case MessageIcon::Exclamation:
        return QMessageBox::Warning;
    case MessageIcon::Critical:
        return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

QString chosenIn(QFileDialog &dialog) {
    const bool accepted = dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty();
    return accepted ? dialog.selectedFiles().constFirst() : QString();
}

/// The pointer at once, a window after a moment.
class QtWaitingSign : public WaitingSign {
  public:
    explicit QtWaitingSign(const QString &folder)
        : dialog_({}, QObject::tr("Niet langer wachten"), 0, 0, activeWindow()) {
        QApplication::setOverrideCursor(Qt::BusyCursor);
        auto *text = new QLabel(QObject::tr("Wachten op antwoord van de schijf of server:\n%1").arg(folder));
        text->setTextFormat(Qt::PlainText);
        dialog_.setLabel(text);
        dialog_.setMinimumWidth(dialog_.fontMetrics().averageCharWidth() * 60); // room for the title
        dialog_.setObjectName(QStringLiteral("WaitingSign"));
        dialog_.setWindowTitle(QObject::tr("De map geeft nog geen antwoord"));
        dialog_.setWindowModality(Qt::ApplicationModal);
        dialog_.setAutoReset(false);
        dialog_.setMinimumDuration(hours); // shown by our own timer
        show_.setSingleShot(true);
        QObject::connect(&show_, &QTimer::timeout, &dialog_, [this] {
            QApplication::changeOverrideCursor(Qt::ArrowCursor); // the button can be pressed
            dialog_.show();
        });
        show_.start(quietMs);
    }
    QtWaitingSign(const QtWaitingSign &) = delete;
    QtWaitingSign(QtWaitingSign &&) = delete;
    QtWaitingSign &operator=(const QtWaitingSign &) = delete;
    QtWaitingSign &operator=(QtWaitingSign &&) = delete;
    ~QtWaitingSign() override { QApplication::restoreOverrideCursor(); }

    [[nodiscard]] bool isShown() const override { return dialog_.isVisible(); }
    [[nodiscard]] bool isGivenUp() const override { return dialog_.wasCanceled(); }

  private:
    static constexpr int hours = 24 * 3600 * 1000;
    static constexpr int quietMs = 250;

    QProgressDialog dialog_;
    QTimer show_;
};

class QtProgressSign : public ProgressSign {
  public:
    QtProgressSign(const QString &title, int steps)
        : dialog_({}, QStringLiteral("Afbreken"), 0, steps, activeWindow()) {
        dialog_.setObjectName(QStringLiteral("ProgressSign"));
        dialog_.setWindowTitle(title);
        dialog_.setWindowModality(Qt::WindowModal);
        dialog_.setAutoClose(false);
        dialog_.setAutoReset(false);
        dialog_.show();
    }

    void advance(const QString &what, int step) override {
        dialog_.setLabelText(what);
        dialog_.setValue(step);
    }
    [[nodiscard]] bool isStopped() const override { return dialog_.wasCanceled(); }

  private:
    QProgressDialog dialog_;
};

} // namespace

void QtPrompts::message(const QString &text, const QString &title, MessageIcon icon) {
    QMessageBox box(boxIcon(icon), title, text, QMessageBox::NoButton, activeWindow());
    box.setTextFormat(Qt::PlainText);
    QPushButton *ok = box.addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
    box.setEscapeButton(ok);
    box.exec();
}

bool QtPrompts::ask(const QString &text, const QString &title, Preset preset, const Verbs &verbs) {
    QMessageBox box(QMessageBox::Question, title, text, QMessageBox::NoButton, activeWindow());
    box.setTextFormat(Qt::PlainText);
    QPushButton *yes = box.addButton(verbs.yes, QMessageBox::YesRole);
    QPushButton *no = box.addButton(verbs.no, QMessageBox::NoRole);
    box.setDefaultButton(preset == Preset::Yes ? yes : no);
    box.setEscapeButton(no);
    box.exec();
    return box.clickedButton() == yes;
}

bool QtPrompts::waitUntil(const QString &text, const QString &title, const std::function<bool()> &isOver) {
    constexpr int lookMs = 1000;
    QMessageBox box(QMessageBox::Information, title, text, QMessageBox::NoButton, activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.addButton(QStringLiteral("&Niet langer wachten"), QMessageBox::RejectRole);
    bool over = false;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &box, [&] {
        guarded([&] { over = isOver(); });
        if (over) {
            box.accept();
        }
    });
    look.start(lookMs);
    box.exec();
    return over;
}

QString QtPrompts::input(const QString &prompt, const QString &title) {
    QInputDialog dialog(activeWindow());
    dialog.setWindowTitle(title);
    dialog.setLabelText(prompt);
    dialog.setOkButtonText(QStringLiteral("OK"));
    dialog.setCancelButtonText(QStringLiteral("&Annuleren"));
    return dialog.exec() == QDialog::Accepted ? dialog.textValue() : QString();
}

QString QtPrompts::saveFileName(const QString &title, const QString &proposal) {
    QFileDialog dialog(activeWindow(), title, QStandardPaths::writableLocation(QStandardPaths::MusicLocation));
    dialog.setObjectName(QStringLiteral("codSave"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters({QStringLiteral("MP3-bestanden (*.mp3)"), QStringLiteral("Alle bestanden (*)")});
    dialog.setDefaultSuffix(QStringLiteral("mp3"));
    // The copy that follows asks before it overwrites: one question is enough.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.selectFile(proposal);
    return chosenIn(dialog);
}

QString QtPrompts::folder(const QString &instruction, const QString &start) {
    QFileDialog dialog(activeWindow(), instruction, start);
    dialog.setObjectName(QStringLiteral("ISFolderSelect1"));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setLabelText(QFileDialog::Reject, QStringLiteral("&Afbreken"));
    // Only Qt's own dialog has this button; a desktop's dialog names it as the desktop does.
    if (auto *newFolder = dialog.findChild<QToolButton *>(QStringLiteral("newFolderButton"))) {
        newFolder->setText(QStringLiteral("&Nieuw"));
        newFolder->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        newFolder->setFixedSize(newFolder->sizeHint());
    }
    dialog.resize(dialog.fontMetrics().averageCharWidth() * 110, dialog.fontMetrics().height() * 30);
    return chosenIn(dialog);
}

std::optional<std::int32_t> QtPrompts::colour(std::int32_t initial) {
    const auto bits = static_cast<std::uint32_t>(initial);
    const QColor start(static_cast<int>(bits & 0xFFU), static_cast<int>((bits >> 8U) & 0xFFU),
                       static_cast<int>((bits >> 16U) & 0xFFU));
    QColorDialog dialog(start, activeWindow());
    dialog.setObjectName(QStringLiteral("codCol"));
    dialog.setWindowTitle(QStringLiteral("Kleur kiezen"));
    if (dialog.exec() != QDialog::Accepted) {
        return std::nullopt;
    }
    const QColor chosen = dialog.selectedColor();
    return chosen.red() + chosen.green() * 0x100 + chosen.blue() * 0x10000;
}

std::unique_ptr<WaitingSign> QtPrompts::waitFor(const QString &folder) {
    return std::make_unique<QtWaitingSign>(folder);
}

std::unique_ptr<ProgressSign> QtPrompts::progress(const QString &title, int steps) {
    return std::make_unique<QtProgressSign>(title, steps);
}

} // namespace orvel
