// The manual: it tells about every window, its words are the program's, and F1 opens it where it is wanted.
#include "program_texts.h"
#include "station.h"
#include "windows/frm_keys.h"
#include "windows/frm_manual.h"
#include "windows/manual_sections.h"

#include <QAction>
#include <QDirIterator>
#include <QRegularExpression>
#include <QShortcut>
#include <QTextBlock>

namespace orvel {

namespace {

constexpr std::array manualDocuments = {"handleiding.md", "beheer.md"};

QString manualDocument(const char *name) {
    return readText(sourceFolder + QStringLiteral("/docs/") + QString::fromLatin1(name));
}

QString manualText() {
    return manualDocument("handleiding.md");
}

QStringList headingAnchors(const QString &markdown) {
    QStringList anchors;
    for (const QString &heading : allMatches(markdown, QStringLiteral("^#+ (.+)$"))) {
        anchors << anchorOfHeading(heading);
    }
    return anchors;
}

/// What stands for a text with places for values: "1 van 3". A short one has single words there.
std::vector<QRegularExpression> withValues(const QSet<QString> &texts) {
    static const QRegularExpression place(QStringLiteral("%\\d"));
    static const QRegularExpression letter(QStringLiteral("[a-z]"));
    std::vector<QRegularExpression> patterns;
    for (const QString &text : texts) {
        const qsizetype letters = QString(text).remove(place).count(letter);
        if (text.contains(place) && letters > 2) {
            QStringList parts;
            for (const QString &part : text.split(place)) {
                parts << QRegularExpression::escape(part);
            }
            const QString value = letters < 12 ? QStringLiteral("\\S+") : QStringLiteral(".+");
            patterns.emplace_back(QRegularExpression::anchoredPattern(parts.join(value)));
        }
    }
    return patterns;
}

std::string inOneLine(const QStringList &names) {
    return names.join(QStringLiteral(", ")).toStdString();
}

class TheManual : public Station {
  protected:
    void openDemo() {
        addPlaylist(demo);
        ASSERT_TRUE(start());
        window->show();
        open(demo);
    }

    /// Presses a key of the main window's list.
    void press(const QKeySequence &key) {
        for (QShortcut *shortcut : window->findChildren<QShortcut *>()) {
            if (shortcut->key() == key) {
                Q_EMIT shortcut->activated();
            }
        }
    }

    /// The manual that belongs to a window.
    static frmManual *manualOf(const QWidget *owner) {
        for (QWidget *one : QApplication::topLevelWidgets()) {
            if (auto *found = qobject_cast<frmManual *>(one); found != nullptr && found->parentWidget() == owner) {
                return found;
            }
        }
        return nullptr;
    }

    /// The heading at the top of what is seen.
    static QString seenAt(const frmManual *shown) {
        if (shown == nullptr || !shown->isVisible()) {
            return QStringLiteral("no manual");
        }
        const int line = shown->fontMetrics().height();
        for (int y = 0; y < 3 * line; y += line / 3) {
            const QTextBlock block = shown->txtManual->cursorForPosition({line * 2, y}).block();
            if (block.blockFormat().headingLevel() > 0) {
                return anchorOfHeading(block.text());
            }
        }
        return QStringLiteral("no heading at the top");
    }

