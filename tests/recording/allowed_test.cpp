#include "recording/allowed.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

struct Row {
    const char *what;
    SessionState state;
    DeskMode mode;
    StepFacts step;
    TakeFacts take;
    Allowed expected; ///< rec, play, save, import, multivoice, lists, grid, playlist tools, in context, whole hour
};

constexpr DeskMode desk{false, true};
constexpr DeskMode recorder{true, false};
constexpr StepFacts slot{true, true};
constexpr StepFacts music{false, true};
constexpr StepFacts nowhere{false, false};
constexpr TakeFacts nothing{false, false, {}};
constexpr TakeFacts waiting{true, true, {}};
constexpr TakeFacts filed{true, false, {}};

const Row rows[] = {
    {"start, nothing selected",
     SessionState::Idle,
     desk,
     nowhere,
     nothing,
     {false, false, false, false, true, true, true, true, false, false}},
    {"a slot to do",
     SessionState::Idle,
     desk,
     slot,
     nothing,
     {true, false, false, true, true, true, true, true, false, true}},
    {"a slot with a take",
     SessionState::Idle,
     desk,
     slot,
     waiting,
     {true, true, true, true, true, true, true, true, true, true}},
    {"a slot that is done",
     SessionState::Idle,
     desk,
     slot,
     filed,
     {true, true, false, true, true, true, true, true, true, true}},
    {"counting down",
     SessionState::CountingDown,
     desk,
     slot,
     waiting,
     {true, false, false, true, true, true, true, true, false, false}},
    {"recording",
     SessionState::Recording,
     desk,
     slot,
     waiting,
     {true, false, false, true, true, true, true, true, false, false}},
    {"processing",
     SessionState::Processing,
     desk,
     slot,
     waiting,
     {false, false, false, false, true, false, false, true, false, false}},
    {"listening",
     SessionState::Listening,
     desk,
     slot,
     waiting,
     {false, true, false, false, true, true, true, true, false, false}},
    {"listening in context",
     SessionState::Joining,
     desk,
     slot,
     waiting,
     {false, false, false, false, true, true, true, true, true, true}},
    {"music, in a playlist",
     SessionState::Idle,
     desk,
     music,
     filed,
     {false, true, false, false, true, true, true, true, false, true}},
    {"filing",
     SessionState::Filing,
     desk,
     slot,
     waiting,
     {false, false, false, false, true, false, false, true, false, false}},
    {"no station list",
     SessionState::Idle,
     {false, false},
     slot,
     nothing,
     {true, false, false, true, false, true, true, true, false, true}},
    {"the plain recorder",
     SessionState::Idle,
     recorder,
     music,
     nothing,
     {true, false, false, false, false, false, false, false, false, false}},
    {"the plain recorder with a take",
     SessionState::Idle,
     recorder,
     music,
     waiting,
     {true, true, true, false, false, false, false, false, false, false}},
    {"the plain recorder records",
     SessionState::Recording,
     recorder,
     music,
     nothing,
     {true, false, false, false, false, false, false, false, false, false}},
};

} // namespace

// A take can be edited exactly while it can be saved.
TEST(WhatIsAllowed, EditsGoWithTheTakeThatWaits) {
    constexpr TakeFacts editable{true, true, {true, true, true}};
    for (const SessionState state : {SessionState::Idle, SessionState::CountingDown, SessionState::Recording,
                                     SessionState::Processing, SessionState::Listening, SessionState::Filing}) {
        const Allowed may = allowed(state, desk, slot, editable);
        EXPECT_EQ(may.cmdFit, state == SessionState::Idle);
        EXPECT_EQ(may.cmdUndo, state == SessionState::Idle);
        EXPECT_EQ(may.cmdRedo, state == SessionState::Idle);
    }
    const Allowed filedOne = allowed(SessionState::Idle, desk, slot, {true, false, {true, true, true}});
    EXPECT_FALSE(filedOne.cmdFit || filedOne.cmdUndo || filedOne.cmdRedo);
    EXPECT_TRUE(allowed(SessionState::Idle, desk, slot, {true, true, {true, false, false}}).cmdFit);
    EXPECT_FALSE(allowed(SessionState::Idle, desk, slot, {true, true, {false, true, true}}).cmdFit);
    EXPECT_FALSE(allowed(SessionState::Idle, desk, slot, {true, true, {true, false, true}}).cmdUndo);
    EXPECT_FALSE(allowed(SessionState::Idle, desk, slot, {true, true, {true, true, false}}).cmdRedo);
}

TEST(WhatIsAllowed, FollowsFromStateModeStepAndTake) {
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        const Allowed may = allowed(row.state, row.mode, row.step, row.take);
        EXPECT_EQ(may.cmdRec, row.expected.cmdRec);
        EXPECT_EQ(may.cmdPlay, row.expected.cmdPlay);
        EXPECT_EQ(may.cmdSave, row.expected.cmdSave);
        EXPECT_EQ(may.cmdImport, row.expected.cmdImport);
        EXPECT_EQ(may.cmdMultivoice, row.expected.cmdMultivoice);
        EXPECT_EQ(may.lists, row.expected.lists);
        EXPECT_EQ(may.dbgLijst, row.expected.dbgLijst);
        EXPECT_EQ(may.playlistTools, row.expected.playlistTools);
        EXPECT_EQ(may.cmdInVerband, row.expected.cmdInVerband);
        EXPECT_EQ(may.cmdHeleUur, row.expected.cmdHeleUur);
    }
}

