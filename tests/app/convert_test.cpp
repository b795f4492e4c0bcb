// Voice tracks from ready-made sound files.
#include "station.h"

#include <QTimer>

#include <algorithm>

namespace orvel {

namespace {

const QString wrongCount = QStringLiteral("Aantal bestanden stemt niet overeen met aantal bestanden !");

class Convert : public Station {
  protected:
    Convert() { QDir(folder.path()).mkdir(QStringLiteral("geluid")); }

    /// A sound file of a tone with this frequency, to tell files apart; options: sox's, of the file.
    void makeSound(const QString &name, int frequency, double seconds = 1.0, const QStringList &options = {}) {
        QStringList arguments = {QStringLiteral("-n"), QStringLiteral("-r"), QStringLiteral("44100"),
                                 QStringLiteral("-c"), QStringLiteral("1")};
        if (!options.isEmpty()) {
            arguments = QStringList{QStringLiteral("-n")} + options;
        }
        arguments << path(QStringLiteral("geluid/") + name) << QStringLiteral("synth") << QString::number(seconds)
                  << QStringLiteral("sine") << QString::number(frequency) << QStringLiteral("vol")
                  << QStringLiteral("0.5");
        output(QStringLiteral("sox"), arguments);
        ASSERT_TRUE(exists(QStringLiteral("geluid/") + name)) << name.toStdString();
    }
    void openConvert(const QString &fixture = QStringLiteral("access-2003.mdb"), const QString &settings = {}) {
        configure(settings);
        addPlaylist(fixture, QStringLiteral("lijst.mdb"));
        ASSERT_TRUE(start());
        open(QStringLiteral("lijst.mdb"));
        for (int row = 0; row < window->workplace().datList.stepCount(); ++row) {
            if (window->workplace().datList.value(row, TypeColumn).toInt() == PresStep) {
                slots_ << row;
                names << window->workplace().datList.value(row, AtrackColumn).toString();
            }
        }
        ASSERT_FALSE(slots_.isEmpty());
        select(slots_.first());
        openWindow();
    }
    void openWindow() {
        click(window->panels().savePanel->cmdImport);
        convert = window->findChild<frmConvert *>();
        ASSERT_NE(convert, nullptr);
        convert->browser->setFolder(path(QStringLiteral("geluid")));
    }
    void choose(const QString &name) {
        const auto found = convert->browser->File1->findItems(name, Qt::MatchExactly);
        ASSERT_EQ(found.size(), 1) << name.toStdString();
        convert->browser->File1->setCurrentItem(found.first());
    }
    [[nodiscard]] QString track(int slot) const {
        return QStringLiteral("ok/") + names.at(slot) + QStringLiteral(".mp3");
    }
    [[nodiscard]] QString probe(const QString &file) const {
        return output(QStringLiteral("ffprobe"),
                      {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-show_entries"),
                       QStringLiteral("stream=codec_name,sample_rate,channels,bit_rate"), QStringLiteral("-of"),
                       QStringLiteral("default=nw=1:nk=1"), path(file)})
            .simplified();
    }
    /// The tone in a sound file, Hz.
    [[nodiscard]] int tone(const QString &file) const {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral("sox"), {path(file), QStringLiteral("-n"), QStringLiteral("remix"),
                                              QStringLiteral("1"), QStringLiteral("stat")});
        process.waitForFinished();
        const QStringList lines = QString::fromUtf8(process.readAll()).split(u'\n');
        for (const QString &line : lines) {
            if (line.startsWith(QStringLiteral("Rough   frequency:"))) {
                return line.section(u':', 1).trimmed().toInt();
            }
        }
        return -1;
    }

    QList<int> slots_;
    QStringList names;
    frmConvert *convert = nullptr;
};

} // namespace

TEST_F(Convert, TheWindowIsModalAndListsSoundFilesInOneOrder) {
    for (const char *name : {"b.wav", "C.mp3", "a.MP3", "d.WAV"}) {
        disk.write(path(QStringLiteral("geluid/") + QString::fromLatin1(name)), "x");
    }
    disk.write(path(QStringLiteral("geluid/e.txt")), "x");
    openConvert();
    EXPECT_TRUE(convert->isModal());
    EXPECT_EQ(convert->windowTitle(), QStringLiteral("Geluidsbestanden importeren"));
    EXPECT_EQ(convert->browser->files().join(u' '), QStringLiteral("a.MP3 b.wav C.mp3 d.WAV"));
    EXPECT_TRUE(convert->cmdBatch->isEnabled());
    EXPECT_FALSE(convert->cmdSingle->isEnabled());
    convert->browser->setFolder(folder.path() + QStringLiteral("/temp"));
    EXPECT_FALSE(convert->cmdBatch->isEnabled());
    EXPECT_FALSE(convert->cmdPlay->isEnabled());
}

