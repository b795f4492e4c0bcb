#pragma once

#include "platform/ebur128/ebur128_meter.h"
#include "platform/fake/fake_audio_files.h"
#include "platform/fake/fake_joystick.h"
#include "platform/fake/fake_prompts.h"
#include "platform/fake/fake_report_viewer.h"
#include "platform/fake/fake_sound_card.h"
#include "platform/fake/faulty_file_system.h"
#include "platform/fake/manual_timers.h"
#include "platform/lame/system_audio_files.h"
#include "platform/platform.h"
#include "platform/qt/disk_file_system.h"

namespace orvel {

/// The world of a test: the real disk and encoder behind faults, and a sound card, a clock and questions worked by
/// hand. Databases: the engine; Files: the disk with its faults.
template <class Databases, class Files = FaultyFileSystem>
struct TestPlatform {
    DiskFileSystem disk;
    Files files{disk};
    FakePrompts prompts;
    ManualTimers timers;
    FakeSoundCard sound;
    FakeJoystick joystick;
    FakeReportViewer report;
    Databases databases;
    SystemAudioFiles realAudioFiles;
    FakeAudioFiles audioFiles{realAudioFiles};
    Ebur128Meter loudness;
    Platform platform{sound, audioFiles, databases, files, prompts, timers, joystick, report, loudness};
};

} // namespace orvel
