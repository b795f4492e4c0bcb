"""The mutants: behaviours that a test must notice when they are broken."""
from dataclasses import dataclass

APP = "orvel_app_test"
DSP = "orvel_dsp_test"
PLAYLIST = "orvel_playlist_test"
PRODUCTION = "orvel_production_test"
RECORDING = "orvel_recording_test"
WIDGETS = "orvel_widgets_test"
WINDOWS = "orvel_windows_test"


@dataclass(frozen=True)
class Mutant:
    """An edit, and the test that must die of it. `old` occurs exactly once in the file."""
    name: str
    file: str
    old: str
    new: str
    program: str
    test: str


MUTANTS = []


def behaviour(program, test, file, *edits):
    """Edits of one file that one test looks at: (name, old, new)."""
    MUTANTS.extend(Mutant(name, file, old, new, program, test) for name, old, new in edits)


# --- playlists

behaviour(
    PLAYLIST, "StepTypes.EveryCodeHasItsStyle", "playlist/step_types.cpp",
    ("step codes 4 and 5 swapped", "QString styleName(int type) {\n",
     "QString styleName(int type) {\n    type = type == 4 ? 5 : type == 5 ? 4 : type;\n"),
    ("step code 6 is an event", "type == 4 ||", "type == 4 || type == 6 ||"),
    ("step code 16 is an event", "type == 4 ||", "type == 4 || type == 16 ||"),
    ("step code 16 is advertising", "type, 10, 15", "type, 10, 16"),
    ("step code 26 is an event", "type, 20, 25", "type, 20, 26"),
    ("step code 48 is an event", "type, 40, 47", "type, 40, 48"),
    ("step codes above 52 are events", "within(type, 50, 52)", "type >= 50"),
)
behaviour(
    PLAYLIST, "StepTypes.EveryKindHasItsOwnTwoColours", "playlist/step_types.cpp",
    ("tracks and presentations have each other's background",
     "MusBack, settings.MusTxt)},\n        {QStringLiteral(\"Pres\"), style(settings.PresBack",
     "PresBack, settings.MusTxt)},\n        {QStringLiteral(\"Pres\"), style(settings.MusBack"),
    ("presentations and jingles have each other's text",
     "PresTxt)},\n        {QStringLiteral(\"Jingle\"), style(settings.JingBack, settings.jingTxt",
     "jingTxt)},\n        {QStringLiteral(\"Jingle\"), style(settings.JingBack, settings.PresTxt"),
    ("times and events have each other's background",
     "TijdBack, settings.TijdTxt)},\n        {QStringLiteral(\"Event\"), style(settings.EventBack",
     "EventBack, settings.TijdTxt)},\n        {QStringLiteral(\"Event\"), style(settings.TijdBack"),
    ("events have advertising's text", "settings.EventTxt", "settings.RecTxt"),
    ("advertising has the events' background", "settings.RecBack", "settings.EventBack"),
)
behaviour(
    PLAYLIST, "PlaylistTimes.*", "playlist/playlist.cpp",
    ("intros of the playlist before stay", "    intro_.fill(0);\n", ""),
    ("outros of the playlist before stay", "    outtro_.fill(0);\n", ""),
    ("the outro before step 0 is 0", "    if (stap < 0 ||", "    if (stap < 0) {\n        return 0;\n    }\n    if ("),
    ("the intro after step 150 is 0", " || stap > lastTableIndex) {",
     ") {\n        throw RuntimeError(ErrorNumber::SubscriptOutOfRange);\n    }\n    if (stap > lastTableIndex) {\n"
     "        return 0;\n    }\n    if (stap < 0) {"),
)
behaviour(
    PLAYLIST, "PlaylistTimes.AStepZeroHasNoTimes", "playlist/current_step.cpp",
    ("the outro is that of the step itself", "playlist.outtro(stap - 1)", "playlist.outtro(stap)"),
)
behaviour(
    PLAYLIST, "ChosenForPreview.*", "playlist/current_step.cpp",
    ("a double-click previews during a take", "if (step.PlaylistTakeRunning || !step.previewAllowed",
     "if (!step.previewAllowed"),
    ("events are previewed", "return type == TrackStep || type == JingleStep;",
     "return type != PresStep;"),
)
behaviour(
    PLAYLIST, "Steps.CaptionsAndLooksAreThoseOfTheTable", "playlist/step_fields.h",
    ("the caption Outtro", '.caption = "Outtro"', '.caption = "Outro"'),
    ("the caption Mixtype", '.caption = "Mixtype"', '.caption = "mixtype"'),
)
behaviour(
    PLAYLIST, "Steps.EveryMixTypeHasItsName", "windows/mix_type.cpp",
    ("the mix type Normale Mix", '"Normale Mix"', '"Mix"'),
    ("the mix type Outtro", '"Outtro"', '"Outro"'),
    ("two mix types exchanged", '"Intro", "2"), row("Outtro", "3")', '"Intro", "3"), row("Outtro", "2")'),
)
behaviour(
    PLAYLIST, "Steps.TheTickIsThereForStepsThatAreDone", "windows/steps_model.cpp",
    ("the tick inverted", "? Qt::Checked : Qt::Unchecked", "? Qt::Unchecked : Qt::Checked"),
)
behaviour(
    APP, "Transfer.WhileATakeRunsNoOtherPlaylistIsOpenedAndTheListsStandStill", "windows/file_panel.cpp",
    ("a click opens another playlist during a take", "step_.PlaylistTakeRunning || name.isEmpty()", "name.isEmpty()"),
    ("another tab refreshes the lists during a take", "if (step_.PlaylistTakeRunning) {",
     "if (step_.PlaylistTakeRunning && settings_.Countdown < 0) {"),
)
behaviour(
    PLAYLIST, "Deleting.*", "playlist/deletion.cpp",
    ("the question for one playlist is that for all", "all ? questionForAll", "true ? questionForAll"),
    ("one selected playlist deletes all", "const bool all = shown.selected.isEmpty()", "const bool all = true"),
    ("a failing deletion of finished playlists is ignored",
     "    for (const QString &path : paths) {\n        context_.recovery.keep(path);\n    }",
     "    for (const QString &path : paths) {\n        ignoringErrors([&] { context_.recovery.keep(path); });\n    }"),
)
behaviour(
    RECORDING, "Finishing.*", "playlist/completion.cpp",
    ("an existing finished playlist stays", "files.copy(toDo, finished);",
     "if (!files.fileExists(finished)) {\n            files.copy(toDo, finished);\n        }"),
    ("a replaced finished playlist is not kept", "if (files.fileExists(finished)) {", "if (finished.isEmpty()) {"),
    ("a failing deletion of the playlist is ignored", "    files.remove(toDo);\n    context_",
     "    try {\n        files.remove(toDo);\n    } catch (...) {\n    }\n    context_"),
)

