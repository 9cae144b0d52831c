// The book commands at the engine's console, through the real binary.
#include <gtest/gtest.h>

#include "engine_process.h"
#include "environment.h"
#include "scratch.h"

namespace {

TEST(BookConsole, BuildShowMergeAndOpenAtStartUp) {
    ScratchDir dir;
    writeText(dir.file("build.ini"), "book.build.file=games.bbk\nbook.build.maxply=8\n");
    std::string out = runConsole(dir.path(), "buildbook " + testData("games.pgn") +
                                                 " build.ini 5\n"
                                                 "mergebook games.bbk games.bbk double.bbk\n"
                                                 "q\n");
    EXPECT_TRUE(contains(out, "5 games read: 5 used,")) << out;
    EXPECT_TRUE(contains(out, "saving book to games.bbk\n")) << out;
    EXPECT_TRUE(contains(out, "opening games.bbk...\n Pick   Move      games    score    draws\n")) << out;
    // Of the five games two open 1. e4, one 1. b3, one 1. d4; the fifth starts from a FEN.
    EXPECT_TRUE(contains(out, " 50.0%  e2e4          2 ")) << out;
    EXPECT_TRUE(contains(out, " 25.0%  d2d4          1 ")) << out;
    EXPECT_TRUE(contains(out, "merging games.bbk with games.bbk to double.bbk...\n...done!\n")) << out;
    // After the merge every move of the start position stands twice, each record with its own games.
    EXPECT_TRUE(contains(out, " 25.0%  e2e4          2 ")) << out;
    EXPECT_TRUE(contains(out, "\n100.0%                8 ")) << out;

    out = runConsole(dir.path(), "book\nq\n", "book.file=double.bbk\n");
    EXPECT_TRUE(contains(out, "book found: double.bbk, ")) << out;
    EXPECT_TRUE(contains(out, " 25.0%  e2e4          2 ")) << out;
}

TEST(BookConsole, ImportsAPolyglotBookAndPlaysFromIt) {
    ScratchDir dir;
    const uint64_t start = 0x463b96181691fc9c;
    writePolyglot(dir.file("tiny.bin"), {{start, "e2e4", 3}, {start, "d2d4", 1}});
    std::string out = runConsole(dir.path(), "buildbook absent.bin\nbuildbook tiny.bin\nq\n");
    EXPECT_TRUE(contains(out, "could not open file: absent.bin\n")) << out;
    EXPECT_TRUE(contains(out, "saving book to tiny.bbk\nsaved 3 moves\nopening tiny.bbk...\n")) << out;
    EXPECT_TRUE(contains(out, " 75.0%  e2e4          3   50.000  100.000\n")) << out;
    EXPECT_TRUE(contains(out, " 25.0%  d2d4          1   50.000  100.000\n")) << out;

    out = runConsole(dir.path(), "g\nq\n", "book.file=tiny.bbk\n");
    EXPECT_TRUE(contains(out, "picked book move: e2e4\n") || contains(out, "picked book move: d2d4\n"))
        << out;
}

}  // namespace
