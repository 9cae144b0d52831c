// Move lines typed at the console, short and longer than the board's history, through the engine binary.
#include <gtest/gtest.h>

#include <string>

#include "engine_process.h"
#include "long_game.h"

namespace {

// The output of a console session after the start-up text, from the first prompt on.
std::string session(const std::string& input) {
    EngineRun run = runEngine({}, input, scratchDirectory("position"));
    EXPECT_EQ(run.exitCode, 0);
    const size_t prompt = run.output.find("% ");
    return prompt == std::string::npos ? run.output : run.output.substr(prompt);
}

TEST(PositionCommands, MoveLines) {
    // Two moves: both played, the board shown once.
    std::string out = session("e2e4 e7e5\n");
    EXPECT_EQ(countOf(out, "\n     a   b   c   d   e   f   g   h\n"), 1u);
    EXPECT_NE(out.find("rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2\n"), std::string::npos)
        << out;
    // A word that is no move stops the line; the move before it stays played and no board is shown.
    out = session("e4 hello\nNf6\nm\n");
    EXPECT_NE(out.find("% no such command: e4\n% "), std::string::npos) << out;
    EXPECT_EQ(countOf(out, "     a   b   c   d"), 1u);  // only after Nf6
    EXPECT_NE(out.find("rnbqkb1r/pppppppp/5n2/8/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 1 2"), std::string::npos)
        << out;
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
    Board end = game.end;
    EXPECT_EQ(out.substr(list, out.find('\n', list) - list),
              "#moves = " + std::to_string(engineLegalMoves(end).size()));
    const size_t answer = out.find("my move: ", list);
    ASSERT_NE(answer, std::string::npos) << out.substr(list);
    const std::string move = out.substr(answer + 9, out.find('\n', answer) - answer - 9);
    EXPECT_TRUE(isLegalIn(game.end, move)) << move << " in " << game.fen;
}

}  // namespace
