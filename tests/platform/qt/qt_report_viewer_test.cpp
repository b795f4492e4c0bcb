// The print preview: where the presenter saves a running order as a PDF file.
#include "platform/fake/fake_prompts.h"
#include "platform/qt/disk_file_system.h"
#include "platform/qt/qt_report_viewer.h"
#include "tests/platform/audio/temp_folder.h"
#include "tests/platform/qt/when_open.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QPrintPreviewDialog>
#include <QTest>

namespace orvel {

namespace {

const QString title = QStringLiteral("Playlist ochtend.mdb");
const QString html = QStringLiteral("<p>De laatste tram</p>");

/// Opens the preview, presses the button and saves under a name.
void saveAs(QtReportViewer &viewer, const QString &path) {
    whenOpen<QPrintPreviewDialog>([&](QPrintPreviewDialog &preview) {
        EXPECT_EQ(preview.windowTitle(), title);
        whenOpen<QFileDialog>([&](QFileDialog &box) {
            EXPECT_EQ(QFileInfo(box.selectedFiles().value(0)).fileName(), QStringLiteral("Playlist ochtend.pdf"));
            auto *name = box.findChild<QLineEdit *>();
            name->setText(path);
            QTest::keyClick(name, Qt::Key_Return);
        });
        auto *button = preview.findChild<QAction *>(QStringLiteral("cmdPdf"));
        ASSERT_NE(button, nullptr);
        button->trigger();
        preview.reject();
    });
    viewer.preview(title, html);
}

} // namespace

TEST(QtReportViewer, ThePreviewSavesAPdfFile) {
    const test::TempFolder folder;
    FakePrompts prompts;
    DiskFileSystem disk;
    QtReportViewer viewer(prompts, disk);
    saveAs(viewer, folder.path("draaiorde"));
    const QByteArray pdf = test::contentOf(folder.path("draaiorde.pdf"));
    EXPECT_TRUE(pdf.startsWith("%PDF"));
    EXPECT_TRUE(pdf.contains("%%EOF"));
}

TEST(QtReportViewer, ACancelledSaveWritesNothing) {
    const test::TempFolder folder;
    FakePrompts prompts;
    DiskFileSystem disk;
    QtReportViewer viewer(prompts, disk);
    whenOpen<QPrintPreviewDialog>([&](QPrintPreviewDialog &preview) {
        whenOpen<QFileDialog>([](QFileDialog &box) { QTest::keyClick(&box, Qt::Key_Escape); });
        preview.findChild<QAction *>(QStringLiteral("cmdPdf"))->trigger();
        preview.reject();
    });
    viewer.preview(title, html);
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

TEST(QtReportViewer, ASaveThatFailsIsToldInTheWindow) {
    FakePrompts prompts;
    DiskFileSystem disk;
    QtReportViewer viewer(prompts, disk);
    const QString path = QStringLiteral("/proc/draaiorde.pdf"); // where nobody can make a file
    prompts.expectReport(path + QStringLiteral(" kon niet worden geschreven."));
    saveAs(viewer, path);
    EXPECT_EQ(prompts.open(), 0U);
}

} // namespace orvel
