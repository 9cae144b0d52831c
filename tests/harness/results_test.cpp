// The solution-time rule, and result files written, read back and compared.
#include <gtest/gtest.h>

#include <string>

#include "harness/compare.h"
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

TEST(TsrFile, DamagedFilesAreRefusedWithTheLine) {
    const ScratchDir directory("tsr");
    const std::string path = directory.file("damaged.tsr");
    SuiteResults results;
    std::string error;
    EXPECT_FALSE(readTsr(directory.file("no_such_file.tsr"), results, error));
    EXPECT_NE(error.find("cannot open"), std::string::npos);
    for (const char* bad :
         {"1 solved 100 5 e2e4\n", "1 maybe 100 5 e2e4 x\n", "1 solved x 5 e2e4 x\n", "7\n"}) {
        writeText(path, "# comment\nfile a.epd\n\n" + std::string(bad));
        EXPECT_FALSE(readTsr(path, results, error)) << bad;
        EXPECT_NE(error.find("line 4"), std::string::npos) << error;
    }
    // Comments, unknown keys and Windows line ends are read over.
    writeText(path, "# x\r\nmachine fast\r\nseconds 2\r\n4 unsolved 2000 7 Kd1 BT2450.04\r\n");
    ASSERT_TRUE(readTsr(path, results, error)) << error;
    EXPECT_EQ(results.seconds, 2);
    ASSERT_EQ(results.positions.size(), 1u);
    EXPECT_EQ(results.positions[0].id, "BT2450.04");
}

TEST(TsrFile, NamedAfterTheEpdFileInTheCurrentDirectory) {
    EXPECT_EQ(tsrName("C:\\suites\\BT2450.EPD"), "BT2450.tsr");
    EXPECT_EQ(tsrName("my.suite.epd"), "my.suite.tsr");
    EXPECT_EQ(tsrName("dir.v2/.hidden"), ".hidden.tsr");
}

TEST(TsrCompare, SolvedByOneOnlyAndTimeDifferences) {
    SuiteResults a, b;
    a.positions = {
        position(1, "p1", PositionOutcome::SOLVED, 2000), position(2, "p2", PositionOutcome::SOLVED, 500),
        position(3, "p3", PositionOutcome::UNSOLVED, 9000), position(4, "p4", PositionOutcome::UNSOLVED, 9),
        position(5, "p5", PositionOutcome::SOLVED, 100)};
    b.positions = {
        position(2, "p2", PositionOutcome::SOLVED, 1750), position(1, "p1", PositionOutcome::SOLVED, 1000),
        position(3, "p3", PositionOutcome::SOLVED, 4000), position(4, "p4", PositionOutcome::ERROR, 0),
        position(6, "p6", PositionOutcome::SOLVED, 300)};
    EXPECT_EQ(compareResults(a, "a.tsr", b, "b.tsr").text,
              "a: a.tsr, 3 of 5 solved\n"
              "b: b.tsr, 4 of 5 solved\n"
              "id                            a          b  b - a\n"
              "p1                       2.00 s     1.00 s  -1.00 s\n"
              "p2                       0.50 s     1.75 s  +1.25 s\n"
              "p3                            -     4.00 s  solved only by b\n"
              "p5                       0.10 s             only in a\n"
              "p6                                  0.30 s  only in b\n"
              "solved by both 2 (a 2.50 s, b 2.75 s), only by a 0, only by b 1, by neither 1, in one file "
              "only 2\n");
    // Swapping the files swaps the sides.
    const Comparison swapped = compareResults(b, "b.tsr", a, "a.tsr");
    EXPECT_EQ(swapped.onlyA, 1);
    EXPECT_EQ(swapped.onlyB, 0);
}

}  // namespace