# --- recording

behaviour(
    APP, "Station.TheDeskStartsWithTheFirstTabAndACountOfFour", "windows/frm_main.cpp",
    ("the second tab at the start", "tabRec->setCurrentIndex(0)", "tabRec->setCurrentIndex(1)"),
)
behaviour(
    RECORDING, "Desk.BeforeTheFirstCountDownTheCounterIsFour", "recording/take_session.h",
    ("a count-down of 0 at the start", "CountdownLeft = 4;", "CountdownLeft = 0;"),
)
behaviour(
    APP, "Station.TheRecorderHasNoPrintingImportOrExport", "windows/frm_main.cpp",
    ("printing and import in the recorder", "int index = 1; index <= 3", "int index = 3; index <= 3"),
    ("printing in the recorder", "int index = 1; index <= 3", "int index = 2; index <= 3"),
)
behaviour(
    RECORDING, "WhatIsAllowed.*", "recording/allowed.cpp",
    ("playlist tools in the recorder", "result.playlistTools = !mode.RecorderOnly", "result.playlistTools = true"),
    ("the lists in the recorder", "result.lists = isFree && !mode.RecorderOnly", "result.lists = isFree"),
)
behaviour(
    RECORDING, "ListedCards.*", "recording/cards.cpp",
    ("what cannot record is listed", "if (audioRecord.canRecord(DeviceIndex)) {", "if (DeviceIndex >= 0) {"),
)
behaviour(
    APP, "Cards.AdvancedOpensForTheLineOfItsStrip", "windows/card_panel.cpp",
    ("advanced properties of another line", "setCurrentLine(index);\n    Q_EMIT advanced",
     "setCurrentLine(index > 0 ? 1 : 0);\n    Q_EMIT advanced"),
)
behaviour(
    APP, "Takes.TheEndOfTheSessionClosesTheTakeAndItIsOffered", "windows/frm_main.cpp",
    ("closing leaves the take open", "ignoringErrors([&] { StopAudio(); });", ""),
)
behaviour(
    RECORDING, "Desk.ClosingTheProgramClosesTheTakeAndItIsOfferedNextTime", "recording/take_session.cpp",
    ("closing keeps no take", "recorder().stop();\n    if (recorded) {", "recorder().stop();\n    if (recorded && mode.RecorderOnly) {"),
    ("closing does not stop the recorder", "    context_.platform.sound.recorder().stop();\n    if (recorded)",
     "    if (recorded)"),
)
behaviour(
    RECORDING, "Listens.AVoiceTrackThatIsGoneFromTheServerPlaysNothing", "recording/listening.cpp",
    ("a voice track that is gone from the server is played",
     "    if (!context_.platform.files.fileExists(path)) {\n        return;\n    }\n", ""),
)
behaviour(
    RECORDING, "Listens.AVoiceTrackThatIsGoneFromTheServerPlaysNothing", "recording/take_file.cpp",
    ("the server's voice track is looked for at home", "return settings.ServerMode ?",
     "return settings.ServerMode && name.isEmpty() ?"),
)
behaviour(
    RECORDING, "Desk.TheCountDownOverflowsSixteenBits", "recording/take_session.cpp",
    ("the count-down wraps", "checkedInt16(context_.settings.Countdown + 1)",
     "static_cast<std::int16_t>(context_.settings.Countdown + 1)"),
)
behaviour(
    RECORDING, "Desk.TheTimeOverflowsThirtyTwoBits", "recording/take_session.cpp",
    ("the elapsed time wraps", "checkedInt32(std::int64_t{ElapsedMs_} + 10)",
     "static_cast<std::int32_t>(std::int64_t{ElapsedMs_} + 10)"),
)
behaviour(
    RECORDING, "Desk.WithoutTheProcessorATakeStaysRaw", "recording/take_session.cpp",
    ("the processor works though it is off", " && context_.settings.UseProcessor)", ")"),
)
behaviour(
    RECORDING, "Desk.WithoutTheProcessorWhatIsEncodedIsFiled", "production/saving.cpp",
    ("without the processor the take is encoded", "if (!context_.settings.UseProcessor) {",
     "if (!context_.settings.UseProcessor && take.name().isEmpty()) {"),
)
behaviour(
    RECORDING, "Desk.StartOpname*", "recording/take_session.cpp",
    ("StartOpname goes on counting", "    ElapsedMs_ = 0;\n", ""),
    ("StartOpname does not record", "    ElapsedMs_ = 0;\n    enter(SessionState::Recording);", "    ElapsedMs_ = 0;"),
)
behaviour(
    RECORDING, "Previewing.OtherKindsUnknownNumbersAndNoNetworkLeaveThePlayerAlone", "recording/preview.cpp",
    ("other kinds are previewed", "!sources_.settings.Network || (kind != TrackStep && kind != JingleStep)",
     "!sources_.settings.Network"),
    ("tracks are previewed without the network", "!sources_.settings.Network || (kind", "(kind"),
)
behaviour(
    RECORDING, "PreviewSeeking.IsDoneInSilence", "recording/preview.cpp",
    ("seeking is heard", "    player.pause();\n    player.setPosition", "    player.setPosition"),
    ("after seeking the player stays silent", "    player.setPosition(position);\n    player.resume();\n", "    player.setPosition(position);\n"),
)
behaviour(
    APP, "PreviewWindow.TheWindowAsksForTheOutputOfTheSettingsOnlyWithTheNetwork", "windows/frm_preview.cpp",
    ("the preview plays on the default output",
     "        CuePlayer->setOutput(playerSettings(context_.sources.settings));\n", ""),
)

