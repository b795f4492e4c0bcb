// Speed of the database reader beside mdb-export, the usual tool for these files: whole opening of a playlist with all
// of its values against a whole run of the tool, and look-ups in a large catalogue. Prints one line a comparison.
//   bench_jet [playlist [catalogue]]      a catalogue may be packed (.xz)
#include "platform/jet/jet_engine.h"
#include "platform/runtime_error.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

using namespace orvel;

/// Median time of some runs, in milliseconds.
double medianMs(int runs, const std::function<void()> &work) {
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        QElapsedTimer timer;
        timer.start();
        work();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    std::ranges::sort(times);
    return times[times.size() / 2];
}

void runTool(const QString &program, const QStringList &arguments, const QString &output = QProcess::nullDevice()) {
    QProcess process;
    process.setStandardOutputFile(output);
    process.start(program, arguments);
    if (!process.waitForFinished(-1) || process.exitCode() != 0) {
        qFatal("%s failed", qPrintable(program));
    }
}

qint64 readAll(RecordSet &rows) {
    qint64 values = 0;
    for (int row = 0; row < rows.recordCount(); ++row) {
        for (int column = 0; column < rows.fieldCount(); ++column) {
            values += rows.value(row, column).isNull() ? 0 : 1;
        }
    }
    return values;
}

void compare(const char *what, double ours, double theirs) {
    std::printf("%-58s %9.3f ms  mdb-export %9.3f ms  ratio %.3f  %s\n", what, ours, theirs, ours / theirs,
                ours <= theirs ? "ok" : "SLOWER");
}

void benchPlaylist(const QString &path) {
    const double ours = medianMs(51, [&] {
        const auto rows = JetEngine().open(path)->query(QStringLiteral("SELECT * FROM Steps ORDER BY [Stap]"));
        if (readAll(*rows) == 0) {
            qFatal("no values");
        }
    });
    compare("playlist: open, sort, read every value", ours, medianMs(51, [&] {
                runTool(QStringLiteral("mdb-export"), {path, QStringLiteral("Steps")});
            }));
}

void benchCatalogue(const QString &path) {
    const QString statement = QStringLiteral("SELECT * From Audio ORDER BY TrackNr");
    const double ours = medianMs(7, [&] {
        if (!JetEngine().open(path)->query(statement)->findFirst(QStringLiteral("tracknr=77777"))) {
            qFatal("track not found");
        }
    });
    compare("catalogue: open, sort, first look-up", ours, medianMs(7, [&] {
                runTool(QStringLiteral("mdb-export"), {path, QStringLiteral("Audio")});
            }));

    const auto rows = JetEngine().open(path)->query(statement);
    rows->findFirst(QStringLiteral("tracknr=1"));
    const int paths = rows->fieldIndex(QStringLiteral("path"));
    double slowest = 0;
    QElapsedTimer timer;
    constexpr int lookUps = 20000;
    timer.start();
    for (int i = 0; i < lookUps; ++i) {
        const qint64 start = timer.nsecsElapsed();
        rows->findFirst(QStringLiteral("tracknr=%1").arg((i * 7919LL) % rows->recordCount()));
        (void)rows->field(paths);
        slowest = std::max(slowest, static_cast<double>(timer.nsecsElapsed() - start) / 1e6);
    }
    const double mean = static_cast<double>(timer.nsecsElapsed()) / 1e6 / lookUps;
    std::printf("catalogue: later look-ups, with the path read   mean %.5f ms  slowest of %d %.3f ms  limit 1 ms  %s\n",
                mean, lookUps, slowest, mean < 1 ? "ok" : "SLOWER");
}

/// The path of the catalogue itself, unpacked into the folder where needed.
QString unpacked(const QString &path, const QTemporaryDir &folder) {
    if (!path.endsWith(QStringLiteral(".xz"))) {
        return path;
    }
    const QString target = folder.filePath(QStringLiteral("catalogue.mdb"));
    runTool(QStringLiteral("xz"), {QStringLiteral("-dc"), path}, target);
    return target;
}

} // namespace

int main(int argc, char **argv) {
    const QString source = QStringLiteral(ORVEL_SOURCE_DIR);
    const QString playlist =
        argc > 1 ? QString::fromLocal8Bit(argv[1]) : source + QStringLiteral("/tests/data/databases/steps-150.mdb");
    const QString catalogue =
        argc > 2 ? QString::fromLocal8Bit(argv[2]) : source + QStringLiteral("/../shared/bench/digital-100k.mdb.xz");
    try {
        benchPlaylist(playlist);
        if (!QFileInfo::exists(catalogue)) {
            std::printf("catalogue: %s is not here, left out\n", qPrintable(catalogue));
            return 0;
        }
        const QTemporaryDir folder;
        benchCatalogue(unpacked(catalogue, folder));
    } catch (const RuntimeError &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
