// The solution-time rule.
#include "harness/solution.h"

#include <gtest/gtest.h>

namespace {

TEST(SolutionClock, CountsFromTheLastTimeTheSolutionBecameBest) {
    SolutionClock found;
    found.shown(false, 0);
    found.shown(true, 32000);  // found at 0:32
    found.shown(true, 40000);  // shown again at the next depth: still since 0:32
    EXPECT_TRUE(found.solved());
    EXPECT_EQ(found.solutionMs(), 32000u);

    SolutionClock dropped = found;
    dropped.shown(false, 116000);  // dropped at 1:56
    EXPECT_FALSE(dropped.solved());
    dropped.shown(true, 436000);  // taken again at 7:16 and kept
    dropped.shown(true, 590000);
    EXPECT_TRUE(dropped.solved());
    EXPECT_EQ(dropped.solutionMs(), 436000u);

    // Two moves that both solve: switching between them keeps the first time.
    SolutionClock either;
    either.shown(true, 5);
    either.shown(true, 9);
    EXPECT_EQ(either.solutionMs(), 5u);
    EXPECT_FALSE(SolutionClock().solved());
}

}  // namespace
