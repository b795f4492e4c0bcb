#include "platform/pulse/pulse_sound_card.h"

#include "platform/card_list.h"
#include "platform/pulse/pulse_player.h"
#include "platform/pulse/pulse_recorder.h"
#include "platform/pulse/pulse_server.h"

namespace orvel {
namespace {

std::vector<Card> cardsOf(const PulseServer &server) {
    std::vector<Card> cards;
    for (const PulseSource &source : server.devices().sources) {
        Card card;
        card.key = QString::fromUtf8(source.name);
        card.name = source.description;
        card.lines = source.ports.isEmpty() ? QStringList{source.description} : source.ports;
        card.activeLine = source.activePort + 1;
        cards.push_back(card);
    }
    return cards;
}

} // namespace

class PulseSoundCard::Impl {
  public:
    Impl()
        : cards([this] {
              server.retry();
              return cardsOf(server);
          }),
          recorder(server, cards), player(server, cards) {}

    // Each uses those before it.
    PulseServer server;
    CardList cards;
    PulseRecorder recorder;
    PulsePlayer player;
};

PulseSoundCard::PulseSoundCard() : impl_(std::make_unique<Impl>()) {}
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

} // namespace orvel
