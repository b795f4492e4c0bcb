#include "production/dry_listening.h"

#include "platform/audio_file.h"
#include "platform/file_system.h"
#include "platform/loudness.h"
#include "platform/platform.h"
#include "platform/runtime_error.h"
#include "playlist/current_step.h"
#include "production/comparison.h"
#include "production/take_samples.h"
#include "recording/listening.h"
#include "recording/take_session.h"
#include "recording/take_store.h"
#include "station/ignore_errors.h"
#include "station/places.h"

#include <memory>
#include <new>
#include <utility>

namespace orvel {

namespace {

std::vector<std::int16_t> allSamples(AudioFileReader &reader, const QString &path) {
    std::vector<std::int16_t> samples;
    readSamples(reader, path, samples);
    return samples;
}

} // namespace

/// One comparison: everything that the thread touches is its own.
struct DryListening::Work {
    QString takePath;
    QString dryPath;
    QString file;
    std::unique_ptr<AudioFileReader> take;
    std::unique_ptr<AudioFileReader> dry;
    std::unique_ptr<WavFileWriter> writer;
    std::unique_ptr<LoudnessMeter> meter;
    bool isWhole = false;

    void run(const Aside::Stopped &stopped) {
        try {
            const std::vector<std::int16_t> heard = allSamples(*take, takePath);
            const std::vector<std::int16_t> original = allSamples(*dry, dryPath);
            if (stopped || dry->sampleRate() != take->sampleRate()) {
                return;
            }
            const std::vector<std::int16_t> beside = comparable(heard, original, take->sampleRate(), *meter);
            if (!stopped) {
                writer->create(file, take->sampleRate());
                writer->write(beside);
                writer->close();
                isWhole = true;
            }
        } catch (const RuntimeError &) {
            isWhole = false;
        } catch (const std::bad_alloc &) {
            isWhole = false; // a take of many hours
        }
    }
};

DryListening::DryListening(DryListeningContext context)
    : context_(std::move(context)), aside_(context_.platform.timers) {}

DryListening::~DryListening() {
    aside_.end();
    end();
}

void DryListening::cmdDroog_Click() {
    if (!context_.session.allowed().cmdDroog) {
        return;
    }
    isOn_ = !isOn();
    isReady_ = isReady_ && context_.listening.hasOther();
    if (isReady_) {
        context_.listening.hearOther(isOn_);
    } else if (isOn_ && !aside_.isBusy()) {
        prepare();
    }
    context_.changed();
}

bool DryListening::isOn() const {
    return isOn_ && (!isReady_ || context_.listening.hasOther());
}

void DryListening::prepare() {
    const QString take = context_.step.VoiceTrackName;
    const auto work = std::make_shared<Work>();
    work->takePath = context_.places.take(take);
    work->dryPath = context_.takes.shelf().dry(context_.session.currentTake());
    work->file = context_.places.dryBeside(take);
    work->writer = context_.platform.audioFiles.wavWriter();
    work->meter = context_.platform.loudness.another();
    bool isOpen = false;
    ignoringErrors([&] {
        work->take = openMono(context_.platform, work->takePath);
        work->dry = openMono(context_.platform, work->dryPath);
        isOpen = true;
    });
    if (!isOpen) {
        ready(*work);
        return;
    }
    file_ = work->file;
    aside_.begin([work](const Aside::Stopped &stopped) { work->run(stopped); }, [this, work] { ready(*work); });
}

void DryListening::ready(const Work &work) {
    bool isOpen = false;
    if (work.isWhole) {
        ignoringErrors([&] {
            context_.listening.setOther(work.file);
            isOpen = true;
        });
    }
    if (!isOpen) {
        end();
        context_.tell(tr("De droge opname kan niet worden beluisterd."));
        context_.changed();
        return;
    }
    isReady_ = true;
    context_.listening.hearOther(isOn_);
}

void DryListening::sessionChanged() {
    if (context_.session.state() != SessionState::Listening) {
        end();
    }
}

void DryListening::end() {
    aside_.drop();
    isOn_ = false;
    isReady_ = false;
    if (const QString file = std::exchange(file_, {}); !file.isEmpty()) {
        ignoringErrors([&] {
            if (context_.platform.files.fileExists(file)) {
                context_.platform.files.remove(file);
            }
        });
    }
}

} // namespace orvel
