#pragma once

namespace orvel {

class AudioFiles;
class DatabaseEngine;
class FileSystem;
class Joystick;
class LoudnessMeter;
class Prompts;
class ReportViewer;
class SoundCard;
class Timers;

/// The world as the rooms reach it. The application lends the real one, tests lend fakes; all of it outlives the rooms.
struct Platform {
    SoundCard &sound;
    AudioFiles &audioFiles;
    DatabaseEngine &databases;
    FileSystem &files;
    Prompts &prompts;
    Timers &timers;
    Joystick &joystick;
    ReportViewer &report;
    LoudnessMeter &loudness;
};

} // namespace orvel
