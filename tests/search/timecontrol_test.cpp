// The time control as the search sees it: limits that never spend more than the clock holds, and a
// ponderhit that turns the clock on in the phase the search is in.
#include "search/timecontrol.h"

#include <gtest/gtest.h>

namespace {

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
}

// The overhead comes off a clock above twice the overhead; a shorter one is halved, but never below a
// tenth of a second. The default overhead is three seconds.
TEST(TimeControlTest, ShortClocksAreHalvedButNotBelowATenthOfASecond) {
    struct Case {
        int clock, overhead, handedOn;
    };
    for (const Case c :
         {Case{10000, 3000, 7000}, Case{6001, 3000, 3001}, Case{6000, 3000, 3000}, Case{4000, 3000, 2000},
          Case{150, 3000, 100}, Case{40, 3000, 100}, Case{10000, 100, 9900}, Case{201, 100, 101},
          Case{200, 100, 100}, Case{150, 0, 150}}) {
        TimeControl tc;
        tc.allocate(ClockLimits{.clockMs = c.clock, .overheadMs = c.overhead});
        EXPECT_EQ(tc.clockMs, c.handedOn) << c.clock << " less " << c.overhead;
    }
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
