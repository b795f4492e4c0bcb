#pragma once

#include "platform/wave_player.h"
#include "settings/settings.h"

namespace orvel {

/// How the context player and the cue player play.
inline PlayerSettings playerSettings(const Settings &settings) {
    return {settings.CCard, settings.Cbuffer_size, settings.CBuffers, settings.CCallBack};
}

} // namespace orvel
