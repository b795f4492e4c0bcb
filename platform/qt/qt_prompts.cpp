#include "platform/qt/qt_prompts.h"

#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>

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

} // namespace

void QtPrompts::message(const QString &text, const QString &title, MessageIcon icon) {
    QMessageBox box(boxIcon(icon), title, text, QMessageBox::NoButton, QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
    box.exec();
}

bool QtPrompts::ask(const QString &text, const QString &title) {
    QMessageBox box(QMessageBox::Question, title, text, QMessageBox::NoButton, QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    const QPushButton *yes = box.addButton(QStringLiteral("&Ja"), QMessageBox::YesRole);
    QPushButton *no = box.addButton(QStringLiteral("&Nee"), QMessageBox::NoRole);
    box.setEscapeButton(no);
    box.exec();
    return box.clickedButton() == yes;
}

QString QtPrompts::input(const QString &prompt, const QString &title) {
    QInputDialog dialog(QApplication::activeWindow());
    dialog.setWindowTitle(title);
    dialog.setLabelText(prompt);
    dialog.setOkButtonText(QStringLiteral("OK"));
    dialog.setCancelButtonText(QStringLiteral("&Annuleren"));
    return dialog.exec() == QDialog::Accepted ? dialog.textValue() : QString();
}

QString QtPrompts::saveFileName(const QString &title, const QString &proposal) {
    return QFileDialog::getSaveFileName(QApplication::activeWindow(), title, proposal,
                                        QStringLiteral("MP3-bestanden (*.mp3);;Alle bestanden (*)"), nullptr,
                                        // ShellCopyFile asks before it overwrites: one question is enough.
                                        QFileDialog::DontConfirmOverwrite);
}

QString QtPrompts::folder(const QString &instruction, const QString &start) {
    return QFileDialog::getExistingDirectory(QApplication::activeWindow(), instruction, start);
}

std::optional<std::int32_t> QtPrompts::colour(std::int32_t initial) {
    const auto bits = static_cast<std::uint32_t>(initial);
    const QColor start(static_cast<int>(bits & 0xFFU), static_cast<int>((bits >> 8U) & 0xFFU),
                       static_cast<int>((bits >> 16U) & 0xFFU));
    const QColor chosen = QColorDialog::getColor(start, QApplication::activeWindow());
    if (!chosen.isValid()) {
        return std::nullopt;
    }
    return chosen.red() + chosen.green() * 0x100 + chosen.blue() * 0x10000;
}

} // namespace orvel
