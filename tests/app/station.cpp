#include "station.h"

namespace orvel {

Station::Station() {
    for (const char *name : {"new", "ok", "temp", "temp2"}) {
        QDir(folder.path()).mkdir(QString::fromLatin1(name));
    }
    static_cast<OrvelApplication *>(QCoreApplication::instance())->setPrompts(prompts);
}

Station::~Station() = default;

void Station::configure(const QString &lines) {
    QFile file(path(QStringLiteral("orvel.ini")));
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write(lines.toUtf8() + '\n');
}

void Station::addPlaylist(const QString &fixture, const QString &name) {
    const QString target = path(QStringLiteral("new/") + (name.isEmpty() ? fixture : name));
    ASSERT_TRUE(QFile::copy(QStringLiteral(ORVEL_SOURCE_DIR "/tests/data/databases/") + fixture, target));
    QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner);
}

bool Station::start(const QString &commandLine) {
    window = std::make_unique<frmMain>(platform, folder.path(), commandLine);
    window->resize(1240, 750); // the screen that is not there is 800 x 800; a presenter's is larger
    window->show();
    const bool goesOn = window->Form_Load();
    if (goesOn) {
        window->showUnfiled();
    }
    return goesOn;
}

void Station::open(const QString &name) {
    const QList<QListWidgetItem *> items = window->panels().filePanel->filNew->findItems(name, Qt::MatchExactly);
    ASSERT_EQ(items.size(), 1) << name.toStdString();
    QListWidget &list = *window->panels().filePanel->filNew;
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(items.first()).center());
}

void Station::mark(int row, bool done) {
    window->workplace().datList.setValue(row, ImportedColumn, done);
    window->panels().gridPanel->showChanged(row);
}

void Station::beginRecording() {
    click(window->panels().recorderPanel->cmdRec);
    timers.advance(std::int64_t{1000} * (window->workplace().settings.Countdown + 1));
}

void Station::record(int milliseconds) {
    beginRecording();
    sound.deliver(std::int64_t{44100} * milliseconds / 1000);
    timers.advance(milliseconds);
    click(window->panels().recorderPanel->cmdRec);
}

QByteArray Station::content(const QString &relative) const {
    QFile file(path(relative));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString Station::output(const QString &program, const QStringList &arguments) {
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput());
}

} // namespace orvel
