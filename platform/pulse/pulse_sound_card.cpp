#include "platform/pulse/pulse_sound_card.h"

#include "platform/card_list.h"
#include "platform/pulse/pulse_player.h"
#include "platform/pulse/pulse_recorder.h"
#include "platform/pulse/pulse_server.h"
#include "platform/runtime_error.h"

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

namespace {

class NoMixer : public LineMixer {
  public:
    [[nodiscard]] LineState state(const QString &, int) const override { return {}; }
    void setVolume(const QString &, int, int) override {}
    void setBalance(const QString &, int, int) override {}
    void select(const QString &, int, bool) override {}
    [[nodiscard]] std::vector<LineProperty> properties(const QString &, int) const override { return {}; }
    void setProperty(const QString &, int, const QString &, const QVariant &) override {}
};

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
    NoMixer mixer;
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
std::unique_ptr<WavePlayer> PulseSoundCard::makePlayer() {
    throw RuntimeError(ErrorNumber::InternalError);
}
QStringList PulseSoundCard::outputNames() const {
    return {};
}

} // namespace orvel
