// The time control as the search sees it: limits that never spend more than the clock holds, phases
// that a fail high or a falling score enter and the next iteration leaves, and a ponderhit that turns
// the clock on in the phase the search is in.
#include "search/timecontrol.h"

#include <gtest/gtest.h>

#include "platform/platform.h"

namespace {

// Pretends the search started ms milliseconds ago.
void backdate(TimeControl& tc, uint32_t ms) {
    tc.startTick = platform::getTickCount() - ms;
}

TEST(TimeControlTest, PhasesGrowAndNeverPassTheClock) {
    for (int reserve : {0, 1000})
        for (int moves : {0, 1, 5, 40})
            for (int clock : {50, 500, 5000, 60000, 3600000})
                for (int increment : {0, 200}) {
                    TimeControl tc;
                    tc.reserveMs = reserve;
                    tc.setClock(moves, clock, increment);
                    const int available = clock >= reserve ? clock - reserve : 100;
                    for (int i = 1; i < TimeControl::PHASES; ++i)
                        EXPECT_LE(tc.phaseLimit[i - 1], tc.phaseLimit[i]) << clock << " " << moves;
                    EXPECT_LE(tc.phaseLimit[TimeControl::PANIC_PHASE], available) << clock << " " << reserve;
                }
    // Pondering and the first moves out of book earn more time; later ones do not.
    TimeControl plain, pondering, outOfBook, later;
    pondering.canPonder = true;
    outOfBook.outOfBook = 1;
    later.outOfBook = 5;
    for (TimeControl* tc : {&plain, &pondering, &outOfBook, &later}) tc->setClock(0, 60000, 0);
    EXPECT_GT(pondering.phaseLimit[TimeControl::NORMAL_PHASE], plain.phaseLimit[TimeControl::NORMAL_PHASE]);
    EXPECT_GT(outOfBook.phaseLimit[TimeControl::NORMAL_PHASE], plain.phaseLimit[TimeControl::NORMAL_PHASE]);
    EXPECT_EQ(later.phaseLimit[TimeControl::NORMAL_PHASE], plain.phaseLimit[TimeControl::NORMAL_PHASE]);
}

TEST(TimeControlTest, FailHighAndScoreDropMoveTheLiveLimit) {
    TimeControl tc;
    tc.setClock(0, 60000, 0);
    tc.start();
    const auto limitOf = [&](int phase) { return uint32_t(tc.phaseLimit[phase]); };
    EXPECT_EQ(tc.limit, limitOf(TimeControl::NORMAL_PHASE));
    tc.enterFailHighPhase();  // no iteration finished yet: stays
    EXPECT_EQ(tc.limit, limitOf(TimeControl::NORMAL_PHASE));
    tc.setIteration(1);
    tc.enterFailHighPhase();
    EXPECT_EQ(tc.limit, limitOf(TimeControl::FAIL_HIGH_PHASE));
    tc.leaveFailHighPhase();
    EXPECT_EQ(tc.limit, limitOf(TimeControl::NORMAL_PHASE));

    tc.setIteration(3);
    tc.nextIteration(300);
    tc.checkScoreDrop(100);  // a clear advantage earns no panic time
    EXPECT_EQ(tc.phase, TimeControl::NORMAL_PHASE);
    tc.nextIteration(40);
    tc.checkScoreDrop(30);  // nor does a small drop
    EXPECT_EQ(tc.phase, TimeControl::NORMAL_PHASE);
    tc.checkScoreDrop(20);
    EXPECT_EQ(tc.limit, limitOf(TimeControl::PANIC_PHASE));
    tc.enterFailHighPhase();  // panic outranks a fail high
    EXPECT_EQ(tc.phase, TimeControl::PANIC_PHASE);
    tc.nextIteration(20);
    EXPECT_EQ(tc.limit, limitOf(TimeControl::NORMAL_PHASE));

    // No new iteration once its fair share of the time is gone, unless there is no limit.
    backdate(tc, 0);
    EXPECT_TRUE(tc.nextIteration(0));
    backdate(tc, limitOf(TimeControl::NORMAL_PHASE) + 1);
    EXPECT_FALSE(tc.nextIteration(0));
    tc.infinite = true;
    EXPECT_TRUE(tc.nextIteration(0));
}

TEST(TimeControlTest, PonderhitTurnsOnTheClockInThePhaseReached) {
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
    EXPECT_EQ(tc.limit, uint32_t(tc.phaseLimit[TimeControl::FAIL_HIGH_PHASE]));
}

}  // namespace
