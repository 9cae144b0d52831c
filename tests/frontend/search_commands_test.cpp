// The console's search commands through the real binary.
#include <gtest/gtest.h>

#include <string>

#include "engine_process.h"

namespace {

std::string session(const std::string& input) {
    return runConsole(scratchDirectory("search_commands"), input);
}

// Commands typed during an asynchronous search meet no search still at work: each ends it first,
// and its move is played before the command runs. The ThreadSanitizer build turns any race on the
// board, the table or the limits into a non-zero exit code.
TEST(SearchCommands, CommandsTypedDuringAnAsyncSearchEndItFirst) {
    // The second search has one legal move, so it plays that move however early it is ended.
    const std::string out = session(
        "set async 1\nmd 2\ng\nm\nfen k7/8/8/8/8/8/1q6/K7 w - - 0 1\nperft 2\ng\n"
        "reset\nmd 0\nmt 60\ng\ng\nstop\nq\n");
    EXPECT_TRUE(contains(out, "perft 2\n" + std::string(31, ' ') + "1 ops in")) << out;
    EXPECT_TRUE(contains(out, "\n" + std::string(31, ' ') + "3 ops in")) << out;
    EXPECT_TRUE(contains(out, "my move: Ka1xb2\n")) << out;
    // Four searches, each ended by the command after it or by its depth, each with its move.
    EXPECT_EQ(countOf(out, "my move: "), 4u) << out;
}

TEST(SearchCommands, StopEndsAnAsyncSearchAtOnce) {
    EngineProcess engine({}, scratchDirectory("search_commands"));
    engine.send("set async 1\nmt 60\ng\n");
    // The first iteration's line: the search runs.
    ASSERT_TRUE(engine.waitFor(" 0:00:0"));
    const size_t running = engine.output().size();
    engine.send("stop\n");
    EXPECT_TRUE(engine.waitFor("my move: ", 5000, running)) << engine.output().substr(running);
    engine.send("q\n");
    EXPECT_EQ(engine.wait(), 0);
}

}  // namespace