# --- production

for label, old, new in (
        ("Amp", '"dB", -15, 15, 1, "Amp"', ('-14, 15, 1', '-15, 14, 1', '-15, 15, 2')),
        ("Norm", '"%", 0, 100, 1, "Norm"', ('1, 100, 1', '0, 99, 1', '0, 100, 2')),
        ("Trim", '"dB", -90, 0, 1, "Trim"', ('-96, 0, 1', '-90, 1, 1', '-90, 0, 2')),
        ("Attack", '"ms", 0, 1000, 10, "Attack"', ('1, 1000, 10', '0, 100, 10', '0, 1000, 1')),
        ("CompTresh", '"dB", -96, 0, 1, "CompTresh"', ('-90, 0, 1', '-96, 1, 1', '-96, 0, 2')),
        ("CompRate", '"%", 1, 100, 1, "CompRate"', ('0, 100, 1', '1, 99, 1', '1, 100, 2')),
        ("CompRMS", '"ms", 0, 1000, 10, "CompRMS"', ('1, 1000, 10', '0, 100, 10', '0, 1000, 1')),
        ("RevDelay", '"ms", 0, 1000, 10, "RevDelay"', ('1, 1000, 10', '0, 100, 10', '0, 1000, 1')),
        ("RevDepth", '"%", 1, 100, 1, "RevDepth"', ('0, 100, 1', '1, 99, 1', '1, 100, 2')),
        ("RevDecay", '"%", 1, 100, 1, "RevDecay"', ('0, 100, 1', '1, 99, 1', '1, 100, 2')),
        ("RevRate", '"%", 1, 100, 1, "RevRate"', ('0, 100, 1', '1, 99, 1', '1, 100, 2')),
):
    unit = old.split(",")[0]
    behaviour(PRODUCTION, "Stages.EveryKnobHasItsUnitLimitsAndStep", "production/stages.cpp",
              *((f"knob {label}: {what}", old, f'{unit}, {numbers}, "{label}"')
                for what, numbers in zip(("lower limit", "upper limit", "step"), new)))
