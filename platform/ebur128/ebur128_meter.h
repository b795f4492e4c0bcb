#pragma once

#include "platform/loudness.h"

#include <memory>

namespace orvel {

/// Measures with libebur128.
class Ebur128Meter : public LoudnessMeter {
  public:
    Ebur128Meter();
    ~Ebur128Meter() override;
    Ebur128Meter(const Ebur128Meter &) = delete;
    Ebur128Meter(Ebur128Meter &&) = delete;
    Ebur128Meter &operator=(const Ebur128Meter &) = delete;
    Ebur128Meter &operator=(Ebur128Meter &&) = delete;

    void start(int sampleRate) override;
    void add(std::span<const std::int16_t> samples) override;
    [[nodiscard]] std::optional<Loudness> result() override;
    [[nodiscard]] std::unique_ptr<LoudnessMeter> another() const override { return std::make_unique<Ebur128Meter>(); }

  private:
    class State;
    std::unique_ptr<State> state_;
};

} // namespace orvel
