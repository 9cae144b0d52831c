// The EPD runner with the real search at short times: every published suite end to end, "bm" and "am".
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "environment.h"
#include "harness/epdrun.h"
#include "harness/tsr.h"
#include "scratch_dir.h"
#include "search/searchthread.h"
#include "search/tt.h"

namespace {

class EpdRunTest : public testing::Test {
  protected:
    static void SetUpTestSuite() { tt.alloc(Tt::MIN_KILOBYTES); }

    // Runs the file, capturing what the run prints.
    EpdRun run(const std::string& path, double seconds) {
        EpdRun result;
        FILE* out = std::tmpfile();
        EXPECT_TRUE(runEpdFile(path, seconds, result, out)) << path;
        std::rewind(out);
        printed.clear();
        for (int c; (c = std::fgetc(out)) != EOF;) printed += static_cast<char>(c);
        std::fclose(out);
        return result;
    }

    std::string write(const char* name, const std::string& content) {
        return writeFile(directory.path(), name, content);
    }

    ScratchDir directory{"epdrun"};
    std::string printed;
};

TEST_F(EpdRunTest, EveryPublishedSuiteRunsEndToEnd) {
    const double seconds = sanitized() ? 0.01 : 0.03;
    const struct {
        const char* file;
        const char* suite;
        size_t positions;
    } SUITES[] = {
        {"lct2", "LCT II", 35}, {"bt2450", "BT2450", 30}, {"bt2630", "BT2630", 30}, {"bs2830", "BS2830", 27}};
    for (const auto& s : SUITES) {
        const std::string path = sharedData("suites/") + s.file + ".epd";
        SKIP_WITHOUT(path);
        const EpdRun r = run(path, seconds);
        ASSERT_NE(r.suite, nullptr) << s.file;
        EXPECT_STREQ(r.suite->name, s.suite);
        ASSERT_EQ(r.results.positions.size(), s.positions) << printed;
        for (const PositionResult& p : r.results.positions) {
            EXPECT_NE(p.outcome, PositionOutcome::ERROR) << s.file << " " << p.id;
            EXPECT_NE(p.move, "-") << s.file << " " << p.id;
            EXPECT_GT(p.nodes, 0u);
        }
        EXPECT_EQ(r.results.positions[0].number, 1);
        EXPECT_TRUE(calcElo(*r.suite, r.results)) << s.file;
        EXPECT_NE(printed.find(std::string(s.file) + ".epd: " + std::to_string(s.positions) + " positions"),
                  std::string::npos)
            << printed;
    }
}

TEST_F(EpdRunTest, SolvedOnlyByABestMoveThatIsNotAvoided) {
    // White wins the queen on d5: Qxd5 is what any search plays.
    const std::string path = write("am.epd",
                                   "4k3/8/8/3q4/8/8/3Q4/4K3 w - - bm Qxd5; id \"bm\";\n"
                                   "4k3/8/8/3q4/8/8/3Q4/4K3 w - - am Qxd5; id \"am\";\n"
                                   "4k3/8/8/3q4/8/8/3Q4/4K3 w - - am Ke2 Kf2; id \"am other\";\n"
                                   "4k3/8/8/3q4/8/8/3Q4/4K3 w - - bm Qd2d5 Ke2; am Qxd5; id \"both\";\n");
    // The run borrows the game board and puts it back.
    gameBoard.setFen("8/8/8/8/8/8/k7/K7 b - -");
    const uint64_t hash = gameBoard.hash;
    const EpdRun r = run(path, 0.05);
    EXPECT_EQ(gameBoard.hash, hash);
    EXPECT_EQ(gameBoard.sideToMove, 1u);
    ASSERT_EQ(r.results.positions.size(), 4u) << printed;
    EXPECT_EQ(r.suite, nullptr);
    EXPECT_EQ(r.results.positions[0].outcome, PositionOutcome::SOLVED) << printed;
    EXPECT_EQ(r.results.positions[1].outcome, PositionOutcome::UNSOLVED) << printed;
    EXPECT_EQ(r.results.positions[2].outcome, PositionOutcome::SOLVED) << printed;
    EXPECT_EQ(r.results.positions[3].outcome, PositionOutcome::UNSOLVED) << printed;
    EXPECT_EQ(r.results.positions[0].move, "Qd2xd5");
    // A solution shown from the first iteration on counts from then; an unsolved position records the
    // time searched. (No fixed bound for the first: a loaded machine may take long over one iteration.)
    EXPECT_LE(r.results.positions[0].ms, r.results.positions[1].ms);
    EXPECT_GE(r.results.positions[1].ms, 40u);
    EXPECT_NE(printed.find("bm Qd2d5 Ke2; am Qxd5"), std::string::npos) << printed;
}

}  // namespace
