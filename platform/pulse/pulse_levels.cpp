#include "platform/pulse/pulse_levels.h"

#include <algorithm>
#include <cmath>
#include <pulse/pulseaudio.h>

namespace orvel {
namespace {

constexpr std::int64_t kFull = 65535;

pa_cvolume toServer(const PulseLevels &levels) {
    pa_cvolume volumes{};
    volumes.channels = static_cast<std::uint8_t>(std::min<std::size_t>(levels.volumes.size(), PA_CHANNELS_MAX));
    std::copy_n(levels.volumes.begin(), volumes.channels, volumes.values);
    return volumes;
}

pa_channel_map mapOf(const PulseLevels &levels) {
    pa_channel_map map{};
    map.channels = static_cast<std::uint8_t>(std::min<std::size_t>(levels.positions.size(), PA_CHANNELS_MAX));
    std::transform(levels.positions.begin(), levels.positions.begin() + map.channels, map.map,
                   [](int position) { return static_cast<pa_channel_position_t>(position); });
    return map;
}

PulseLevels fromServer(const pa_cvolume &volumes, const PulseLevels &before) {
    return {{volumes.values, volumes.values + volumes.channels}, before.positions};
}

} // namespace

int PulseLevels::volume() const {
    const auto loudest = std::max_element(volumes.begin(), volumes.end());
    const std::int64_t volume = loudest == volumes.end() ? 0 : *loudest;
    return static_cast<int>(std::min(kFull, (volume * kFull + PA_VOLUME_NORM / 2) / PA_VOLUME_NORM));
}

PulseLevels PulseLevels::withVolume(int volume) const {
    pa_cvolume changed = toServer(*this);
    const std::int64_t wanted = (volume * static_cast<std::int64_t>(PA_VOLUME_NORM) + kFull / 2) / kFull;
    pa_cvolume_scale(&changed, static_cast<pa_volume_t>(wanted));
    return fromServer(changed, *this);
}

bool PulseLevels::canBalance() const {
    const pa_channel_map map = mapOf(*this);
    return pa_channel_map_valid(&map) != 0 && pa_channel_map_can_balance(&map) != 0;
}

int PulseLevels::balance() const {
    if (!canBalance()) {
        return 0;
    }
    const pa_cvolume now = toServer(*this);
    const pa_channel_map map = mapOf(*this);
    return static_cast<int>(std::lround(pa_cvolume_get_balance(&now, &map) * 100));
}

PulseLevels PulseLevels::withBalance(int balance) const {
    if (!canBalance()) {
        return *this;
    }
    pa_cvolume changed = toServer(*this);
    const pa_channel_map map = mapOf(*this);
    pa_cvolume_set_balance(&changed, &map, static_cast<float>(balance) / 100);
    return fromServer(changed, *this);
}

} // namespace orvel