    /// F1 in a window that the main window opened.
    template <class Window>
    QString helpIn() {
        auto *dialog = window->findChild<Window *>();
        if (dialog == nullptr) {
            return QStringLiteral("no window");
        }
        QTest::keyClick(dialog, Qt::Key_F1);
        const QString seen = seenAt(manualOf(dialog));
        dialog->close();
        return seen;
    }
};

} // namespace

TEST_F(TheManual, TellsAboutEveryWindow) {
    QSet<QString> told;
    for (const ManualSection &section : manualSections()) {
        told << QString::fromLatin1(section.className);
    }
    QDirIterator headers(sourceFolder + QStringLiteral("/windows"), {QStringLiteral("*.h")}, QDir::Files);
    QStringList windows;
    while (headers.hasNext()) {
        windows << allMatches(readText(headers.next()), QStringLiteral("^class (frm\\w+) : public"));
    }
    EXPECT_GE(windows.size(), 13) << inOneLine(windows);
    for (const QString &one : windows) {
        EXPECT_TRUE(told.contains(one)) << "the manual says nothing of " << one.toStdString();
    }
}

TEST_F(TheManual, HasEveryPlaceThatTheProgramLeadsTo) {
    const QStringList anchors = headingAnchors(manualDocument("handleiding.md"));
    for (const ManualSection &section : manualSections()) {
        EXPECT_TRUE(anchors.contains(QString::fromLatin1(section.anchor))) << section.anchor;
    }
}

TEST_F(TheManual, LeadsToNoPlaceThatIsNotThere) {
    for (const char *name : manualDocuments) {
        const QString text = manualDocument(name);
        const QStringList anchors = headingAnchors(text);
        EXPECT_EQ(QSet<QString>(anchors.begin(), anchors.end()).size(), anchors.size()) << "two headings of one name";
        const QStringList links = allMatches(text, QStringLiteral("\\]\\(#([^)]+)\\)"));
        EXPECT_GE(links.size(), 10) << name;
        for (const QString &link : links) {
            EXPECT_TRUE(anchors.contains(link)) << name << ": " << link.toStdString();
        }
        for (const QString &other : allMatches(text, QStringLiteral("\\]\\(([^)#]+\\.md)\\)"))) {
            EXPECT_TRUE(QFileInfo::exists(QStringLiteral(":/docs/") + other)) << name << ": " << other.toStdString();
        }
    }
}

TEST_F(TheManual, HasEveryPictureThatItNames) {
    const QStringList named = allMatches(manualText(), QStringLiteral("!\\[[^\\]]+\\]\\(([^)]+)\\)"));
    EXPECT_GE(named.size(), 15);
    for (const QString &picture : named) {
        EXPECT_FALSE(QImage(sourceFolder + QStringLiteral("/docs/") + picture).isNull()) << picture.toStdString();
        EXPECT_FALSE(QImage(QStringLiteral(":/docs/") + picture).isNull())
            << picture.toStdString() << " is not among the program's resources";
    }
    for (const QString &file : QDir(sourceFolder + QStringLiteral("/docs/images")).entryList(QDir::Files)) {
        EXPECT_TRUE(named.contains(QStringLiteral("images/") + file)) << file.toStdString() << " is shown nowhere";
    }
}

TEST_F(TheManual, CallsEverythingWhatTheProgramCallsIt) {
    const QSet<QString> texts = textsOfTheProgram();
    ASSERT_TRUE(texts.contains(QStringLiteral("Bewaar opname")));
    const std::vector<QRegularExpression> patterns = withValues(texts);
    for (const char *name : manualDocuments) {
        const QStringList captions = allMatches(manualDocument(name), QStringLiteral("\\*\\*([^*]+)\\*\\*"));
        EXPECT_GE(captions.size(), 30) << name;
        for (QString caption : captions) {
            caption.replace(u'\n', u' ');
            const bool isKnown = texts.contains(caption) || std::ranges::any_of(patterns, [&caption](const auto &one) {
                                     return one.match(caption).hasMatch();
                                 });
            EXPECT_TRUE(isKnown) << name << ": " << caption.toStdString();
        }
    }
}

TEST_F(TheManual, ListsTheKeysOfTheSheet) {
    openDemo();
    press(Qt::Key_F1);
    const auto *sheet = window->findChild<frmKeys *>();
    ASSERT_NE(sheet, nullptr);
    QStringList rows;
    for (int row = 0; row < sheet->lstKeys->rowCount(); ++row) {
        rows << QStringLiteral("| `%1` | %2 |")
                    .arg(sheet->lstKeys->item(row, 0)->text(), sheet->lstKeys->item(row, 1)->text());
    }
    EXPECT_EQ(allMatches(manualText(), QStringLiteral("^(\\| `[^`]+` \\| .+ \\|)$")), rows);
}

TEST_F(TheManual, IsOpenedFromTheSheetOfKeysAtThePartThatHasTheFocus) {
    openDemo();
    window->panels().gridPanel->dbgLijst->setFocus();
    press(Qt::Key_F1);
    auto *sheet = window->findChild<frmKeys *>();
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(manualOf(window.get()), nullptr);
    click(sheet->findChild<QPushButton *>(QStringLiteral("cmdManual")));
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_EQ(seenAt(manualOf(window.get())), QStringLiteral("de-stappen"));
}

TEST_F(TheManual, FollowsTheFocusOfTheMainWindow) {
    openDemo();
    select(1); // a link, so that its buttons take the focus
    const Panels &panels = window->panels();
    const std::vector<std::pair<QWidget *, QString>> parts = {
        {panels.filePanel->filNew, QStringLiteral("de-lijst-met-playlists")},
        {panels.recorderPanel->cmdRec, QStringLiteral("opnemen")},
        {panels.savePanel->cmdImport, QStringLiteral("bewaren")},
        {panels.tabRec, QStringLiteral("het-hoofdvenster")},
    };
    for (const auto &[part, anchor] : parts) {
        part->setFocus();
        press(QKeySequence(Qt::SHIFT | Qt::Key_F1));
        EXPECT_EQ(seenAt(manualOf(window.get())).toStdString(), anchor.toStdString());
    }
    EXPECT_EQ(window->findChildren<frmManual *>().size(), 1);
}

TEST_F(TheManual, OpensBesideEveryOtherWindowAtItsSection) {
    openDemo();
    window->tlbMain_ButtonClick(2);
    EXPECT_EQ(helpIn<frmImport>(), QStringLiteral("playlists-importeren"));
    window->tlbMain_ButtonClick(3);
    EXPECT_EQ(helpIn<frmExport>(), QStringLiteral("playlists-exporteren"));
    window->tlbMain_ButtonClick(4);
    EXPECT_EQ(helpIn<frmSetup>(), QStringLiteral("instellingen"));
    select(1);
    click(window->panels().savePanel->cmdImport);
    EXPECT_EQ(helpIn<frmConvert>(), QStringLiteral("geluidsbestanden-importeren"));
    Q_EMIT window->panels().filePanel->recoverWanted();
    EXPECT_EQ(helpIn<frmRecover>(), QStringLiteral("herstellen"));
    press(Qt::Key_F1);
    EXPECT_EQ(helpIn<frmKeys>(), QStringLiteral("toetsen"));
}

TEST_F(TheManual, FindsWordsAndGoesOnFromTheBeginning) {
    openDemo();
    press(QKeySequence(Qt::SHIFT | Qt::Key_F1));
    frmManual *shown = manualOf(window.get());
    ASSERT_NE(shown, nullptr);
    shown->txtZoek->setText(QStringLiteral("stroomstoring"));
    for (int times = 0; times < 2; ++times) {
        shown->txtManual->moveCursor(QTextCursor::End);
        QTest::keyClick(shown->txtZoek, Qt::Key_Return);
        EXPECT_EQ(shown->txtManual->textCursor().selectedText(), QStringLiteral("stroomstoring"));
    }
    EXPECT_TRUE(shown->isVisible()) << "Enter looks for the words and closes nothing";
}

TEST_F(TheManual, ShowsItsPicturesNoWiderThanTheWindow) {
    openDemo();
    press(QKeySequence(Qt::SHIFT | Qt::Key_F1));
    frmManual *shown = manualOf(window.get());
    ASSERT_NE(shown, nullptr);
    const QVariant picture = shown->txtManual->document()->resource(QTextDocument::ImageResource,
                                                                    QUrl(QStringLiteral("images/playlist.png")));
    EXPECT_GT(picture.value<QImage>().width(), 400);
    EXPECT_LT(picture.value<QImage>().width(), shown->txtManual->viewport()->width());
}

} // namespace orvel
