// No English in a Dutch window: Qt's Dutch translation has holes.
#include "app/dutch_texts.h"
#include "platform/fake/fake_prompts.h"
#include "platform/qt/disk_file_system.h"
#include "platform/qt/qt_prompts.h"
#include "platform/qt/qt_report_viewer.h"
#include "tests/platform/qt/when_open.h"

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QFileDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressDialog>
#include <QPushButton>
#include <QRegularExpression>
#include <QSpinBox>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace orvel {

namespace {

/// Words that Qt's dialogs have in English and that are no Dutch.
QRegularExpression english() {
    static const QRegularExpression words(
        QStringLiteral(
            "\\b(about|add|all|automatic|back|big|binding|blue|bottom|brightness|cancel|choose|clear|close|color|"
            "colors|colour|colours|copies|copy|create|current|custom|cut|date|delete|detail|details|directory|double|"
            "down|drive|duplex|edit|envelope|fan-fold|file|files|fit|folder|forward|from|german|go|grayscale|"
            "green|"
            "height|hide|home|hue|inches|insert|kind|landscape|last|left|list|long|look|margins|millimeters|modified|"
            "name|new|next|none|odd|off|open|options|order|orientation|output|page|pages|parent|paste|pick|points|"
            "portrait|preview|previous|print|printing|properties|range|red|redo|rename|retry|reverse|right|save|"
            "saturation|screen|search|select|selection|setup|sheet|short|shortcut|show|side|sided|size|small|source|"
            "the|"
            "this|to|undo|unknown|up|user|value|view|width|yes|zoom)\\b"),
        QRegularExpression::CaseInsensitiveOption);
    return words;
}

class Texts {
  public:
    void collect(const QWidget &window) {
        QList<const QWidget *> widgets{&window};
        for (const QWidget *child : window.findChildren<QWidget *>()) {
            widgets << child;
        }
        for (const QWidget *widget : widgets) {
            add(widget->windowTitle());
            add(widget->toolTip());
            addOf(*widget);
            for (const QAction *action : widget->actions()) {
                add(action->text());
                add(action->toolTip());
            }
        }
    }
    [[nodiscard]] const QStringList &all() const { return all_; }

  private:
    void add(QString text) {
        // "&" marks the key to press, wherever it stands in the word; paths and formats are data.
        text.remove(u'&');
        if (!text.contains(u'/') && !all_.contains(text)) {
            all_ << text;
        }
    }
    void addOf(const QWidget &widget) {
        if (const auto *label = qobject_cast<const QLabel *>(&widget)) {
            add(label->text());
        } else if (const auto *button = qobject_cast<const QAbstractButton *>(&widget)) {
            add(button->text());
        } else if (const auto *group = qobject_cast<const QGroupBox *>(&widget)) {
            add(group->title());
        } else if (const auto *combo = qobject_cast<const QComboBox *>(&widget)) {
            for (int index = 0; index < combo->count(); ++index) {
                add(combo->itemText(index));
            }
        } else if (const auto *tabs = qobject_cast<const QTabWidget *>(&widget)) {
            for (int index = 0; index < tabs->count(); ++index) {
                add(tabs->tabText(index));
            }
        } else if (const auto *view = qobject_cast<const QAbstractItemView *>(&widget)) {
            addView(*view);
        } else if (const auto *edit = qobject_cast<const QLineEdit *>(&widget)) {
            const std::unique_ptr<QMenu> menu(const_cast<QLineEdit *>(edit)->createStandardContextMenu());
            for (const QAction *action : menu->actions()) {
                add(action->text().section(u'\t', 0, 0));
            }
        }
    }
    void addView(const QAbstractItemView &view) {
        const QAbstractItemModel *model = view.model();
        for (int column = 0; model != nullptr && column < model->columnCount(); ++column) {
            add(model->headerData(column, Qt::Horizontal).toString());
            for (int row = 0; row < model->rowCount(view.rootIndex()); ++row) {
                add(model->index(row, column, view.rootIndex()).data().toString());
            }
        }
    }

    QStringList all_;
};

class Dutch : public testing::Test {
  protected:
    Dutch() { speakDutch(translators); }

    /// Reads the modal dialog that the action opens, and closes it.
    template <class Action>
    void read(Action open) {
        bool wasOpen = false;
        whenOpen<QDialog>([&](QDialog &dialog) {
            wasOpen = true;
            QTest::qWait(50); // folders are read behind the window
            texts.collect(dialog);
            dialog.reject();
        });
        open();
        EXPECT_TRUE(wasOpen);
    }
    void readWindow(QWidget &window) {
        window.show();
        QTest::qWait(50);
        texts.collect(window);
    }

    QObject translators;
    Texts texts;
};

} // namespace

TEST_F(Dutch, EveryStandardDialogThatOpensIsInDutch) {
    QTemporaryDir folder;
    QDir(folder.path()).mkdir(QStringLiteral("opnamen"));
    QFile::link(folder.filePath(QStringLiteral("nergens")), folder.filePath(QStringLiteral("weg")));
    QtPrompts prompts;
    read([&] { prompts.saveFileName(QStringLiteral("Bewaar"), folder.filePath(QStringLiteral("x.mp3"))); });
    read([&] { prompts.folder(QStringLiteral("Kies een map"), folder.path()); });
    read([&] { prompts.colour(0); });
    read([&] { prompts.input(QStringLiteral("Naam"), QStringLiteral("Bestandsnaam")); });
    read([&] { prompts.ask(QStringLiteral("Goed zo ?"), QStringLiteral("Vraag")); });
    read([&] { prompts.message(QStringLiteral("Bericht"), QStringLiteral("Foutmelding"), MessageIcon::Critical); });
    FakePrompts noPrompts;
    DiskFileSystem disk;
    QtReportViewer viewer(noPrompts, disk);
    read([&] { viewer.preview(QStringLiteral("Playlist"), QStringLiteral("<p>regel</p>")); });
    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    QPrintDialog print(&printer);
    readWindow(print);
    QPageSetupDialog pages(&printer);
    readWindow(pages);
    QFileDialog details(nullptr, QStringLiteral("Bewaar"), folder.path());
    details.setViewMode(QFileDialog::Detail);
    readWindow(details);
    EXPECT_GT(texts.all().size(), 150) << "the dialogs were not read";
    for (const QString &text : texts.all()) {
        EXPECT_FALSE(english().match(text).hasMatch()) << text.toStdString();
    }
}

} // namespace orvel
