#include "shell/shell_copy.h"

#include "platform/file_system.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProgressDialog>

#include <memory>

namespace orvel {

namespace {

/// The progress window of one copy operation. It shows itself when the copy takes longer than half a second.
class ProgressWindow {
  public:
    ProgressWindow(QWidget *owner, const QString &title, int files)
        : dialog_(QObject::tr("Kopiëren"), QObject::tr("Afbreken"), 0, files * stepsPerFile, owner) {
        dialog_.setObjectName(QStringLiteral("ShellCopyProgress"));
        dialog_.setWindowTitle(title);
        dialog_.setMinimumDuration(500);
        dialog_.setAutoClose(false);
        dialog_.setAutoReset(false);
        sincePump_.start();
    }

    void begin(int file, const QString &name) {
        file_ = file;
        dialog_.setLabelText(name);
        dialog_.setValue(file * stepsPerFile);
    }

    /// False when the presenter stopped the copy.
    bool advance(qint64 done, qint64 total) {
        if (sincePump_.elapsed() >= pumpIntervalMs) {
            const qint64 part = total > 0 ? done * stepsPerFile / total : 0;
            dialog_.setValue(file_ * stepsPerFile + static_cast<int>(part));
            QCoreApplication::processEvents();
            sincePump_.restart();
        }
        return !dialog_.wasCanceled();
    }

    [[nodiscard]] bool stopped() const { return dialog_.wasCanceled(); }

  private:
    static constexpr int stepsPerFile = 1000;
    static constexpr qint64 pumpIntervalMs = 16;

    QProgressDialog dialog_;
    QElapsedTimer sincePump_;
    int file_ = 0;
};

struct Request {
    Platform &platform;
    QWidget *owner;
    QString destination;
    bool silent;
    QString title;
};

bool isPattern(const QString &source) {
    const QString name = QFileInfo(source).fileName();
    return name.contains(u'*') || name.contains(u'?');
}

QStringList sourceFiles(const FileSystem &files, const QString &source) {
    if (!isPattern(source)) {
        return files.fileExists(source) ? QStringList{source} : QStringList{};
    }
    const QFileInfo info(source);
    QStringList paths;
    const QStringList names = files.list(info.path(), info.fileName());
    for (const QString &name : names) {
        paths.append(info.path() + QDir::separator() + name);
    }
    return paths;
}

/// Makes the folder that the files go to; false when the presenter does not want it made.
bool provideFolder(const Request &request, const QString &folder) {
    FileSystem &files = request.platform.files;
    if (folder.isEmpty() || files.folderExists(folder)) {
        return true;
    }
    if (!request.silent && !request.platform.prompts.ask(
                               QObject::tr("De map %1 bestaat niet. Wilt U ze maken ?").arg(folder), request.title)) {
        return false;
    }
    files.makeFolder(folder);
    return true;
}

bool mayWrite(const Request &request, const QString &target) {
    return request.silent || !request.platform.files.fileExists(target) ||
           request.platform.prompts.ask(
               QObject::tr("Het bestand %1 bestaat al. Wilt U het overschrijven ?").arg(QFileInfo(target).fileName()),
               request.title);
}

void copyAll(const Request &request, const QStringList &sources, bool intoFolder, ShellCopyResult &result) {
    const QString folder = intoFolder ? request.destination : QFileInfo(request.destination).path();
    if (!provideFolder(request, folder)) {
        return;
    }
    std::unique_ptr<ProgressWindow> window;
    if (!request.silent) {
        window = std::make_unique<ProgressWindow>(request.owner, request.title, static_cast<int>(sources.size()));
    }
    int number = 0;
    for (const QString &source : sources) {
        const QString name = QFileInfo(source).fileName();
        const QString target = intoFolder ? folder + QDir::separator() + name : request.destination;
        if (window) {
            window->begin(number, name);
        }
        ++number;
        if (window && window->stopped()) {
            return;
        }
        const auto progress = [&](qint64 done, qint64 total) { return !window || window->advance(done, total); };
        if (mayWrite(request, target) && request.platform.files.copy(source, target, progress)) {
            ++result.copied;
        }
    }
}

} // namespace

ShellCopyResult ShellCopyFile(Platform &platform, QWidget *Owner, const QString &Source, const QString &Destination,
                              bool Silent, const QString &Title) {
    ShellCopyResult result;
    const Request request{platform, Owner, Destination, Silent, Title};
    try {
        const QStringList sources = sourceFiles(platform.files, Source);
        if (sources.isEmpty()) {
            return result;
        }
        result.skipped = static_cast<int>(sources.size());
        const bool intoFolder = isPattern(Source) || platform.files.folderExists(Destination);
        copyAll(request, sources, intoFolder, result);
    } catch (const RuntimeError &error) {
        platform.prompts.message(QStringLiteral("Error: ") + QString::number(static_cast<int>(error.number())) +
                                     QStringLiteral(". ") + error.description(),
                                 QStringLiteral("ShellCopyFile"), MessageIcon::Exclamation);
    }
    result.skipped -= result.copied;
    return result;
}

} // namespace orvel