TEST_F(Convert, AWavFileBecomesTheSelectedStepsVoiceTrack) {
    makeSound(QStringLiteral("stem.wav"), 1000, 2.0);
    openConvert(QStringLiteral("access-2003.mdb"), QStringLiteral("[Audio]\nBitRate=0"));
    choose(QStringLiteral("stem.wav"));
    click(convert->cmdSingle);
    EXPECT_EQ(probe(track(0)), QStringLiteral("mp3 44100 2 128000"));
    EXPECT_NEAR(tone(track(0)), 1000, 20);
    EXPECT_TRUE(imported(slots_.first()));
    EXPECT_EQ(filesIn(QStringLiteral("ok")).size(), 1);
    EXPECT_EQ(window->panels().gridPanel->currentRow(), window->workplace().datList.firstUnfinished());
    EXPECT_EQ(convert->progressconvert->value(), 100);
    EXPECT_TRUE(exists(QStringLiteral("geluid/stem.wav")));
}

TEST_F(Convert, WavFilesOfEveryKindAreConverted) {
    openConvert();
    const QList<QStringList> kinds = {
        {QStringLiteral("-r"), QStringLiteral("48000"), QStringLiteral("-c"), QStringLiteral("2"), QStringLiteral("-b"),
         QStringLiteral("24")},
        {QStringLiteral("-r"), QStringLiteral("8000"), QStringLiteral("-c"), QStringLiteral("1"), QStringLiteral("-b"),
         QStringLiteral("8")},
        {QStringLiteral("-r"), QStringLiteral("96000"), QStringLiteral("-c"), QStringLiteral("6"), QStringLiteral("-e"),
         QStringLiteral("floating-point"), QStringLiteral("-b"), QStringLiteral("32")},
    };
    for (const QStringList &kind : kinds) {
        SCOPED_TRACE(kind.join(u' ').toStdString());
        QFile::remove(path(QStringLiteral("geluid/stem.wav")));
        makeSound(QStringLiteral("stem.wav"), 900, 1.5, kind);
        convert->browser->refresh();
        select(slots_.first());
        choose(QStringLiteral("stem.wav"));
        click(convert->cmdSingle);
        EXPECT_EQ(probe(track(0)), QStringLiteral("mp3 44100 2 256000"));
        EXPECT_NEAR(tone(track(0)), 900, 20);
    }
}

