// The thread count through the binary: the console's "set threads" and the UCI option Threads reach the
// parallel search, which clamps them.
#include <gtest/gtest.h>

#include <string>

#include "engine_process.h"

namespace {

TEST(Threads, ConsoleAndUciSetTheCountWithinItsRange) {
    const std::string directory = scratchDirectory("threads");
    const std::string ini = writeFile(directory, "one.ini", "search.nthreads=1\n");
    const EngineRun run =
        runEngine({ini},
                  "set threads 3\nset\nset threads 0\nset\nset threads 99\nset\n"
                  "setoption name Threads value 2\nset\nsetoption name Threads value 0\nset\n"
                  "uci\nquit\n",
                  directory);
    EXPECT_EQ(run.exitCode, 0);
    size_t at = 0;
    for (const char* count : {"threads=3\n", "threads=1\n", "threads=8\n", "threads=2\n", "threads=1\n"}) {
        at = run.output.find(count, at);
        ASSERT_NE(at, std::string::npos) << count << run.output;
    }
    EXPECT_NE(run.output.find("option name Threads         type spin default 1 min 1 max 8\n", at),
              std::string::npos)
        << run.output;
}

}  // namespace