behaviour(
    PRODUCTION, "Stages.ThoseThatAreOnRunInTheirFixedOrder", "production/stages.cpp",
    ("the text Trimmen", '{"Trimmen"', '{"Trim"'),
)
behaviour(
    PRODUCTION, "Transcoding.*", "production/transcode.cpp",
    ("a file without frames ends at nothing", "    progress(100);\n}", "}"),
    ("progress is not told", "        progress(length > 0 ? static_cast<int>(done * 100 / length) : 100);\n",
     "        done += 0;\n"),
)
behaviour(
    RECORDING, "Listens.SavingStopsTheTakeThatPlays", "production/saving.cpp",
    ("saving leaves the take playing", "cmdSave_Click() {\n    context_.listening.interrupt();", "cmdSave_Click() {"),
)
behaviour(
    APP, "SavingTakes.WhileItIsEncodedTheGaugeAndTheHourglassAreShown", "windows/save_panel.cpp",
    ("no hourglass while encoding", "percent ? QGuiApplication::setOverrideCursor(Qt::WaitCursor) : ",
     "percent ? void() : "),
    ("the hourglass stays", " : QGuiApplication::restoreOverrideCursor();", " : void();"),
    ("the gauge stays at its end", "percent.value_or(0)", "percent.value_or(100)"),
    ("the text Comprimeert bestand", 'setCaption(QStringLiteral("Comprimeert bestand"))',
     'setCaption(QStringLiteral("Comprimeert"))'),
)
behaviour(
    APP, "Convert.ABatchBeginsWithTheFirstFileSelected", "windows/frm_convert.cpp",
    ("a batch selects no file", "    browser->selectFile(0);\n", ""),
)

# --- windows

