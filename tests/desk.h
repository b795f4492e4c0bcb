#pragma once

#include "platform/fake/fake_database.h"
#include "playlist/completion.h"
#include "playlist/current_step.h"
#include "playlist/playlist.h"
#include "playlist/step_marks.h"
#include "production/filing.h"
#include "production/saving.h"
#include "production/transcode.h"
#include "production/unfinished.h"
#include "recording/catalogues.h"
#include "recording/join_listening.h"
#include "recording/listening.h"
#include "recording/take_session.h"
#include "recording/take_store.h"
#include "recording/talk_along.h"
#include "settings/settings.h"
#include "station/drive_map.h"
#include "station/ignore_errors.h"
#include "station/journal.h"
#include "station/places.h"
#include "station/recovery.h"
#include "tests/test_platform.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvel {

/// The rows of the slots for a link, and where the first one's take and voice track lie.
inline constexpr int link1 = 1;
inline constexpr int link2 = 3;
inline const QString wavOf1 = QStringLiteral("temp/LINK1.wav");
inline const QString mp3Of1 = QStringLiteral("ok/LINK1.mp3");

/// The rooms of a station without any window, on a playlist of six steps: music, slot LINK1, music, slot LINK2, a slot
/// whose name is missing, music.
class Desk : public testing::Test, protected TestPlatform<FakeDatabaseEngine> {
  protected:
    Desk() {
        for (const char *name : {"new", "ok", "temp", "temp2", "journal"}) {
            QDir(folder.path()).mkdir(QString::fromLatin1(name));
        }
        settings.NewPath = places.newFolder();
        settings.OkPath = places.okFolder();
        settings.Countdown = 2;
        databases.setTable(places.newFolder() + QStringLiteral("/avond.mdb"), QStringLiteral("Steps"), header(),
                           {music(1), slot(2, QStringLiteral("LINK1")), music(3), slot(4, QStringLiteral("LINK2")),
                            slot(5, QVariant()), music(6)});
        playlist.open(settings.NewPath, QStringLiteral("avond.mdb"));
        filing.setFormat(mp3Format(2, false));
    }

    static QStringList header() {
        QStringList names;
        for (int column = 0; column < StepColumnCount; ++column) {
            names << QString::fromLatin1(stepField(column).name);
        }
        return names;
    }
    static QVariantList stepRow(int stap, int type, const QVariant &name) {
        return {type != 2, stap, QVariant(), QVariant(), QVariant(), QVariant(), 3,    20,   5000,
                4000,      1,    QVariant(), QVariant(), QVariant(), name,       stap, stap, type};
    }
    static QVariantList music(int stap) { return stepRow(stap, 1, QStringLiteral("NONE")); }
    static QVariantList slot(int stap, const QVariant &name) { return stepRow(stap, 2, name); }

    /// What the grid does when a row becomes the current one.
    void select(int row) {
        shownRow = row;
        if (row == step.row && step.PlaylistTakeRunning) {
            return;
        }
        ignoringErrors([&] { selectStepFile(playlist, row, step); });
        ignoringErrors([&] { showTimes(playlist, row, step); });
        session.stepSelected();
        talkAlong.stepSelected();
    }
    void startTake() {
        session.cmdRec_Click();
        timers.advance(std::int64_t{1000} * (settings.Countdown + 1));
    }
    void record(int milliseconds) {
        startTake();
        sound.deliver(std::int64_t{44100} * milliseconds / 1000);
        timers.advance(milliseconds);
        session.cmdRec_Click();
    }
    [[nodiscard]] QString path(const QString &relative) const { return folder.filePath(relative); }
    [[nodiscard]] bool exists(const QString &relative) const { return QFileInfo::exists(path(relative)); }
    [[nodiscard]] QStringList filesIn(const QString &relative) const {
        return QDir(path(relative)).entryList(QDir::Files);
    }
    [[nodiscard]] bool isMarked(int row) const { return playlist.value(row, ImportedColumn).toBool(); }
    [[nodiscard]] Allowed may() const { return session.allowed(); }

    QTemporaryDir folder;
    Places places{folder.path()};
    Settings settings = [] {
        Settings made;
        made.UseProcessor = true;
        return made;
    }();
    CurrentStep step;
    Recovery recovery{files, folder.path()};
    Journal journal{files, places};
    Playlist playlist{databases, [](const QString &) {}};
    StepMarks marks{playlist, databases, settings.NewPath, [](int) {}};
    QStringList told;
    std::function<void(const QString &)> tell = [this](const QString &sentence) { told << sentence; };
    int shownRow = -1;
    int stationsShown = 0;
    TakeStore takes{files, places, journal, recovery, "wij"};
    std::function<void(const QString &)> process = [](const QString &) {};
    std::function<void()> onChanged = [] {};
    std::function<void(const RecorderStatus &)> onHeard = [](const RecorderStatus &) {};
    std::function<void(const QString &)> onRecorded = [](const QString &) {};
    std::function<EditFacts(const QString &)> edits = [](const QString &) { return EditFacts(); };
    TakeSession session{
        {platform, settings, playlist, step, marks, takes, places, [this](const QString &wav) { process(wav); }, tell,
         [this] { onChanged(); }, [] {}, [](float, float) {}, [this](int row) { select(row); },
         [this](const RecorderStatus &status) { onHeard(status); }, [this](const QString &name) { onRecorded(name); },
         [this](const QString &name) { return edits(name); }, [this](auto moment) { talkAlong.countDownBegan(moment); },
         [this] { return talkAlong.outroBegins(); }, [this] { talkAlong.takeOver(); }}};
    DriveMap drives{files, folder.path()};
    Catalogues catalogues{platform, settings};
    JoinFiles joinFiles{{files, settings, drives, catalogues, playlist, places}};
    std::chrono::microseconds cardDelay{0};
    TalkAlong talkAlong{{platform, settings, step, session.mode, joinFiles, tell, [] {}, [this] { return cardDelay; }}};
    JoinListening joins{{platform, playlist, step, joinFiles, session, [this](int row) { select(row); }, tell}};
    Listening listening{{platform, settings, playlist, step, places, session, [] {}, [](float, float) {}}};
    Completion completion{{platform, settings, playlist, step, recovery, [this] { playlist.refresh(); },
                           [this](int row) { select(row); }, [] {}, [this] { playlist.close(); }, [] {}, tell}};
    std::function<void()> onProgress = [] {};
    Filing filing{{platform, settings, places, recovery, journal, takes, marks, tell,
                   [this](std::optional<int>) { onProgress(); }}};
    Saving saving{
        {platform, settings, places, session, listening, filing, completion, tell, [this] { ++stationsShown; }, [] {}}};
};

} // namespace orvel
