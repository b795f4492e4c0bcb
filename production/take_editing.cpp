#include "production/take_editing.h"

#include "dsp/cutting.h"
#include "platform/audio_file.h"
#include "platform/file_system.h"
#include "platform/platform.h"
#include "platform/runtime_error.h"
#include "production/aside.h"
#include "production/take_samples.h"
#include "station/ignore_errors.h"
#include "station/places.h"
#include "station/recovery.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QRegularExpression>

#include <utility>

namespace orvel {

namespace {

QString lastEdit(const auto &steps) {
    return steps.empty() ? QString() : steps.back().edit;
}

} // namespace

TakeEdit trimBoth(std::size_t begin, std::size_t end) {
    return {QCoreApplication::translate("TakeEditing", "Begin en einde bijgesneden"),
            [begin, end](TakeEdit::Samples samples, int sampleRate) {
                keepOnly(samples, begin, end, sampleRate);
                return samples;
            }};
}

bool TakeEditing::apply(const QString &take, const TakeEdit &edit) {
    const QString path = places_.take(take);
    const auto reader = openMono(platform_, path);
    TakeEdit::Samples before;
    readSamples(*reader, path, before);
    const int sampleRate = reader->sampleRate();
    reader->close();
    TakeEdit::Samples after;
    whileWindowLives([&] { after = edit.apply(before, sampleRate); });
    if (after.empty() || after == before) {
        return false;
    }
    const QString output = places_.stageOutput(take);
    // An earlier run was broken off where this file was all there was of a take.
    if (platform_.files.fileExists(output)) {
        recovery_.keep(output);
    }
    write(output, after, sampleRate);
    History &history = histories_[take];
    const QString kept = newVersion(take, history);
    try {
        replace(take, output, kept);
    } catch (const RuntimeError &) {
        ignoringErrors([&] { platform_.files.remove(output); });
        throw;
    }
    removeAll(history.undone);
    history.done.push_back({edit.name, kept});
    if (history.done.size() > mostSteps) {
        ignoringErrors([&] { recovery_.keep(history.done.front().file); });
        history.done.erase(history.done.begin());
    }
    return true;
}

void TakeEditing::write(const QString &file, const TakeEdit::Samples &samples, int sampleRate) {
    const auto writer = platform_.audioFiles.wavWriter();
    try {
        writer->create(file, sampleRate);
        writer->write(samples);
        writer->close();
    } catch (const RuntimeError &) {
        ignoringErrors([&] { writer->close(); });
        ignoringErrors([&] { platform_.files.remove(file); });
        throw;
    }
}

/// A file takes the take's place as one step; the take of before stays under the other name.
void TakeEditing::replace(const QString &take, const QString &file, const QString &kept) {
    platform_.files.link(places_.take(take), kept);
    try {
        platform_.files.move(file, places_.take(take));
    } catch (const RuntimeError &) {
        ignoringErrors([&] { platform_.files.remove(kept); });
        throw;
    }
}

QString TakeEditing::newVersion(const QString &take, History &history) const {
    for (;;) {
        const QString file = places_.takeVersion(take, ++history.lastNumber);
        if (!platform_.files.fileExists(file)) {
            return file;
        }
    }
}

QString TakeEditing::undoable(const QString &take) const {
    return lastEdit(histories_.value(take).done);
}

QString TakeEditing::redoable(const QString &take) const {
    return lastEdit(histories_.value(take).undone);
}

void TakeEditing::undo(const QString &take) {
    History &history = histories_[take];
    step(take, history, history.done, history.undone);
}

void TakeEditing::redo(const QString &take) {
    History &history = histories_[take];
    step(take, history, history.undone, history.done);
}

void TakeEditing::step(const QString &take, History &history, std::vector<Step> &from, std::vector<Step> &to) {
    if (from.empty()) {
        return;
    }
    const QString kept = newVersion(take, history);
    replace(take, from.back().file, kept);
    to.push_back({from.back().edit, kept});
    from.pop_back();
}

void TakeEditing::removeAll(std::vector<Step> &steps) {
    for (const Step &step : std::exchange(steps, {})) {
        ignoringErrors([&] { platform_.files.remove(step.file); });
    }
}

void TakeEditing::forget(const QString &take) {
    History history = histories_.take(take);
    if (!history.done.empty()) {
        ignoringErrors([&] { recovery_.keep(history.done.front().file); });
        history.done.erase(history.done.begin());
    }
    removeAll(history.done);
    removeAll(history.undone);
}

void keepVersions(FileSystem &files, const Places &places, Recovery &recovery, const QString &take) {
    const QString pattern = QFileInfo(places.takeVersion(take, 0)).fileName();
    static const QRegularExpression number(QStringLiteral("\\.versie-\\d+\\.wav$"));
    const QString start = pattern.left(pattern.indexOf(number));
    for (const QString &name : files.list(places.temp2Folder(), QStringLiteral("*.wav"))) {
        if (name.startsWith(start) && name.indexOf(number) == start.size()) {
            ignoringErrors([&] { recovery.keep(QFileInfo(places.takeVersion(take, 0)).path() + u'/' + name); });
        }
    }
}

} // namespace orvel