TEST_F(Convert, AnMp3FileIsCopiedAsItIsAndOverwrites) {
    const QByteArray music = [] {
        QFile file(QStringLiteral(ORVEL_SOURCE_DIR "/samples/station/audio/jingles/001.mp3"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }();
    disk.write(path(QStringLiteral("geluid/klaar.mp3")), music);
    openConvert();
    disk.write(path(track(0)), "oud");
    choose(QStringLiteral("klaar.mp3"));
    click(convert->cmdSingle);
    EXPECT_EQ(content(track(0)), music);
}

// The name was taken for a path, and the file was not found.
TEST_F(Convert, ABackslashInANameIsACharacterLikeAnyOther) {
    makeSound(QStringLiteral("map\\stem.wav"), 700, 0.5);
    openConvert();
    choose(QStringLiteral("map\\stem.wav"));
    click(convert->cmdSingle);
    EXPECT_NEAR(tone(track(0)), 700, 20);
    EXPECT_EQ(convert->lstFailed->count(), 0);
}

// A new icon for every caption filled the cache of drawn pictures, a few kilobytes a click.
TEST_F(Convert, TheButtonsPicturesAreMadeOnce) {
    makeSound(QStringLiteral("stem.wav"), 700, 0.5);
    openConvert();
    choose(QStringLiteral("stem.wav"));
    QSet<qint64> pictures;
    for (int cycle = 0; cycle < 4; ++cycle) {
        click(convert->cmdPlay);
        pictures << convert->cmdPlay->icon().cacheKey();
        click(convert->cmdPlay);
        pictures << convert->cmdPlay->icon().cacheKey();
    }
    EXPECT_EQ(pictures.size(), 2);
}

TEST_F(Convert, WithoutAStepASingleImportIsRefused) {
    makeSound(QStringLiteral("stem.wav"), 1000);
    openConvert();
    choose(QStringLiteral("stem.wav"));
    window->workplace().step.StepSelected = false;
    prompts.expectMessage(QStringLiteral("Geen Presentatie gekozen in playlist"), QStringLiteral("Foutmelding"),
                          MessageIcon::Exclamation);
    click(convert->cmdSingle);
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
}

TEST_F(Convert, ABatchFillsThePresentationsInOrder) {
    openConvert(QStringLiteral("deleted-rows.mdb"));
    ASSERT_EQ(names.join(u' '), QStringLiteral("VT12 VT14 VT16 VT18 VT20"));
    const auto count = static_cast<int>(slots_.size());
    for (int slot = 0; slot < count; ++slot) {
        makeSound(QStringLiteral("%1.wav").arg(slot, 3, 10, QChar(u'0')), 400 + 30 * slot, 0.6);
    }
    convert->browser->refresh();
    for (int row = 0; row < window->workplace().datList.stepCount(); ++row) {
        if (!slots_.contains(row)) {
            mark(row, true);
        }
    }
    prompts.expectAsk(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"), false);
    click(convert->cmdBatch);
    ASSERT_EQ(filesIn(QStringLiteral("ok")).size(), count);
    for (int slot = 0; slot < count; ++slot) {
        EXPECT_NEAR(tone(track(slot)), 400 + 30 * slot, 12) << slot;
        EXPECT_TRUE(imported(slots_.at(slot)));
    }
    EXPECT_TRUE(convert->cmdBatch->isEnabled());
    EXPECT_EQ(window->workplace().step.VoiceTrackName, names.constLast());
}

TEST_F(Convert, ABatchWithTheWrongNumberOfFilesChangesNothing) {
    openConvert();
    const auto count = static_cast<int>(slots_.size());
    for (int file = 0; file <= count; ++file) {
        makeSound(QStringLiteral("%1.wav").arg(file), 500, 0.2);
    }
    convert->browser->refresh();
    prompts.expectMessage(wrongCount, QStringLiteral("Foutmelding"), MessageIcon::Exclamation);
    click(convert->cmdBatch);
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
    EXPECT_FALSE(imported(slots_.first()));
}

TEST_F(Convert, AnEmptyVoiceTrackNameIsAFileName) {
    makeSound(QStringLiteral("stem.WAV"), 700, 0.5);
    openConvert(QStringLiteral("empty-atrack.mdb"));
    click(convert->cmdBatch);
    EXPECT_EQ(QDir(path(QStringLiteral("ok"))).entryList(QDir::Files | QDir::Hidden),
              QStringList{QStringLiteral(".mp3")});
}

TEST_F(Convert, AFailedConversionIsSilentMarksTheStepAndKeepsWhatWasThere) {
    disk.write(path(QStringLiteral("geluid/stuk.wav")), "geen geluid");
    openConvert();
    disk.write(path(track(0)), "vorige opname");
    choose(QStringLiteral("stuk.wav"));
    click(convert->cmdSingle);
    EXPECT_EQ(content(track(0)), "vorige opname");
    EXPECT_EQ(filesIn(QStringLiteral("ok")).size(), 1);
    EXPECT_TRUE(imported(slots_.first()));
    ASSERT_EQ(convert->lstFailed->count(), 1);
    EXPECT_TRUE(convert->lstFailed->item(0)->text().contains(QStringLiteral("stuk.wav")));
    EXPECT_TRUE(window->panels().lblStatus->text().contains(QStringLiteral("stuk.wav")));
}

TEST_F(Convert, AFullDiskWhileConvertingLeavesNoHalfFile) {
    makeSound(QStringLiteral("stem.wav"), 1000, 3.0);
    openConvert();
    audioFiles.faults.write = 1;
    choose(QStringLiteral("stem.wav"));
    click(convert->cmdSingle);
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
    EXPECT_EQ(convert->lstFailed->count(), 1);
}

TEST_F(Convert, ACopyThatFailsIsReportedAndTheButtonsComeBack) {
    disk.write(path(QStringLiteral("geluid/klaar.mp3")), "geluid");
    openConvert();
    files.fail(FaultyFileSystem::Operation::Copy, QStringLiteral("ok/"), ErrorNumber::DiskFull);
    choose(QStringLiteral("klaar.mp3"));
    prompts.expectReport(QStringLiteral("Fout 61"));
    click(convert->cmdSingle);
    EXPECT_TRUE(convert->cmdSingle->isEnabled());
    EXPECT_FALSE(imported(slots_.first()));
}

TEST_F(Convert, ImportNeverWritesToTheServer) {
    QDir(folder.path()).mkdir(QStringLiteral("server"));
    makeSound(QStringLiteral("stem.wav"), 1000, 0.5);
    openConvert(QStringLiteral("access-2003.mdb"),
                QStringLiteral("[Files]\nVoiceTrackPath=%1/server\n[Program]\nServer=1").arg(folder.path()));
    choose(QStringLiteral("stem.wav"));
    click(convert->cmdSingle);
    EXPECT_TRUE(exists(track(0)));
    EXPECT_TRUE(filesIn(QStringLiteral("server")).isEmpty());
}

TEST_F(Convert, TheWindowStaysAliveAndABatchCanBeStopped) {
    openConvert(QStringLiteral("steps-150.mdb"));
    for (int slot = 0; slot < slots_.size(); ++slot) {
        makeSound(QStringLiteral("%1.wav").arg(slot, 3, 10, QChar(u'0')), 500, 20);
    }
    convert->browser->refresh();
    int beats = 0;
    QTimer heart;
    QObject::connect(&heart, &QTimer::timeout, [&] {
        ++beats;
        EXPECT_FALSE(convert->cmdBatch->isEnabled());
        EXPECT_FALSE(convert->cmdSingle->isEnabled());
        EXPECT_TRUE(convert->progressconvert->caption().startsWith(QStringLiteral("bestand ")));
        if (beats == 5) {
            convert->cmdQuit->click();
        }
    });
    heart.start(10);
    click(convert->cmdBatch);
    heart.stop();
    EXPECT_GE(beats, 5);
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
    EXPECT_FALSE(imported(slots_.first()));
    EXPECT_TRUE(convert->isVisible());
    EXPECT_TRUE(convert->cmdBatch->isEnabled());
}

TEST_F(Convert, TheChosenFileCanBeListenedTo) {
    makeSound(QStringLiteral("stem.wav"), 1000, 2.0);
    disk.write(path(QStringLiteral("geluid/stuk.wav")), "geen geluid");
    openConvert();
    FakeWavePlayer &player = sound.player(sound.playerCount() - 1);
    choose(QStringLiteral("stem.wav"));
    click(convert->cmdPlay);
    EXPECT_EQ(player.file(), path(QStringLiteral("geluid/stem.wav")));
    EXPECT_EQ(convert->cmdPlay->text(), QStringLiteral("Stop"));
    player.play(5000);
    EXPECT_EQ(convert->cmdPlay->text(), QStringLiteral("Beluister"));
    click(convert->cmdPlay);
    click(convert->cmdPlay);
    EXPECT_NE(player.state(), WavePlayer::playing);
    choose(QStringLiteral("stuk.wav"));
    click(convert->cmdPlay);
    EXPECT_EQ(convert->lstFailed->count(), 1);
    EXPECT_EQ(convert->cmdPlay->text(), QStringLiteral("Beluister"));
}

TEST_F(Convert, WhileATakeRunsNothingIsImported) {
    makeSound(QStringLiteral("stem.wav"), 1000, 0.5);
    openConvert();
    convert->close();
    window->panels().recorderPanel->cmdRec_Click();
    const QString name = window->workplace().step.VoiceTrackName;
    openWindow();
    choose(QStringLiteral("stem.wav"));
    click(convert->cmdSingle);
    EXPECT_EQ(convert->lstFailed->count(), 1);
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
    EXPECT_FALSE(imported(slots_.first()));
    EXPECT_EQ(window->workplace().step.VoiceTrackName, name);
}

TEST_F(Convert, ACopyThatFailsInABatchLeavesNoPartsAndTheStepSelected) {
    openConvert(QStringLiteral("steps-150.mdb"));
    ASSERT_GE(slots_.size(), 3);
    for (int slot = 0; slot < slots_.size(); ++slot) {
        const QString number = QStringLiteral("%1").arg(slot, 3, 10, QChar(u'0'));
        if (slot == 1) {
            disk.write(path(QStringLiteral("geluid/001.mp3")), "geluid");
        } else {
            makeSound(number + QStringLiteral(".wav"), 500, 0.2);
        }
    }
    convert->browser->refresh();
    files.fail(FaultyFileSystem::Operation::Copy, names.at(1), ErrorNumber::DiskFull);
    prompts.expectReport(QStringLiteral("Fout 61"));
    click(convert->cmdBatch);
    EXPECT_EQ(filesIn(QStringLiteral("ok")), QStringList{names.at(0) + QStringLiteral(".mp3")});
    EXPECT_TRUE(imported(slots_.at(0)));
    EXPECT_FALSE(imported(slots_.at(1)));
    EXPECT_EQ(window->panels().gridPanel->currentRow(), slots_.at(1));
    EXPECT_EQ(window->workplace().step.VoiceTrackName, names.at(1));
    EXPECT_TRUE(convert->cmdBatch->isEnabled());
}

// A large MP3 file stood still for 26 seconds without a sign.
TEST_F(Convert, ALargeMp3FileIsCopiedWithProgressAndCanBeStopped) {
    disk.write(path(QStringLiteral("geluid/groot.mp3")), QByteArray(64'000'000, 'x'));
    openConvert();
    disk.write(path(track(0)), "vorige opname");
    choose(QStringLiteral("groot.mp3"));
    int beats = 0;
    int highest = 0;
    QTimer heart;
    QObject::connect(&heart, &QTimer::timeout, [&] {
        ++beats;
        highest = std::max(highest, convert->progressconvert->value());
        EXPECT_EQ(convert->progressconvert->caption(), QStringLiteral("groot.mp3"));
        convert->cmdQuit->click();
    });
    heart.start(1);
    click(convert->cmdSingle);
    heart.stop();
    EXPECT_GE(beats, 1);
    EXPECT_EQ(content(track(0)), "vorige opname");
    EXPECT_EQ(QDir(path(QStringLiteral("ok"))).entryList(QDir::Files | QDir::Hidden).size(), 1);
    EXPECT_FALSE(imported(slots_.first()));
    EXPECT_TRUE(convert->isVisible());
    EXPECT_TRUE(convert->cmdSingle->isEnabled());
    click(convert->cmdSingle);
    EXPECT_EQ(content(track(0)).size(), 64'000'000);
    EXPECT_TRUE(imported(slots_.first()));
}

TEST_F(Convert, ABatchBeginsWithTheFirstFileSelected) {
    openConvert(QStringLiteral("deleted-rows.mdb"));
    const auto count = static_cast<int>(slots_.size());
    for (int slot = 0; slot < count; ++slot) {
        makeSound(QStringLiteral("%1.wav").arg(slot, 3, 10, QChar(u'0')), 400, slot == 0 ? 60 : 0.3);
    }
    convert->browser->refresh();
    convert->browser->selectFile(count - 1);
    QStringList selected;
    QTimer beat;
    QObject::connect(&beat, &QTimer::timeout, [&] { selected << convert->browser->selectedFile(); });
    beat.start(5);
    click(convert->cmdBatch);
    beat.stop();
    ASSERT_FALSE(selected.isEmpty());
    EXPECT_EQ(selected.first(), QStringLiteral("000.wav"));
    EXPECT_EQ(convert->browser->File1->currentRow(), count - 1) << "then one after the other";
}

TEST_F(Convert, ATableShowsWhatTheBatchWouldDoAndALineWhichStepIsMeant) {
    makeSound(QStringLiteral("a.wav"), 1000, 300.0);
    openConvert();
    ASSERT_EQ(slots_.size(), 2);
    EXPECT_TRUE(convert->lblStep->text().contains(names.first())) << convert->lblStep->text().toStdString();
    QTableWidget &plan = *convert->lstPlan;
    ASSERT_EQ(plan.rowCount(), slots_.size());
    for (int looks = 0; looks < 200 && plan.item(0, 1)->text() == QStringLiteral("..."); ++looks) {
        QTest::qWait(10);
        timers.advance(100);
    }
    EXPECT_EQ(plan.item(0, 0)->text(), QStringLiteral("a.wav"));
    EXPECT_TRUE(plan.item(0, 2)->text().contains(names.first()));
    EXPECT_TRUE(plan.item(0, 4)->text().contains(QStringLiteral("te lang")));
    EXPECT_EQ(plan.item(1, 4)->text(), QStringLiteral("geen bestand voor deze link"));
    convert->browser->setFolder(folder.path() + QStringLiteral("/temp"));
    EXPECT_EQ(plan.item(0, 0)->text(), QString()) << "another folder";
}

} // namespace orvel
