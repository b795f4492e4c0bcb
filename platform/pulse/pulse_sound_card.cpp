#include "platform/pulse/pulse_sound_card.h"

#include "platform/card_list.h"
#include "platform/pulse/pulse_join_player.h"
#include "platform/pulse/pulse_mixer.h"
#include "platform/pulse/pulse_player.h"
#include "platform/pulse/pulse_recorder.h"
#include "platform/pulse/pulse_server.h"
#include "platform/pulse/pulse_wave_player.h"

namespace orvel {
namespace {

std::vector<Card> cardsOf(const PulseServer &server) {
    std::vector<Card> cards;
    for (const PulseSource &source : server.devices().sources) {
        Card card;
        card.key = QString::fromUtf8(source.name);
        card.name = source.description;
        for (const PulsePort &port : source.ports) {
            card.lines << port.description;
        }
        if (card.lines.isEmpty()) {
            card.lines << source.description;
        }
        card.activeLine = source.activePort + 1;
        card.isMonitor = source.isMonitor;
        cards.push_back(card);
    }
    return cards;
}

} // namespace

class PulseSoundCard::Impl {
  public:
    Impl()
        : cards(
              [this] {
                  server.retry();
                  return cardsOf(server);
              },
              mixer),
          recorder(server, cards), player(server, cards) {}

    // Each uses those before it.
    PulseServer server;
    PulseMixer mixer{server};
    CardList cards;
    PulseRecorder recorder;
    PulsePlayer player;
};

PulseSoundCard::PulseSoundCard(FileWork open) : impl_(std::make_unique<Impl>()), open_(std::move(open)) {}
PulseSoundCard::~PulseSoundCard() = default;

AudioRecord &PulseSoundCard::audioRecord() {
    return impl_->cards;
}
WaveRecorder &PulseSoundCard::recorder() {
    return impl_->recorder;
}
AudioPlayer &PulseSoundCard::audioPlayer() {
    return impl_->player;
}
std::unique_ptr<WavePlayer> PulseSoundCard::makePlayer() {
    return std::make_unique<PulseWavePlayer>(impl_->server, open_);
}
std::unique_ptr<JoinPlayer> PulseSoundCard::makeJoinPlayer() {
    return std::make_unique<PulseJoinPlayer>(impl_->server);
}
QStringList PulseSoundCard::outputNames() const {
    QStringList names;
    for (const PulseSink &sink : impl_->server.devices().sinks) {
        names << sink.description;
    }
    tellApart(names);
    return names;
}

} // namespace orvel
