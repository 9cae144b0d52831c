// The console as a person uses it: lines in, text out, through the real binary.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "engine_process.h"
#include "long_game.h"

namespace {

// Runs a console session in an empty directory (so no kelvra.ini is found) and returns the output
// after the start-up lines, from the first prompt on.
std::string session(const std::string& input) {
    EngineRun run = runEngine({}, input, scratchDirectory("console"));
    EXPECT_EQ(run.exitCode, 0);
    size_t prompt = run.output.find("% ");
    EXPECT_NE(prompt, std::string::npos) << run.output;
    return prompt == std::string::npos ? run.output : run.output.substr(prompt);
}

const std::string options(int async, int book, int cleartt, int threads) {
    return "async  =" + std::to_string(async) + "\nbook   =" + std::to_string(book) +
           "\ncleartt=" + std::to_string(cleartt) + "\nthreads=" + std::to_string(threads) + "\n";
}

TEST(Console, EndOfInputExitsWithoutANewlineAfterThePrompt) {
    EXPECT_EQ(session(""), "% ");
    EXPECT_EQ(session("\n\n"), "% % % ");
    EXPECT_EQ(session("q\nhelp\n"), "% ");  // nothing after q is read
}

TEST(Console, WindowsLineEndsAndAnUnterminatedLastLine) {
    // A client from Windows ends its lines with CR LF: the handshake and the console commands still
    // work, and a command is named without the CR when it is unknown.
    std::string text = session("uci\r\nisready\r\nm\r\nxyzzy\r\n\r\nisready");
    EXPECT_NE(text.find("uciok\nreadyok\n#moves = 20\n"), std::string::npos) << text;
    // The last line counts without its newline, however long.
    const std::string end = "no such command: xyzzy\nreadyok\n";
    EXPECT_EQ(text.substr(text.size() - std::min(text.size(), end.size())), end) << text;
    EXPECT_EQ(session("set threads 1\nset book 0\nset"), "% % % " + options(0, 0, 1, 1) + "% ");
}

TEST(Console, HostileInputNeverCrashes) {
    std::string longWord(1 << 20, 'x');  // a megabyte, without a final newline
    EXPECT_EQ(session(longWord), "% no such command: " + longWord + "\n% ");
    EXPECT_EQ(session("set " + longWord + " 1\n"), "% set: unknown parameter: xxxxxxxx\n% ");
    // A NUL byte ends the text of its line, not the input.
    EXPECT_EQ(session(std::string("\0\nfo\0o\nbar", 11) + "\n"),
              "% % no such command: fo\n% no such command: bar\n% ");
    std::string binary;
    for (int c = 1; c < 256; c++) binary += static_cast<char>(c);
    EXPECT_NE(session(binary + "\n" + binary + "\n").find("% "), std::string::npos);
}

// Divide and the score sheet write a move as made: the piece on its to-square names it, so a
// promotion shows its new piece and an en-passant capture stays a pawn's.
TEST(PositionCommands, MadeMovesAreNamedByThePieceThatArrived) {
    const std::string out = session(
        "fen 8/P6k/8/8/8/8/8/K7 w - -\ndivide 1\na7a8n\n"
        "fen 4k3/8/8/3pP3/8/8/8/4K3 w - d6\ndivide 1\n");
    for (const char* text : {"\nQa7a8=Q ", "\nNa7a8=N ", "1. Na7a8=N", "\ne5xd6 "})
        EXPECT_NE(out.find(text), std::string::npos) << text << " in " << out;
}

// Typed in by hand, a game may grow past the board's history: it is played on exactly, and the console
// search answers a legal move in it.
TEST(PositionCommands, GameLongerThanTheHistory) {
    const LongGame game = buildLongGame(3001);
    std::string input;
    for (size_t i = 0; i < game.moves.size(); ++i) input += game.moves[i] + (i % 10 == 9 ? "\n" : " ");
    const std::string out = session(input + "\nm\nmd 3\ng\n");
    const size_t list = out.find("#moves = ");
    ASSERT_NE(list, std::string::npos) << out.substr(out.size() > 3000 ? out.size() - 3000 : 0);
    EXPECT_NE(out.rfind(game.fen + "\n", list), std::string::npos) << game.fen;
    EXPECT_EQ(out.substr(list, out.find('\n', list) - list),
              "#moves = " + std::to_string(legalMoveCount(game.end)));
    const size_t answer = out.find("my move: ", list);
    ASSERT_NE(answer, std::string::npos) << out.substr(list);
    const std::string move = out.substr(answer + 9, out.find('\n', answer) - answer - 9);
    EXPECT_TRUE(isLegalIn(game.end, move)) << move << " in " << game.fen;
}

}  // namespace
