// Start-up through the real binary: the ini file and the options it sets.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "uci_session.h"

namespace {

// Also an ini file with Windows line ends, and one whose last line has no newline.
TEST(Startup, ABookThatCannotBeReadIsReportedAndTheEngineRunsOn) {
    std::string directory = scratchDirectory("book");
    writeFile(directory, "kelvra.ini", "search.nthreads=1\r\nbook.file = missing.bbk \r\n");
    EngineRun run = runEngine({}, "q\n", directory);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.output.find("inifile=kelvra.ini\ncould not read book file: missing.bbk\n"),
              std::string::npos)
        << run.output;
    writeFile(directory, "last.ini", "search.nthreads=1\r\nbook.file=last.bbk");
    run = runEngine({"last.ini"}, "q\n", directory);
    EXPECT_NE(run.output.find("could not read book file: last.bbk\n"), std::string::npos) << run.output;
}

// The share of the table (in percent) that one search to depth 8 takes over, from the statistics of
// the protocol log.
double tableTakenBySearch(const std::string& name, const std::string& ini) {
    UciSession session(name, ini);
    session.exchange("position startpos\ngo depth 8\n", "bestmove");
    // The statistics follow the answer; the next "position" waits for the search to end.
    session.settle("position startpos\n");
    session.engine.send("quit\n");
    EXPECT_EQ(session.engine.wait(), 0);
    const std::string log = session.logText();
    const size_t full = log.find("full=");
    if (full == std::string::npos) {
        ADD_FAILURE() << log;
        return 0;
    }
    return std::atof(log.c_str() + full + 5);
}

TEST(Startup, TableSizeFollowsTheIniKey) {
    // One thread to a fixed depth stores the same entries whatever the size: a table of one
    // megabyte is a 64th of the built-in one, so the same search takes over a share many times larger.
    const double builtIn = tableTakenBySearch("tt_builtin", "tt.cachemb=\n");
    const double small = tableTakenBySearch("tt_small", "tt.cachemb=1\n");
    EXPECT_GT(builtIn, 0);
    EXPECT_GT(small, 16 * builtIn) << "built-in " << builtIn << "%, one megabyte " << small << "%";
}

TEST(Startup, HostileIniFilesNeverCrash) {
    std::string directory = scratchDirectory("hostile");
    std::string binary;
    for (int c = 0; c < 256; c++) binary += static_cast<char>(c);
    writeFile(directory, "binary.ini", binary + "\n=\n==\n" + binary + "=" + binary + "\n");
    EXPECT_EQ(runEngine({"binary.ini"}, "q\n", directory).exitCode, 0);
    writeFile(directory, "huge.ini", "search.nthreads=1\n" + std::string(1 << 20, '='));
    EXPECT_EQ(runEngine({"huge.ini"}, "q\n", directory).exitCode, 0);
    // A table size past the range of int is granted up to the table's 4 GB limit, too much to zero
    // in a test; the negative one takes the same overflow path and ends at the smallest table.
    writeFile(directory, "numbers.ini",
              "search.nthreads=-5\ntt.cachemb=-99999999999\nmachine.mhz=-1\nuci.trace=x\negbb.dir=\n");
    EXPECT_EQ(runEngine({"numbers.ini"}, "q\n", directory).exitCode, 0);
}

}  // namespace
