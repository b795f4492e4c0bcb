// The real boxes, answered by their own buttons.
#include "platform/qt/qt_prompts.h"
#include "tests/platform/audio/temp_folder.h"
#include "tests/platform/qt/when_open.h"

#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include <functional>
#include <gtest/gtest.h>

namespace orvel {

namespace {

void press(QMessageBox &box, const QString &text) {
    const QList<QAbstractButton *> buttons = box.buttons();
    for (QAbstractButton *button : buttons) {
        if (button->text() == text) {
            QTest::mouseClick(button, Qt::LeftButton);
            return;
        }
    }
    ADD_FAILURE() << "no button " << text.toStdString();
    box.close();
}

const QString yes = QStringLiteral("&Ja");
const QString no = QStringLiteral("&Nee");

} // namespace

TEST(QtPrompts, AMessageHasItsTextTitleIconAndAnOk) {
    const std::pair<MessageIcon, QMessageBox::Icon> icons[] = {{MessageIcon::Information, QMessageBox::Information},
                                                               {MessageIcon::Exclamation, QMessageBox::Warning},
                                                               {MessageIcon::Critical, QMessageBox::Critical}};
    for (const auto &[icon, shown] : icons) {
        whenOpen<QMessageBox>([shown = shown](QMessageBox &box) {
            EXPECT_EQ(box.text(), QStringLiteral("Geen <b>geluidskaart</b> gevonden"));
            EXPECT_EQ(box.textFormat(), Qt::PlainText);
            EXPECT_EQ(box.windowTitle(), QStringLiteral("Foutmelding"));
            EXPECT_EQ(box.icon(), shown);
            EXPECT_EQ(box.buttons().size(), 1);
            press(box, QStringLiteral("OK"));
        });
        QtPrompts().message(QStringLiteral("Geen <b>geluidskaart</b> gevonden"), QStringLiteral("Foutmelding"), icon);
    }
}

TEST(QtPrompts, AQuestionIsAnsweredWithYesOrNo) {
    QtPrompts prompts;
    whenOpen<QMessageBox>([](QMessageBox &box) {
        EXPECT_EQ(box.text(), QStringLiteral("Playlist Klaar ?"));
        EXPECT_EQ(box.windowTitle(), QStringLiteral("Playlist overzetten"));
        EXPECT_EQ(box.icon(), QMessageBox::Question);
        EXPECT_EQ(box.buttons().size(), 2);
        press(box, yes);
    });
    EXPECT_TRUE(prompts.ask(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten")));
    whenOpen<QMessageBox>([](QMessageBox &box) { press(box, no); });
    EXPECT_FALSE(prompts.ask(QStringLiteral("?"), QString()));
}

TEST(QtPrompts, ClosingAQuestionIsNoEnterIsYes) {
    QtPrompts prompts;
    whenOpen<QMessageBox>([](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_FALSE(prompts.ask(QStringLiteral("?"), QString()));
    whenOpen<QMessageBox>([](QMessageBox &box) { box.close(); });
    EXPECT_FALSE(prompts.ask(QStringLiteral("?"), QString()));
    whenOpen<QMessageBox>([](QMessageBox &box) { QTest::keyClick(box.defaultButton(), Qt::Key_Return); });
    EXPECT_TRUE(prompts.ask(QStringLiteral("?"), QString()));
}

TEST(QtPrompts, ATextIsGivenAsItWasTyped) {
    QtPrompts prompts;
    const QString prompt = QStringLiteral("Geef een naam voor dit bestand (ZONDER EXTENSIE)");
    whenOpen<QInputDialog>([&](QInputDialog &box) {
        EXPECT_EQ(box.labelText(), prompt);
        EXPECT_EQ(box.windowTitle(), QStringLiteral("Bestandsnaam"));
        QTest::keyClicks(box.findChild<QLineEdit *>(), QStringLiteral(" take 1 "));
        QTest::keyClick(&box, Qt::Key_Return);
    });
    EXPECT_EQ(prompts.input(prompt, QStringLiteral("Bestandsnaam")), QStringLiteral(" take 1 "));
    whenOpen<QInputDialog>([&](QInputDialog &box) {
        QTest::keyClicks(box.findChild<QLineEdit *>(), QStringLiteral("take"));
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    EXPECT_EQ(prompts.input(prompt, QString()), QString());
}

TEST(QtPrompts, TheSaveDialogStartsOnTheProposalAndAddsTheExtension) {
    const test::TempFolder folder;
    test::writeContent(folder.path("bestaat.mp3"), "x");
    QtPrompts prompts;
    const QString title = QStringLiteral("Geef naam en locatie waarmee U het bestand wenst te bewaren");
    whenOpen<QFileDialog>([&](QFileDialog &box) {
        EXPECT_EQ(box.windowTitle(), title);
        EXPECT_EQ(box.acceptMode(), QFileDialog::AcceptSave);
        EXPECT_EQ(QFileInfo(box.selectedFiles().value(0)).fileName(), QStringLiteral("take.mp3"));
        EXPECT_TRUE(box.nameFilters().constFirst().contains(QStringLiteral("*.mp3")));
        auto *name = box.findChild<QLineEdit *>();
        name->setText(folder.path("bestaat"));
        QTest::keyClick(name, Qt::Key_Return);
    });
    // No question of its own about the file that exists: the copy asks.
    EXPECT_EQ(prompts.saveFileName(title, QStringLiteral("take.mp3")), folder.path("bestaat.mp3"));
    whenOpen<QFileDialog>([&](QFileDialog &box) {
        EXPECT_EQ(box.directory().path(), folder.path());
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    EXPECT_EQ(prompts.saveFileName(title, folder.path("take.mp3")), QString()) << "a proposal may have a folder";
}

TEST(QtPrompts, AFolderIsChosenFromItsStart) {
    const test::TempFolder folder;
    QDir(folder.path()).mkdir(QStringLiteral("onder"));
    QtPrompts prompts;
    const QString instruction = QStringLiteral("Geef de locatie op van de databasebestanden");
    whenOpen<QFileDialog>([&](QFileDialog &box) {
        EXPECT_EQ(box.windowTitle(), instruction);
        EXPECT_EQ(box.directory().path(), folder.path());
        EXPECT_EQ(box.labelText(QFileDialog::Reject), QStringLiteral("&Afbreken"));
        auto *newFolder = box.findChild<QToolButton *>(QStringLiteral("newFolderButton"));
        ASSERT_NE(newFolder, nullptr);
        EXPECT_EQ(newFolder->text(), QStringLiteral("&Nieuw"));
        EXPECT_TRUE(newFolder->isEnabled());
        EXPECT_GE(newFolder->width(), newFolder->sizeHint().width()) << "the text is cut off";
        auto *name = box.findChild<QLineEdit *>();
        name->setText(folder.path("onder"));
        QTest::keyClick(name, Qt::Key_Return);
    });
    EXPECT_EQ(prompts.folder(instruction, folder.path()), folder.path("onder"));
    whenOpen<QFileDialog>([](QFileDialog &box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(prompts.folder(instruction, folder.path()), QString());
}

TEST(QtPrompts, AColourHasRedInItsLowByte) {
    QtPrompts prompts;
    whenOpen<QColorDialog>([](QColorDialog &box) {
        EXPECT_EQ(box.currentColor(), QColor(0x10, 0x20, 0x30));
        box.setCurrentColor(QColor(1, 2, 3));
        QTest::keyClick(&box, Qt::Key_Return);
    });
    EXPECT_EQ(prompts.colour(0x302010), 0x030201);
    whenOpen<QColorDialog>([](QColorDialog &box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(prompts.colour(-1), std::nullopt);
}

TEST(QtPrompts, ABoxBelongsToTheWindowAlsoWhenAnotherProgramHasTheFocus) {
    QWidget window;
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    QApplication::setActiveWindow(nullptr);
    whenOpen<QMessageBox>([&](QMessageBox &box) {
        EXPECT_EQ(box.parentWidget(), &window);
        box.close();
    });
    QtPrompts().message(QStringLiteral("x"), QString(), MessageIcon::Information);
}

TEST(QtPrompts, AQuestionHasTheButtonForEnterThatItWasGiven) {
    QtPrompts prompts;
    for (const Preset preset : {Preset::Yes, Preset::No}) {
        whenOpen<QMessageBox>([](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Return); });
        EXPECT_EQ(prompts.ask(QStringLiteral("Maken ?"), QStringLiteral("Copying..."), preset), preset == Preset::Yes);
    }
}

TEST(QtPrompts, ASignOfWaitingShowsItselfAfterAMomentAndCanBeGivenUp) {
    QtPrompts prompts;
    const std::unique_ptr<WaitingSign> sign = prompts.waitFor(QStringLiteral("/server/<b>stemmen</b>"));
    EXPECT_FALSE(sign->isShown());
    EXPECT_NE(QApplication::overrideCursor(), nullptr); // the first sign of life
    ASSERT_TRUE(QTest::qWaitFor([&] { return sign->isShown(); }, 2000));
    auto *dialog = qobject_cast<QProgressDialog *>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->labelText(),
              QStringLiteral("Wachten op antwoord van de schijf of server:\n/server/<b>stemmen</b>"));
    EXPECT_EQ(dialog->findChild<QLabel *>()->textFormat(), Qt::PlainText);
    EXPECT_FALSE(sign->isGivenUp());
    auto *button = dialog->findChild<QPushButton *>();
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->text(), QStringLiteral("Niet langer wachten"));
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_TRUE(sign->isGivenUp());
}

TEST(QtPrompts, ASignThatIsNotNeededLeavesNothingBehind) {
    { const std::unique_ptr<WaitingSign> sign = QtPrompts().waitFor(QStringLiteral("/server")); }
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    QTest::qWait(400);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

} // namespace orvel
