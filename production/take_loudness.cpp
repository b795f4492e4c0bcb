#include "production/take_loudness.h"

#include "platform/audio_file.h"
#include "platform/platform.h"
#include "station/ignore_errors.h"

#include <QCoreApplication>
#include <QLocale>

namespace orvel {

void TakeLoudness::measure(const QString &wavPath) {
    known_.remove(wavPath);
    ignoringErrors([&] {
        const std::unique_ptr<AudioFileReader> reader = platform_.audioFiles.reader();
        reader->open(wavPath);
        if (reader->errorState() < 0 || reader->channels() != 1) {
            return;
        }
        LoudnessMeter &meter = platform_.loudness;
        meter.start(reader->sampleRate());
        for (QByteArray block = reader->readBlock(); !block.isEmpty(); block = reader->readBlock()) {
            const auto *first = reinterpret_cast<const std::int16_t *>(block.constData());
            meter.add({first, static_cast<std::size_t>(block.size()) / sizeof(std::int16_t)});
        }
        if (const std::optional<Loudness> result = meter.result()) {
            known_.insert(wavPath, *result);
        }
    });
}

std::optional<Loudness> TakeLoudness::of(const QString &wavPath) const {
    const auto found = known_.constFind(wavPath);
    return found == known_.constEnd() ? std::nullopt : std::optional(found.value());
}

QString toText(const Loudness &loudness) {
    const QLocale dutch(QLocale::Dutch);
    return QCoreApplication::translate("TakeLoudness", "%1 LUFS, piek %2 dBTP")
        .arg(dutch.toString(loudness.lufs, 'f', 1), dutch.toString(loudness.truePeak, 'f', 1));
}

} // namespace orvel
