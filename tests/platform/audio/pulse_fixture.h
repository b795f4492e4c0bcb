#pragma once

#include "platform/pulse/pulse_sound_card.h"
#include "tests/platform/audio/outside_tool.h"
#include "tests/platform/audio/private_pulse.h"
#include "tests/platform/audio/temp_folder.h"

#include <chrono>
#include <gtest/gtest.h>
#include <optional>
#include <thread>

namespace orvel::test {

/// Waits until something is true, ten seconds at most; tells whether it came true.
template <typename Condition>
bool comesTrue(Condition condition) {
    for (int i = 0; i < 1000; ++i) {
        if (condition()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

/// A sound server of the test's own, and a card that is connected to it once the test says so.
class PulseFixture : public testing::Test {
  protected:
    /// A card for what the server has now. The first of the list is chosen, also where it is a monitor.
    SoundCard &connect() {
        card.emplace().audioRecord().setCurrentDevice(1);
        return *card;
    }

    /// A file with a sine of amplitude 0.5; the name's extension tells the kind.
    QString tone(const char *name, const char *seconds, const char *hertz, const char *rate = "44100",
                 const char *channels = "1") {
        QString path = folder.path(name);
        EXPECT_EQ(runTool("sox", {"-n", "-r", rate, "-c", channels, "-b", "16", path, "synth", seconds, "sine", hertz,
                                  "gain", "-6.02"})
                      .exitCode,
                  0);
        return path;
    }

    TempFolder folder;
    PrivatePulse pulse;
    std::optional<PulseSoundCard> card; // gone before the server
};

} // namespace orvel::test