behaviour(
    APP, "Setup.TheServerAndDataBoxesShowTheSettingsAndTheLastRateIsThreeFifty", "windows/frm_setup.cpp",
    ("chkData shows nothing", "    chkData->setChecked(saved_.Network);\n", ""),
    ("chkServer shows nothing", "    chkServer->setChecked(settings_.ServerMode);\n", ""),
    ("chkData stores nothing", "    edited.Network = chkData->isChecked();\n", ""),
    ("chkServer stores nothing", "    edited.ServerMode = chkServer->isChecked();\n", ""),
)
behaviour(
    APP, "Setup.TheServerAndDataBoxesShowTheSettingsAndTheLastRateIsThreeFifty", "windows/frm_setup_layout.cpp",
    ("the caption 350 Kbit/Sec", "350 Kbit/Sec", "384 Kbit/Sec"),
)
behaviour(
    APP, "Recording.TheNoticeIsThereWhileATakeRuns", "windows/recorder_panel.cpp",
    ("the text OPNAME LOOPT", "OPNAME LOOPT", "OPNAME"),
    ("no notice while recording", "lblOpname->setVisible(recording)", "lblOpname->setVisible(false)"),
)
behaviour(
    WINDOWS, "Stations.TheQuestionNamesTheChooser", "windows/frm_station.cpp",
    ("the label of the station chooser", "Kies het station waarvoor", "Kies een station waarvoor"),
)

# --- sound

behaviour(
    DSP, "Extremes.AFullScaleSquareKeepsItsSigns", "dsp/gain.cpp",
    ("gain turns the sound upside down", "sample *= used;", "sample *= -used;"),
)
behaviour(
    DSP, "Normalise.ALevelOfNothingIsDigitalSilence", "dsp/normalise.cpp",
    ("normalising to 0 % changes nothing", "        std::fill(samples.begin(), samples.end(), std::int16_t{0});\n", ""),
)

# --- nothing wrong unnoticed

behaviour(
    DSP, "Limiter.*", "dsp/limiter.cpp",
    ("only the samples count, not what lies between", "return isLoud_ ? interpolator_", "return false ? interpolator_"),
    ("the gain comes too late", "return 2 * half_ - 2;", "return half_;"))
behaviour(
    DSP, "Limiter.TheGainMovesSmoothlyAndComesBack", "dsp/limiter.cpp",
    ("the gain jumps", "second_.next(first_.next(released_))", "released_"),
    ("the gain never comes back", "(1 - released_) * release_", "0.0F"))
behaviour(
    RECORDING, "TheGuard.*", "recording/guard.cpp",
    ("a quiet room is a dead line", "constexpr float deadLine = 10.0F", "constexpr float deadLine = 100.0F"),
    ("four seconds of silence are let pass", "silentMs = 3000", "silentMs = 4000"),
    ("the lamp goes out with the take", "if (begins && look.state == SessionState::Recording) {", "if (begins) {"),
    ("five minutes of disk are enough", "leastSeconds = 600", "leastSeconds = 300"))
behaviour(
    RECORDING, "InputLevel.*", "recording/input_level.cpp",
    ("a steady noise is a voice", "loud - soft >= riseOfVoice", "loud - soft >= -riseOfVoice"),
    ("the mean counts, not the loud parts", "levelOf(0.9)", "levelOf(0.5)"))
behaviour(
    RECORDING, "TheWatch.LeavesTheTakeToTheSession", "recording/watch.cpp",
    ("the card is let go while it records", "isOpen_ = isOpen_ && !isSessions(state);",
     "static_cast<void>(isSessions(state));"))
behaviour(
    RECORDING, "TheWatch.*", "recording/watch.cpp",
    ("a card that was let go stays open", "context_.platform.sound.recorder().stop()", "static_cast<void>(0)"),
    ("the disk is looked at once", "surveys_ % diskInterval == 0", "surveys_ == 0"))
behaviour(
    PRODUCTION, "LoudnessStage.WhereTheLimiterWorksHardTheGoalIsReachedAllTheSame", "production/loudness_stage.cpp",
    ("what the limiter takes away is not made up for", "mostTries = 8", "mostTries = 1"))
# --- joins

