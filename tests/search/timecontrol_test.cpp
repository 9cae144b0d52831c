#include "search/timecontrol.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/platform.h"

namespace {

std::vector<int> limits(const TimeControl& tc) {
    return {std::begin(tc.phaseLimit), std::end(tc.phaseLimit)};
}

// Pretends the search started ms milliseconds ago.
void backdate(TimeControl& tc, uint32_t ms) {
    tc.startTick = platform::getTickCount() - ms;
}

TEST(TimeControlTest, ClockAllocation) {
    TimeControl tc;
    // No moves to go: 40 moves; base 1500, b 1875; 0.5 x 1875 = 937.5 rounds to even 938.
    tc.setClock(0, 60000, 0);
    EXPECT_EQ(limits(tc), (std::vector<int>{469, 938, 1875, 3750, 7500}));

    // Pondering spreads the clock over 30 moves.
    tc.canPonder = true;
    tc.setClock(0, 60000, 0);
    EXPECT_EQ(limits(tc), (std::vector<int>{625, 1250, 2500, 5000, 10000}));
    tc.canPonder = false;

    // Increment joins the base; 0.25 x 1250 = 312.5 rounds to even 312; long phases capped at the clock.
    tc.setClock(5, 4000, 200);
    EXPECT_EQ(limits(tc), (std::vector<int>{312, 625, 1250, 2500, 4000}));

    // A short clock caps every phase at what is there.
    tc.setClock(1, 1000, 0);
    EXPECT_EQ(limits(tc), (std::vector<int>{312, 625, 1000, 1000, 1000}));

    // The reserve comes off the clock; a clock below the reserve leaves 100 ms.
    tc.reserveMs = 1000;
    tc.setClock(1, 500, 0);
    EXPECT_EQ(limits(tc), (std::vector<int>{31, 62, 100, 100, 100}));
    tc.setClock(1, 5000, 0);
    EXPECT_EQ(tc.phaseLimit[2], 4000);
}

TEST(TimeControlTest, OutOfBookBonus) {
    TimeControl tc;
    tc.outOfBook = 1;  // base 1500 doubled
    tc.setClock(40, 60000, 0);
    EXPECT_EQ(tc.phaseLimit[2], 3750);
    tc.outOfBook = 3;  // base 1500 + 750 = 2250, b 2812
    tc.setClock(40, 60000, 0);
    EXPECT_EQ(limits(tc), (std::vector<int>{703, 1406, 2812, 5624, 11248}));
    tc.outOfBook = 5;  // too long out of book
    tc.setClock(40, 60000, 0);
    EXPECT_EQ(tc.phaseLimit[2], 1875);
    tc.outOfBook = 1;  // close to the time control: no bonus
    tc.setClock(7, 7000, 0);
    EXPECT_EQ(tc.phaseLimit[2], 1250);
}

TEST(TimeControlTest, MoveTimeAndIterations) {
    TimeControl tc;
    tc.setMoveTime(3000);
    EXPECT_EQ(limits(tc), (std::vector<int>{3000, 3000, 3000, 3000, 3000}));
    tc.start();
    EXPECT_EQ(tc.limit, 3000u);
    backdate(tc, 2000);
    EXPECT_TRUE(tc.nextIteration(0));
    backdate(tc, 4000);
    EXPECT_FALSE(tc.nextIteration(0));

    tc.reserveMs = 500;
    tc.setMoveTime(300);
    EXPECT_EQ(tc.phaseLimit[0], 100);

    // With the default factors a new iteration needs half the nominal time left: 1875 x 0.5 = 938.
    TimeControl clock;
    clock.setClock(0, 60000, 0);
    clock.start();
    backdate(clock, 500);
    EXPECT_TRUE(clock.nextIteration(0));
    backdate(clock, 1500);
    EXPECT_FALSE(clock.nextIteration(0));
    clock.infinite = true;
    EXPECT_TRUE(clock.nextIteration(0));
}

TEST(TimeControlTest, PhasesMoveTheLiveLimit) {
    TimeControl tc;
    tc.setClock(0, 60000, 0);
    tc.start();
    EXPECT_EQ(tc.phase, 2);
    EXPECT_EQ(tc.limit, 1875u);

    tc.enterFailHighPhase();  // no iteration yet: stays
    EXPECT_EQ(tc.limit, 1875u);
    tc.setIteration(1);
    tc.enterFailHighPhase();
    EXPECT_EQ(tc.phase, 3);
    EXPECT_EQ(tc.limit, 3750u);
    tc.leaveFailHighPhase();
    EXPECT_EQ(tc.limit, 1875u);

    tc.setIteration(3);
    tc.nextIteration(300);
    tc.checkScoreDrop(100);  // a drop outside -99..99 earns no panic time
    EXPECT_EQ(tc.phase, 2);
    tc.nextIteration(40);
    tc.checkScoreDrop(30);  // a drop of 10 is not enough
    EXPECT_EQ(tc.phase, 2);
    tc.checkScoreDrop(20);
    EXPECT_EQ(tc.phase, 4);
    EXPECT_EQ(tc.limit, 7500u);
    tc.enterFailHighPhase();  // panic outranks a fail high
    EXPECT_EQ(tc.phase, 4);
    tc.nextIteration(20);
    EXPECT_EQ(tc.phase, 2);
    EXPECT_EQ(tc.limit, 1875u);
    EXPECT_EQ(tc.prevScore, 40);
    EXPECT_EQ(tc.lastScore, 20);

    // A new search forgets the iteration and the scores.
    tc.start();
    EXPECT_EQ(tc.iteration, 0);
    EXPECT_EQ(tc.lastScore, 0);
}

TEST(TimeControlTest, PonderhitTurnsOnTheClock) {
    TimeControl tc;
    tc.setClock(0, 60000, 0);
    tc.infinite = true;
    tc.start();
    EXPECT_EQ(tc.limit, TimeControl::NO_LIMIT);
    tc.setIteration(2);
    tc.enterFailHighPhase();
    EXPECT_EQ(tc.limit, TimeControl::NO_LIMIT);
    tc.ponderhit();
    EXPECT_FALSE(tc.infinite);
    EXPECT_EQ(tc.limit, 3750u);  // the phase the search was in
}

}  // namespace
