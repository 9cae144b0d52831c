// The xboard handler through its entry point, one short game: the console loop does not route lines to
// it, so the test hands each line over as a build in xboard mode would.
#include "frontend/xboard.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "search/searchthread.h"
#include "search/tt.h"
#include "uci_session.h"

namespace {

std::string textOf(FILE* file) {
    searchThread.waitIdle();
    fflush(file);
    rewind(file);
    std::string text;
    for (int c; (c = getc(file)) != EOF;) text += static_cast<char>(c);
    return text;
}

TEST(Xboard, FeaturesAMovePingABadMoveAndQuit) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    tt.alloc(1024);
    searchThread.boot();
    ASSERT_TRUE(gameBoard.setFen(START_FEN));
    FILE* file = tmpfile();
    Xboard handler{file};
    EXPECT_EQ(handler.handleCommand("xboard", ""), 1);
    EXPECT_EQ(handler.handleCommand("protover", " 2"), 1);
    EXPECT_EQ(handler.handleCommand("new", ""), 1);  // the engine plays Black
    EXPECT_EQ(handler.handleCommand("sd", " 2"), 1);
    EXPECT_EQ(handler.handleCommand("usermove", " e2e4"), 1);
    searchThread.waitIdle();  // the answer comes before the pong
    EXPECT_EQ(handler.handleCommand("ping", " 7"), 1);
    handler.handleCommand("usermove", " e2e5");
    const std::string text = textOf(file);
    for (const char* line : {"\nfeature ping=1\n", "\nfeature usermove=1\n", "\nfeature done=1\n"})
        EXPECT_TRUE(matches(text, line)) << line << " not in\n" << text;
    EXPECT_TRUE(matches(text, "\ninfo depth 2 seldepth # score cp # ")) << text;
    EXPECT_TRUE(matches(text, "\nmove @\npong 7\nIllegal Move: e2e5\n")) << text;
    EXPECT_EQ(countOf(text, "\nmove "), 1u) << text;
    EXPECT_EQ(gameBoard.ply, 2u);
    EXPECT_EXIT(handler.handleCommand("quit", ""), testing::ExitedWithCode(0), "");
    fclose(file);
}

}  // namespace