behaviour(
    DSP, "Mixer.NothingClicksAtStartsAndStops", "dsp/mixer.cpp",
    ("clips click at their ends", "std::min({before + 1, behind + 1, Mixer::rampFrames})",
     "std::min({before + 1, Mixer::rampFrames, Mixer::rampFrames + 0 * behind})"),
    ("clips click at their starts", "std::min({before + 1, behind + 1, Mixer::rampFrames})",
     "std::min({behind + 1, Mixer::rampFrames, Mixer::rampFrames + 0 * before})"),
)
behaviour(
    RECORDING, "Join.AlongATakeTheOutroBeginsWithItAndTheNextItemFollowsWhenItEnds", "recording/join.cpp",
    ("the next item begins with the take", "JoinClip::Anchor::Begin, outro, outro, JoinClip::wholeFile",
     "JoinClip::Anchor::Begin, 0, 0, JoinClip::wholeFile"),
)
behaviour(
    RECORDING, "Joins.AlongATakeTheItemsAreHeardSoThatTheOutroBeginsWithIt", "recording/take_session.cpp",
    ("the take begins at any moment", "wavRec.startAt(*begin);", "wavRec.start();"),
    ("the bar lags behind what is heard", "        catchUp(*begin);\n", ""),
    ("the items sound on after the stop", "        context_.takeOver();\n", ""),
)
behaviour(
    RECORDING, "Joins.WithTheOutputClosedItIsOffAndSaysWhy", "recording/talk_along.cpp",
    ("listening along with the output closed", "!context_.settings.Mute && ", ""),
)
behaviour(
    "audio_join_test", "Every/JoinPlayerTest.TheTakeBeginsWhereTheOutroIsHeardToBegin/PulseAudio",
    "platform/pulse/pulse_recorder.cpp",
    ("a take's begin is not the moment's", "        beginAt(*moment);\n", ""),
)

# --- takes as they were recorded

behaviour(
    PRODUCTION, "RetouchingTest.TheStagesRunAgainOnWhatWasRecordedWithWhatIsSetNow", "production/retouching.cpp",
    ("the stages work on what was made of the take", "                  readSamples(*reader, original, samples);\n",
     ""),
    ("what was done by hand goes without a word", "!before.isEmpty() && before != reworked()", "false"),
)
behaviour(
    PRODUCTION, "DryOrNot.TheDryTakeIsHeardInThePlaceOfTheTakeAtTheSameMomentWithoutAGap", "recording/listening.cpp",
    ("the take is silent before the other is heard", "        next.setVolume(0);\n        aim(next, now.position());\n",
     "        next.setVolume(0);\n        now.setVolume(0);\n        aim(next, now.position());\n"),
    ("the other begins anywhere", "std::abs(late) > together && tries_ < mostTries", "false"),
)
behaviour(
    PRODUCTION, "Comparison.IsAsLoudAsTheTakeAndItsWordsStandWhereTheTakesDo", "production/comparison.cpp",
    ("the dry take is as soft as it was",
     "    if (const std::optional<Loudness> loudness = meter.measure(take, sampleRate)) {\n",
     "    if (const auto loudness = meter.measure(take, sampleRate); loudness && take.empty()) {\n"),
    ("the dry take begins with itself", "layBeside(placeInOriginal(inTake, inOriginal), original, sampleRate)",
     "layBeside({{0, take.size(), 0}}, original, sampleRate)"),
)
behaviour(
    PRODUCTION, "Finding.ClipsOfTheOriginalAreFoundWhereTheyAreInTheTake", "production/take_findings.cpp",
    ("clips stand where they were recorded", "clips.push_back(inMs(*there,", "clips.push_back(inMs(at,"),
)

# --- the manual

behaviour(
    APP, "TheManual.FollowsTheFocusOfTheMainWindow", "windows/frm_manual.cpp",
    ("headings are no places to go to", "        anchor.setAnchorNames({anchorOfHeading(block.text())});\n", ""),
)
behaviour(
    APP, "TheManual.OpensBesideEveryOtherWindowAtItsSection", "windows/manual_key.cpp",
    ("F1 does nothing in a dialog", "control.window() == &mainWindow_ ||", "true ||"),
)
behaviour(
    APP, "TheManual.IsOpenedFromTheSheetOfKeysAtThePartThatHasTheFocus", "windows/frm_keys.cpp",
    ("the sheet stays before the manual", "        accept();\n        Q_EMIT", "        Q_EMIT"),
)
behaviour(
    APP, "TheManual.ShowsItsPicturesNoWiderThanTheWindow", "windows/frm_manual.cpp",
    ("pictures as wide as they were taken", "picture.width() <= width ?", "true ?"),
)
behaviour(
    APP, "TheManual.TellsAboutEveryWindow", "windows/manual_sections.cpp",
    ("a window that the manual leaves out", '        ManualSection{"frmUnfiled", "opnames-die-nog-niet-bewaard-zijn"},\n', ""),
)
behaviour(
    PRODUCTION, "SettingsTableOfTheDocument.IsTheProgramsOwn", "settings/settings_keys.cpp",
    ("a setting of which the document knows nothing", '        SettingsKey{"Files", "Nodelete", &Settings::Nodelete},\n',
     '        SettingsKey{"Files", "Nodelete", &Settings::Nodelete},\n'
     '        SettingsKey{"Files", "Everything", &Settings::Nodelete},\n'),
)
behaviour(
    RECORDING, "Joins.ACardsMeasuredDelayMovesTheTakesBegin", "recording/talk_along.cpp",
    ("a measured delay is not used", "*heard + context_.cardDelay()", "*heard"),
    ("a measured delay is not used for files that come late", "takeBegins_ + context_.cardDelay()", "takeBegins_"),
)

