// The solution-time rule, and result files written and read back.
#include <gtest/gtest.h>

#include <string>

#include "harness/solution.h"
#include "harness/tsr.h"
#include "scratch_dir.h"

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

    SolutionClock lost = found;
    lost.shown(false, 599000);
    EXPECT_FALSE(lost.solved());

    // Two moves that both solve: switching between them keeps the first time.
    SolutionClock either;
    either.shown(true, 5);
    either.shown(true, 9);
    EXPECT_EQ(either.solutionMs(), 5u);
    EXPECT_FALSE(SolutionClock().solved());
}

PositionResult position(int number, const char* id, PositionOutcome outcome, uint32_t ms, uint64_t nodes = 0,
                        const char* move = "-") {
    PositionResult p;
    p.number = number;
    p.id = id;
    p.outcome = outcome;
    p.ms = ms;
    p.nodes = nodes;
    p.move = move;
    return p;
}

TEST(TsrFile, RoundTripKeepsEveryField) {
    SuiteResults written;
    written.file = "../suites/bt2630.epd";
    written.seconds = 0.25;
    written.positions = {position(1, "test 1", PositionOutcome::SOLVED, 32150, 51234567890ull, "Nf5xg7"),
                         position(2, "test 2", PositionOutcome::UNSOLVED, 250, 98, "o-o-o"),
                         position(3, "#3", PositionOutcome::ERROR, 0)};
    const ScratchDir directory("tsr");
    const std::string path = directory.file("round_trip.tsr");
    ASSERT_TRUE(writeTsr(path, written));
    SuiteResults read;
    std::string error;
    ASSERT_TRUE(readTsr(path, read, error)) << error;
    EXPECT_EQ(read.file, written.file);
    EXPECT_EQ(read.seconds, written.seconds);
    ASSERT_EQ(read.positions.size(), 3u);
    for (size_t i = 0; i < 3; ++i) {
        const PositionResult &a = written.positions[i], &b = read.positions[i];
        EXPECT_EQ(b.number, a.number);
        EXPECT_EQ(b.id, a.id);
        EXPECT_EQ(b.outcome, a.outcome);
        EXPECT_EQ(b.ms, a.ms);
        EXPECT_EQ(b.nodes, a.nodes);
        EXPECT_EQ(b.move, a.move);
    }
    EXPECT_EQ(read.solved(), 1);
    EXPECT_EQ(read.solvedMs(), 32150u);
}

}  // namespace
