// "go", "stop", "ponderhit", "isready" and "quit" around a running search, through the real binary.
#include <gtest/gtest.h>

#include <string>

#include "uci_session.h"

namespace {

// The answer with or without a ponder move.
bool hasBestmove(const std::string& text) {
    return matches(text, "bestmove @\n") || matches(text, "bestmove @ ponder @\n");
}

TEST(UciSearch, InfiniteSearchAnswersIsreadyAndEndsOnStop) {
    UciSession session("uci_infinite");
    session.settle("position startpos\n");
    std::string out = session.exchange("go infinite\n", " pv ");
    out += session.exchange("isready\n", "readyok\n");
    EXPECT_EQ(out.find("bestmove"), std::string::npos) << out;
    out = session.exchange("stop\n", "bestmove ");
    out += session.settle("");
    EXPECT_TRUE(hasBestmove(out)) << out;
    EXPECT_EQ(countOf(out, "bestmove"), 1u) << out;
    // The last info line before the answer carries the whole report.
    EXPECT_TRUE(matches(out, "info depth # seldepth # score cp # time # nodes # nps # pv @ *\nbestmove"))
        << out;
    std::string log = session.logText();
    EXPECT_LT(log.find("uci:stop() START\n"), log.find("uci:stop() END\n")) << log;
}

// After 1.e4 a later root move takes over at depth 8: its line must survive into every report.
TEST(UciSearch, ARootMoveThatTakesOverKeepsItsLineAndPonderMove) {
    UciSession session("uci_takeover");
    std::string out = session.exchange("position startpos moves e2e4\ngo depth 8\n", "bestmove ");
    out += session.settle("");
    EXPECT_FALSE(matches(out, " pv \n")) << out;
    EXPECT_FALSE(matches(out, " pv\n")) << out;
    EXPECT_TRUE(matches(out, "bestmove @ ponder @\n")) << out;
}

// A ponder search that ends before the opponent moves holds its answer back: "ponderhit" sends it with
// the ponder move, "stop" without.
TEST(UciSearch, WithheldPonderResult) {
    UciSession session("uci_ponder_withheld", "uci.trace=1\n");
    std::string out = session.exchange("position startpos\ngo ponder depth 2\n", "finished() ok\n");
    out += session.settle("");
    EXPECT_EQ(out.find("bestmove"), std::string::npos) << out;
    out = session.exchange("ponderhit\n", "bestmove ");
    EXPECT_TRUE(matches(out, "bestmove @ ponder @\n")) << out;
    EXPECT_NE(out.find("info depth 2 seldepth"), std::string::npos) << out;

    out = session.exchange("position startpos moves e2e4\ngo ponder depth 2\n", "finished() ok\n");
    out += session.settle("");
    EXPECT_EQ(out.find("bestmove"), std::string::npos) << out;
    out = session.exchange("stop\n", "bestmove ");
    EXPECT_TRUE(hasBestmove(out)) << out;
    EXPECT_EQ(out.find(" ponder "), std::string::npos) << out;

    std::string log = session.logText();
    EXPECT_EQ(countOf(log, "Uci:finish() delay sending bestmove, status is still 'pondering'\n"), 2u) << log;
    EXPECT_NE(log.find("Uci:ponderhit(): already finished\n"), std::string::npos) << log;
}

// A "stop" or "ponderhit" that crosses the answer (the GUI's flag fell just as the engine moved) gets no
// second bestmove: the GUI would read it as the answer to its next "go" and lose on an illegal move.
TEST(UciSearch, StopOrPonderhitAfterTheAnswerGetNoSecondOne) {
    UciSession session("uci_late_stop", "uci.trace=1\n");
    std::string out = session.exchange("position startpos\ngo depth 1\n", "finished() ok\n");
    out += session.settle("stop\nponderhit\n");
    EXPECT_EQ(countOf(out, "bestmove"), 1u) << out;
    // The answer a ponder search held back goes out once, on the first of them.
    out = session.exchange("position startpos moves e2e4\ngo ponder depth 2\n", "finished() ok\n");
    out += session.settle("ponderhit\nstop\nponderhit\n");
    EXPECT_EQ(countOf(out, "bestmove"), 1u) << out;
    EXPECT_TRUE(matches(out, "bestmove @ ponder @\n")) << out;
    EXPECT_EQ(countOf(session.logText(), "after the bestmove was sent, ignored\n"), 4u);
}

TEST(UciSearch, EveryGoIsAnsweredByOneBestmove) {
    UciSession session("uci_one_answer");
    const char* searches[] = {
        "go depth 1\n",
        "go movetime 50\n",
        "go\n",  // no limits of its own: the last ones end it
        "go wtime 400 btime 400 winc 10 binc 10\n",
        "go wtime 100000 btime 100000 movestogo 60 depth 2\n",
        "go nodes 5000 depth 2 searchmoves e2e4\n",
    };
    for (const char* go : searches)
        session.exchange(std::string("position startpos moves d2d4\n") + go, "bestmove ");
    session.exchange("position startpos\ngo infinite\n", "info depth");
    session.exchange("stop\n", "bestmove ");
    session.exchange("position startpos\ngo ponder wtime 1000 btime 1000\n", "info depth");
    session.exchange("ponderhit\n", "bestmove ");
    // A "go" on top of a running search: the running one answers first, then the new one.
    session.exchange("position startpos\ngo infinite\n", "info depth");
    size_t from = session.mark();
    session.engine.send("go depth 1\n");
    ASSERT_TRUE(session.engine.waitFor("bestmove ", 20000, from));
    size_t first = session.engine.output().find("bestmove ", from);
    EXPECT_TRUE(session.engine.waitFor("bestmove ", 20000, first + 1)) << session.since(from);
    session.settle("");
    EXPECT_EQ(countOf(session.engine.output(), "bestmove "), 10u) << session.engine.output();
}

TEST(UciSearch, QuitDuringASearchEndsAtOnce) {
    UciSession session("uci_quit");
    session.exchange("position startpos\ngo infinite\n", "info depth");
    session.engine.send("quit\n");
    EXPECT_EQ(session.engine.wait(5000), 0);
    EXPECT_NE(session.logText().find("exit()!\n"), std::string::npos);
}

}  // namespace