TEST(WhatIsAllowed, ACardsDelayIsMeasuredWhileNothingRuns) {
    for (const SessionState state :
         {SessionState::CountingDown, SessionState::Recording, SessionState::Processing, SessionState::Listening,
          SessionState::Filing, SessionState::Joining, SessionState::Measuring}) {
        EXPECT_FALSE(allowed(state, desk, slot, waiting).cmdDelay);
    }
    EXPECT_TRUE(allowed(SessionState::Idle, desk, nowhere, nothing).cmdDelay);
    EXPECT_FALSE(allowed(SessionState::Idle, recorder, music, nothing).cmdDelay) << "there nothing is heard along";
    const Allowed may = allowed(SessionState::Measuring, desk, slot, waiting);
    EXPECT_FALSE(may.cmdRec || may.cmdPlay || may.cmdSave || may.cmdImport || may.lists || may.dbgLijst);
    EXPECT_FALSE(may.cmdInVerband || may.cmdHeleUur || may.takes || may.cut);
}

TEST(WhatIsAllowed, AnotherTakeOfTheStepIsChosenWhileNothingRuns) {
    for (const SessionState state : {SessionState::Idle, SessionState::CountingDown, SessionState::Recording,
                                     SessionState::Processing, SessionState::Listening, SessionState::Filing}) {
        EXPECT_EQ(allowed(state, desk, slot, filed).takes, state == SessionState::Idle);
    }
    EXPECT_FALSE(allowed(SessionState::Idle, desk, music, nothing).takes);
    EXPECT_FALSE(allowed(SessionState::Idle, recorder, music, waiting).takes);
}

TEST(WhatIsAllowed, ATakeThatCanBeSavedIsCutWhileNothingElseHappensToIt) {
    for (const SessionState state : {SessionState::CountingDown, SessionState::Recording, SessionState::Processing,
                                     SessionState::Filing, SessionState::Joining}) {
        EXPECT_FALSE(allowed(state, desk, slot, waiting).cut);
    }
    EXPECT_TRUE(allowed(SessionState::Idle, desk, slot, waiting).cut);
    EXPECT_TRUE(allowed(SessionState::Listening, desk, slot, waiting).cut) << "what is dragged is heard";
    EXPECT_TRUE(allowed(SessionState::Idle, recorder, music, waiting).cut);
    EXPECT_FALSE(allowed(SessionState::Idle, desk, slot, filed).cut);
}

TEST(Joystick, ThreeOfItsButtonsDoWhatTheWindowsWouldDo) {
    Allowed may;
    for (int button = -1; button <= 9; ++button) {
        EXPECT_EQ(pressed(button, may), DeskKey::None) << button;
    }
    may.cmdRec = may.cmdPlay = may.cmdSave = true;
    EXPECT_EQ(pressed(1, may), DeskKey::Record);
    EXPECT_EQ(pressed(2, may), DeskKey::Play);
    EXPECT_EQ(pressed(4, may), DeskKey::Save);
    for (const int button : {-1, 0, 3, 5, 9}) {
        EXPECT_EQ(pressed(button, may), DeskKey::None) << button;
    }
    may.cmdPlay = false;
    EXPECT_EQ(pressed(2, may), DeskKey::None);
    EXPECT_EQ(pressed(4, may), DeskKey::Save);
}

// The stages run again on what was recorded while nothing else runs; the two are compared while one is heard.
TEST(WhatIsAllowed, TheOriginalIsWorkedOnAtRestAndHeardWhileListening) {
    constexpr TakeFacts withOriginal{true, true, {false, false, false, true}};
    for (const SessionState state :
         {SessionState::Idle, SessionState::CountingDown, SessionState::Recording, SessionState::Processing,
          SessionState::Listening, SessionState::Joining, SessionState::Filing}) {
        const Allowed may = allowed(state, desk, slot, withOriginal);
        EXPECT_EQ(may.cmdOpnieuw, state == SessionState::Idle);
        EXPECT_EQ(may.cmdDroog, state == SessionState::Listening);
    }
    for (const SessionState state : {SessionState::Idle, SessionState::Listening}) {
        const Allowed withoutOriginal = allowed(state, desk, slot, {true, true, {true, true, true, false}});
        EXPECT_FALSE(withoutOriginal.cmdOpnieuw || withoutOriginal.cmdDroog);
        const Allowed filedOne = allowed(state, desk, slot, {true, false, {false, false, false, true}});
        EXPECT_FALSE(filedOne.cmdOpnieuw || filedOne.cmdDroog);
    }
}

} // namespace orvel
