// The thread count through the binary: the console's "set threads" and the UCI option Threads reach the
// parallel search, which clamps them; a search on several threads answers as one on a single thread.
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

TEST(Threads, SearchesOnFourThreadsAnswerEveryGoOnce) {
    const std::string directory = scratchDirectory("threads-go");
    EngineProcess engine({writeFile(directory, "one.ini", "search.nthreads=1\n")}, directory);
    engine.send("uci\nsetoption name Threads value 4\nisready\n");
    ASSERT_TRUE(engine.waitFor("readyok\n"));
    size_t from = engine.output().size();
    engine.send("position startpos moves e2e4 e7e5\ngo depth 6\n");
    ASSERT_TRUE(engine.waitFor("bestmove ", 60000, from));
    from = engine.output().size();
    engine.send("go infinite\n");
    ASSERT_TRUE(engine.waitFor("info ", 60000, from));
    engine.send("stop\nisready\n");
    ASSERT_TRUE(engine.waitFor("readyok\n", 60000, from));
    const std::string answer = engine.output().substr(from);
    EXPECT_EQ(answer.find("bestmove "), answer.rfind("bestmove ")) << answer;
    EXPECT_NE(answer.find("bestmove "), std::string::npos) << answer;
    engine.send("quit\n");
    EXPECT_EQ(engine.wait(), 0);
}

}  // namespace
