#include "recording/guard.h"

#include <QCoreApplication>

#include <algorithm>

namespace orvel {

namespace {

/// Of a microphone that is there and switched on, in whatever room: 10 steps, -70 dB below full scale.
constexpr float deadLine = 10.0F / 32768;
/// What listeners take for silence: 32 steps, -60 dB.
constexpr float inaudible = 32.0F / 32768;
constexpr std::int64_t deadMs = 1000;
constexpr std::int64_t silentMs = 3000;
/// For words to be read.
constexpr std::int64_t clippingToldMs = 3000;
constexpr std::int64_t takeBytesPerSecond = 88200;
constexpr std::int64_t leastSeconds = 600;

QString translated(const char *text) {
    return QCoreApplication::translate("Guard", text);
}

} // namespace

void Guard::look(const GuardLook &look) {
    const bool begins = look.state != state_;
    if (begins && look.state == SessionState::Recording) {
        clips_.clear();
        clippedUntil_.reset();
        // The three seconds of a take are its own.
        voiceAt_ = look.now;
    }
    state_ = look.state;
    listen(look);
    watchSilence(look);
    watchClipping(look);
}

void Guard::listen(const GuardLook &look) {
    if (look.isFirst || look.peak > deadLine) {
        soundAt_ = look.now;
        isDead_ = false;
    }
    if (look.isFirst || look.peak > inaudible) {
        voiceAt_ = look.now;
    }
}

void Guard::watchSilence(const GuardLook &look) {
    silence_.reset();
    if (look.state == SessionState::CountingDown && look.countdownLeft <= 1) {
        isDead_ = look.now - soundAt_ >= deadMs;
        if (isDead_) {
            silence_ = translated("Er komt geen geluid uit de microfoon.");
        }
    } else if (look.state == SessionState::Recording && (isDead_ || look.now - voiceAt_ >= silentMs)) {
        silence_ = translated("De microfoon is stil: er wordt stilte opgenomen.");
    } else if (look.state != SessionState::Recording) {
        isDead_ = false;
    }
}

void Guard::watchClipping(const GuardLook &look) {
    if (look.clippedAt >= 0) {
        clips_.push_back(static_cast<std::int32_t>(std::min<std::int64_t>(look.clippedAt, INT32_MAX)));
        clippedUntil_ = look.now + clippingToldMs;
    }
    const bool isTold = look.state == SessionState::Recording && clippedUntil_ && look.now < *clippedUntil_;
    clipping_ = isTold ? std::optional(translated("Te luid: het geluid vervormt.")) : std::nullopt;
}

void Guard::card(const QString &chosen, const QString &used) {
    if (chosen.isEmpty() || chosen.simplified() == used.simplified()) {
        card_.reset();
    } else {
        card_ = used.isEmpty() ? translated("De gekozen opnamekaart %1 is er niet.").arg(chosen)
                               : translated("Er wordt opgenomen met %2, niet met %1.").arg(chosen, used);
    }
}

void Guard::disk(std::int64_t freeBytes) {
    const std::int64_t seconds = freeBytes / takeBytesPerSecond;
    if (freeBytes < 0 || seconds >= leastSeconds) {
        disk_.reset();
    } else {
        disk_ = seconds < 60 ? translated("De schijf is vol: nog geen minuut ruimte voor opnames.")
                             : translated("De schijf is bijna vol: nog %1 min ruimte voor opnames.").arg(seconds / 60);
    }
}

void Guard::server(ServerState state, const QString &folder) {
    server_.reset();
    if (state == ServerState::NotWritable) {
        server_ = translated("Op de server kan niet worden bewaard: %1.").arg(folder);
    } else if (state == ServerState::Silent) {
        server_ = translated("De server voor de voicetracks antwoordt niet.");
    }
}

std::vector<Warning> Guard::warnings() const {
    std::vector<Warning> warnings;
    const auto add = [&](Danger danger, const std::optional<QString> &words) {
        if (words) {
            warnings.push_back({danger, *words});
        }
    };
    add(Danger::MicrophoneSilent, silence_);
    add(Danger::OtherCard, card_);
    add(Danger::Clipping, clipping_);
    add(Danger::DiskNearlyFull, disk_);
    add(Danger::ServerNotWritable, server_);
    return warnings;
}

QStringList Guard::sentences() const {
    QStringList sentences;
    for (const Warning &warning : warnings()) {
        sentences << warning.words;
    }
    return sentences;
}

} // namespace orvel
