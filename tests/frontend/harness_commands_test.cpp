// The harness commands at the console, through the engine binary: runs, result files in the working
// directory, comparisons, the colour-flip check and the self tests.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "engine_process.h"
#include "environment.h"

namespace {

std::string session(const std::string& input, const std::string& directory) {
    return runConsole(directory, "set threads 1\n" + input);
}

TEST(HarnessCommands, RunWritesItsResultFileAndCompares) {
    const std::string directory = scratchDirectory("harness_run");
    // Two positions and two damaged lines, in a file named after a suite: the suite is known, but the
    // file does not hold its positions, so there is no estimate. The damage does not stop the run, a
    // comment and a blank line are no position, and the last line counts without its newline.
    const std::string epd = writeFile(directory, "bt2450.epd",
                                      "# a comment\n"
                                      "4k3/8/8/3q4/8/8/3Q4/4K3 w - - bm Qxd5; id \"queen\";\n"
                                      "4k3/8/8/8/8/8/8/4K3 w - - id \"no moves\";\n"
                                      "\n"
                                      "6k1/5ppp/8/8/8/8/8/R5K1 w - - am Ra8#; id \"no mate\";\n"
                                      "4k3/8/8/8/8/8/8/4K3 w - - bm Kd9;");
    std::filesystem::create_directory(directory + "/work");
    const std::string out = session("epd " + epd + " 0.05\n", directory + "/work");
    EXPECT_TRUE(contains(out, "% epd " + epd + ": 4 positions, 0.05 s each, suite BT2450\n")) << out;
    EXPECT_TRUE(contains(out, "\n  1 queen            solved ")) << out;
    EXPECT_TRUE(contains(out, "\n  2 no moves         error: line 3: no bm or am operation\n")) << out;
    EXPECT_TRUE(contains(out, "\n  4 #4               error: line 6: not a legal move in bm: Kd9\n")) << out;
    EXPECT_TRUE(contains(out, "\nsolved 1 of 4, solution time ")) << out;
    EXPECT_TRUE(contains(
        out, ", 2 positions in error\nBT2450: no Elo estimate: the suite has 30 positions, the file 4\n"))
        << out;
    EXPECT_TRUE(contains(out, "results written to bt2450.tsr\n")) << out;

    const std::string tsr = readText(directory + "/work/bt2450.tsr");
    EXPECT_TRUE(contains(tsr, "file " + epd + "\nseconds 0.05\n1 solved ")) << tsr;

    writeFile(directory + "/work", "other.tsr", "1 unsolved 50 9 Kd1 queen\n2 solved 7 9 Ra1b1 no mate\n");
    const std::string compared = session("tsrcompare bt2450.tsr other.tsr\n", directory + "/work");
    EXPECT_TRUE(contains(compared, "a: bt2450.tsr, 1 of 4 solved\nb: other.tsr, 1 of 2 solved\n"))
        << compared;
    EXPECT_TRUE(contains(compared, "only by a 1, only by b 1, by neither 0, in one file only 2\n"))
        << compared;
}

TEST(HarnessCommands, VflipAndSelftest) {
    const std::string directory = scratchDirectory("harness_checks");
    const std::string out = session("vflip " + testData("suite_positions.epd") + "\nselftest\n", directory);
    EXPECT_TRUE(contains(out, "% vflip: 6 positions, 0 not equal\n")) << out;
    EXPECT_FALSE(contains(out, "VFLIP EVAL NOT EQUAL")) << out;
    EXPECT_TRUE(contains(out, "% selftest threads: pass (")) << out;
    EXPECT_TRUE(contains(out, "\nselftest strings: pass (")) << out;
    // The timers depend on the machine's load; only their line is required here.
    EXPECT_TRUE(contains(out, "\nselftest timers: ")) << out;
    EXPECT_TRUE(contains(out, "\nselftest: ")) << out;
}

}  // namespace
