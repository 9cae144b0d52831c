// A game longer than the board's history typed at the console, through the engine binary.
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
