#include "station/shell_copy.h"

#include "platform/file_system.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>
#include <memory>

namespace orvel {

namespace {

/// The progress window of one copy operation. It shows itself when copying, without the time that questions are open,
/// takes longer than half a second.
class Progress {
  public:
    Progress(Prompts &prompts, QString title, int files) : prompts_(prompts), title_(std::move(title)), files_(files) {}

    void begin(int file, const QString &name) {
        file_ = file;
        name_ = name;
        sincePump_.start();
    }

    /// False when the presenter stopped the copy.
    bool advance(qint64 done, qint64 total) {
        const qint64 elapsed = sincePump_.elapsed();
        if (elapsed < pumpIntervalMs) {
            return true;
        }
        copyingMs_ += elapsed;
        if (copyingMs_ >= quietMs && !sign_) {
            sign_ = prompts_.progress(title_, files_ * stepsPerFile);
        }
        if (sign_) {
            sign_->advance(name_,
                           file_ * stepsPerFile + static_cast<int>(done * stepsPerFile / std::max<qint64>(total, 1)));
        }
        // Without the window nothing keeps the presenter from other controls: clicks wait until it is there.
        QCoreApplication::processEvents(sign_ ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
        sincePump_.start();
        return !stopped();
    }

    [[nodiscard]] bool stopped() const { return sign_ && sign_->isStopped(); }

  private:
    static constexpr int stepsPerFile = 1000;
    static constexpr qint64 pumpIntervalMs = 16;
    static constexpr qint64 quietMs = 500;

    Prompts &prompts_;
    QString title_;
    int files_;
    int file_ = 0;
    QString name_;
    qint64 copyingMs_ = 0;
    QElapsedTimer sincePump_;
    std::unique_ptr<ProgressSign> sign_;
};

struct Request {
    Platform &platform;
    QString destination;
    bool silent;
    QString title;
    const CopyWatch &watch;
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
                               QObject::tr("De map %1 bestaat niet. Wilt U ze maken ?").arg(folder), request.title,
                               Preset::No, {QObject::tr("&Maak de map"), QObject::tr("Maak &geen map")})) {
        return false;
    }
    files.makeFolder(folder);
    return true;
}

bool mayOverwrite(const Request &request, const QString &target) {
    const QString question = QObject::tr("Het bestand %1 bestaat al. Wilt U het overschrijven ?");
    return (request.silent ||
            request.platform.prompts.ask(question.arg(QFileInfo(target).fileName()), request.title, Preset::No,
                                         {QObject::tr("&Overschrijf"), QObject::tr("&Laat staan")})) &&
           (!request.watch.mayOverwrite || request.watch.mayOverwrite(target));
}

/// One file under the progress window; false when it was passed over or stopped.
bool copyOne(const Request &request, Progress &progress, int number, const QString &source, const QString &target) {
    const bool replaces = request.platform.files.fileExists(target);
    if (replaces && !mayOverwrite(request, target)) {
        return false;
    }
    progress.begin(number, QFileInfo(source).fileName());
    const auto advance = [&](qint64 done, qint64 total) { return request.silent || progress.advance(done, total); };
    const bool copied = request.platform.files.copy(source, target, advance);
    if (copied && request.watch.fileCopied) {
        request.watch.fileCopied(target, replaces);
    }
    return copied;
}

/// The copies one after the other. The result is right at every moment, as a copy may throw.
void copyAll(const Request &request, const QStringList &sources, bool intoFolder, ShellCopyResult &result) {
    const QString folder = intoFolder ? request.destination : QFileInfo(request.destination).path();
    if (!provideFolder(request, folder)) {
        return;
    }
    Progress progress(request.platform.prompts, request.title, static_cast<int>(sources.size()));
    for (int number = 0; number < sources.size() && !progress.stopped(); ++number) {
        const QString &source = sources.at(number);
        const QString name = QFileInfo(source).fileName();
        const QString target = intoFolder ? folder + QDir::separator() + name : request.destination;
        if (copyOne(request, progress, number, source, target)) {
            ++result.copied;
            --result.skipped;
        }
        if (request.watch.fileDone) {
            request.watch.fileDone();
        }
    }
    result.stopped = progress.stopped();
}

} // namespace

ShellCopyResult Global::ShellCopyFile(Platform &platform, const QString &Source, const QString &Destination,
                                      bool Silent, const QString &Title, const CopyWatch &watch) {
    ShellCopyResult result;
    const Request request{platform, Destination, Silent, Title, watch};
    try {
        const QStringList sources = sourceFiles(platform.files, Source);
        if (sources.isEmpty()) {
            return result;
        }
        result.skipped = static_cast<int>(sources.size());
        result.stopped = true;
        const bool intoFolder =
            isPattern(Source) || Destination.endsWith(QDir::separator()) || platform.files.folderExists(Destination);
        copyAll(request, sources, intoFolder, result);
    } catch (const RuntimeError &error) {
        platform.prompts.message(QStringLiteral("Error: ") + QString::number(static_cast<int>(error.number())) +
                                     QStringLiteral(". ") + error.description() + QStringLiteral("\n\n") +
                                     (error.file().isEmpty() ? Destination : error.file()),
                                 QStringLiteral("ShellCopyFile"), MessageIcon::Exclamation);
    }
    return result;
}

} // namespace orvel