# --- a card's delay

behaviour(
    DSP, "Loopback.TwoWaysThatAreAsStrongAreNoAnswer", "dsp/loopback.h",
    ("a probe that came twice is believed", "mostRival = 0.7", "mostRival = 1.1"),
)
behaviour(
    DSP, "Loopback.WhatIsHeardInAStudioIsNeverTakenForIt", "dsp/loopback.h",
    ("whatever is most like the probe is the probe", "leastLikeness = 0.3", "leastLikeness = 0"),
)
behaviour(
    DSP, "Loopback.MuchWeakerOrTooLoudOrUpsideDownItIsTheSame", "dsp/loopback.cpp",
    ("a probe upside down is not found", "std::abs(product(", "(product("),
)
behaviour(
    RECORDING, "Delay.FiguresThatSpreadAreRefusedAndWhatWasKeptStays", "recording/delay_measurement.h",
    ("figures that spread are kept", "mostSpreadMs = 25", "mostSpreadMs = 1000"),
)
behaviour(
    RECORDING, "Delay.*", "recording/delay_measurement.cpp",
    ("the largest figure is kept, not the middle one", "delays_.at(delays_.size() / 2)", "delays_.back()"),
    ("a card that goes while it is measured is not noticed", "card() != card_ || ", ""),
    ("what was measured with leaves files", "context_.platform.files.remove(file); });", "static_cast<void>(file); });"),
    ("a card is measured while a take runs", "if (!context_.session.allowed().cmdDelay) {", "if (isRunning()) {"),
)

# --- where speech is, and what is cut

behaviour(
    DSP, "Speech.AClickBesideSpeechIsNoPartOfIt", "dsp/speech.cpp",
    ("a click is speech", "    dropClicks(found);\n", "    static_cast<void>(dropClicks);\n"),
)
behaviour(
    DSP, "Speech.PausesOfATenthAndAHalfPartTheStretches", "dsp/speech.cpp",
    ("every consonant parts a stretch", "    joinOverPauses(found);\n", "    static_cast<void>(joinOverPauses);\n"),
)
behaviour(
    DSP, "Speech.TheDigitalSilenceOfAServerThatStartsIsNoRoom", "dsp/speech.cpp",
    ("digital silence is the room", "return window > nothing;", "return window >= 0 * nothing;"),
)
behaviour(
    DSP, "Speech.WhatIsNoVoiceIsNoSpeech", "dsp/speech.cpp",
    ("noise is speech", "voice < softest || voice < aboveNoise * noise", "voice < softest"),
)
behaviour(
    DSP, "Speech.NineteenOfTwentyEdgesAreWithinTwentyMilliseconds", "dsp/speech.cpp",
    ("soft beginnings are no speech", "belowVoice = 1.6e-3", "belowVoice = 1.6e-1"),
)
behaviour(
    DSP, "Cutting.TheSeamNeitherClicksNorIsHeardAsAHole", "dsp/cutting.cpp",
    ("a seam clicks", "crossFadeMs = 5", "crossFadeMs = 0"),
)
behaviour(
    DSP, "Cutting.OnlyEdgesWhereSomethingWasCutOffAreFaded", "dsp/cutting.cpp",
    ("a begin that stays is faded", "if (begin > 0) {", "if (begin + 1 > 0) {"),
    ("a cut end clicks", "if (endsEarlier) {", "if (endsEarlier && begin > end) {"),
)
behaviour(
    PRODUCTION, "Fitting.WithShorterPausesTheLastWordEndsBeforeThePostAndEveryWordIsThere", "production/fitting.cpp",
    ("the last word ends at the post", "beforePostMs = 100", "beforePostMs = 0"),
    ("the first word loses its begin", "leadMs = 30", "leadMs = -60"),
)
behaviour(
    PRODUCTION, "Fitting.ThePausesShareWhatIsNeeded", "production/fitting.cpp",
    ("the last pause gives all", "wanted * seen / spare - gone",
     "seen >= 0 && spare >= 0 ? std::min(wanted - gone, spareBefore(i)) : 0"),
)
behaviour(
    PRODUCTION, "Fitting.WhatCannotFitIsAsItWasAndTellsHowMuchIsTooMuch", "production/fitting.cpp",
    ("a take becomes as fast as it must", "if (tempo > fastest) {", "if (tempo > 2 * fastest) {"),
)

