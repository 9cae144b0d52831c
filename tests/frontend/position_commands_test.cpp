// The position commands, bare FEN lines and move lines, through the engine binary.
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

const std::string startFen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 0\n";

TEST(PositionCommands, StartUpShowsTheStartPosition) {
    EngineRun run = runEngine({}, "", scratchDirectory("position"));
    const std::string beforePrompt = run.output.substr(0, run.output.find("% "));
    EXPECT_NE(beforePrompt.find(" 8 |*r*|*n*|*b*|*q*|*k*|*b*|*n*|*r*|\n"), std::string::npos) << beforePrompt;
    EXPECT_NE(beforePrompt.find(startFen + " hash="), std::string::npos) << beforePrompt;
}

TEST(PositionCommands, FenAndReset) {
    std::string out = session("fen 4k3/8/8/8/8/8/8/4K2R w K - 5 9\nreset\n");
    EXPECT_NE(out.find("4k3/8/8/8/8/8/8/4K2R w K - 0 0\n"), std::string::npos) << out;
    EXPECT_NE(out.find(" 1 |   |   |   |   |(K)|   |   |(R)|  5-0=5 \n"), std::string::npos) << out;
    EXPECT_NE(out.rfind(startFen), std::string::npos);
    // A FEN that cannot be read leaves the position as it was, and the board is shown again.
    out = session("fen 4k3/8/8/8/8/8/8/4K2x w\n");
    EXPECT_NE(out.find("invalid char in fen: x\nsetfen failed\n"), std::string::npos) << out;
    EXPECT_NE(out.find(startFen), std::string::npos) << out;
}

TEST(PositionCommands, MovesListsTheLegalMoves) {
    EXPECT_EQ(
        session("m\n"),
        "% #moves = 20\na2a3 a2a4 b2b3 b2b4 c2c3 c2c4 d2d3 d2d4 e2e3 e2e4 f2f3 f2f4 g2g3 g2g4 h2h3 h2h4 "
        "Nb1a3 Nb1c3 Ng1f3 Ng1h3 \n% ");
    const std::string out = session("fen 4k3/8/8/8/8/8/8/R3K3 b - -\nmoves\n");
    EXPECT_EQ(out.find("1. ..."), std::string::npos) << out;  // no moves played, no score sheet
    EXPECT_NE(out.find("#moves = 5\nKe8f8 Ke8d8 Ke8d7 Ke8e7 Ke8f7 \n"), std::string::npos) << out;
    EXPECT_EQ(out.find("--!isMove()?!"), std::string::npos);
}

TEST(PositionCommands, PerftAndDivide) {
    const std::string out = session("perft\nperft 0\ndivide 2\n");
    EXPECT_NE(out.find("perft 2\n" + std::string(30, ' ') + "20 ops in"), std::string::npos) << out;
    EXPECT_NE(out.find("\n" + std::string(29, ' ') + "400 ops in"), std::string::npos) << out;
    EXPECT_NE(out.find("% perft 0\n% ----divide---\n"), std::string::npos) << out;
    EXPECT_NE(out.find("Ng1h3            20\n-------------------\ntotal           400\n"), std::string::npos)
        << out;
}

TEST(PositionCommands, BareFenLines) {
    const std::string out = session("4k3/8/8/8/8/8/8/4K3 b\n");
    EXPECT_NE(out.find("4k3/8/8/8/8/8/8/4K3 b - - 0 0\n"), std::string::npos) << out;
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