# --- the takes of a step, and their outline

behaviour(
    RECORDING, "Shelving.ANewTakeStandsBesideTheOnesBefore", "recording/take_shelf.cpp",
    ("a new take has the number of the one before", "shelf.entries.back().number + 1", "shelf.entries.back().number"),
)
behaviour(
    RECORDING, "Shelving.AnEarlierTakeIsChosenAndFiled", "recording/take_shelf.cpp",
    ("the take that is filed is not the one that was chosen", "entry.isFiled = entry.number == shelf.current;",
     "entry.isFiled = &entry == &shelf.entries.back();"),
)
behaviour(
    RECORDING, "Shelving.AFolderThatIsNotThereFinishesNoPlaylist", "recording/take_shelf.cpp",
    ("a folder that is away finishes every playlist", "if (files_.folderExists(newFolder)) {",
     "if (!newFolder.isEmpty()) {"),
)
behaviour(
    RECORDING, "Shelving.AFinishedPlaylistLeavesTheOriginalsToRecovery", "recording/take_shelf.cpp",
    ("the originals of a finished playlist stay where they are", "    recovery_.keep(named);\n", ""),
)
behaviour(
    RECORDING, "Shelving.NothingIsChosenWhileATakeRuns", "recording/take_session.cpp",
    ("another take is chosen while one runs", "!allowed().takes || !reserve", "!reserve"),
)
behaviour(
    WIDGETS, "TheWaveform.HandlesCutBothEnds", "widgets/waveform.cpp",
    ("the handles are each other's", "return toBegin < toEnd ? Handle::Begin", "return toBegin > toEnd ? Handle::Begin"),
)
behaviour(
    WIDGETS, "TheWaveform.WhatMayNotBeCutHasNoHandles", "widgets/waveform.cpp",
    ("a filed take has handles", "if (!isCuttable_ || length_ <= 0) {\n        return Handle::None;",
     "if (length_ <= 0) {\n        return Handle::None;"),
)
behaviour(
    WIDGETS, "TheWaveform.AGrowingSoundIsPaintedOnlyWhereItGrows", "widgets/waveform.cpp",
    ("a growing sound is painted whole",
     "    update(QRectF(from - 2, 0, to - from + 4, height()).toAlignedRect());\n    announceValue",
     "    static_cast<void>(from + to);\n    update();\n    announceValue"),
)

# --- what is dropped, and how a microphone is spoken into

behaviour(
    PRODUCTION, "Dropping.*", "production/sound_drop.cpp",
    ("a dropped file replaces a voice track unasked", "if (!mayReplace(job)) {", "if (false && !mayReplace(job)) {"),
    ("a drop goes on beside a take that began meanwhile", "!problem.isEmpty() || !(import_", "!(import_"),
    ("a dropped file that holds no sound is filed", "return lengths.of(0) >= 0;", "return true;"),
)
behaviour(
    RECORDING, "InputLevel.OneClipIsTooLoudForThreeSeconds", "recording/input_level.cpp",
    ("one clip is nothing", "if (highest >= clippedLevel) {", "if (std::min(highest, loud) >= clippedLevel) {"),
)
behaviour(
    RECORDING, "InputLevel.DoesNotFlickerAtALimit", "recording/input_level.cpp",
    ("the verdict flickers at a limit", "sluggishness = 1.5F", "sluggishness = 0.0F"),
)
