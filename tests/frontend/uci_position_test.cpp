// "position" through the real binary; the console's move list shows which position was set up.
#include <gtest/gtest.h>

#include <string>

#include "long_game.h"
#include "uci_session.h"

namespace {

// The console's list of legal moves after the given protocol lines.
std::string movesAfter(UciSession& session, const std::string& lines) {
    return session.settle(lines + "moves\n");
}

TEST(UciPosition, StartposFenAndMoveLists) {
    UciSession session("uci_position");
    struct Case {
        const char* line;
        const char* moveCount;  // legal moves of the resulting position
        const char* listed;     // one of them, as the console writes it
    };
    const Case cases[] = {
        {"position startpos", "#moves = 20\n", "Ng1f3"},
        {"position fen rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1 moves e7e5",
         "#moves = 29\n", "Bf1b5"},
        {"position   fen 4k3/8/8/8/8/8/8/4K2R w K - 0 1", "#moves = 15\n", "o-o"},
        // A word after a move that is no move ends the list; so does one that is not legal here.
        {"position startpos moves e2e4 e9e9 e7e5", "#moves = 20\n", "e7e5"},
        {"position startpos moves e2e4 e2e4 e7e5", "#moves = 20\n", "e7e5"},
        // Continuation words of a GUI's move list are skipped.
        {"position startpos moves e2e4 .e7e5 e7e5", "#moves = 29\n", "Bf1b5"},
        {"position startpos moves e2e4 e7e5 e1e3", "#moves = 29\n", "Bf1b5"},
    };
    for (const Case& c : cases) {
        std::string out = movesAfter(session, std::string(c.line) + "\n");
        EXPECT_NE(out.find(c.moveCount), std::string::npos) << c.line << "\n" << out;
        EXPECT_NE(out.find(c.listed), std::string::npos) << c.line << "\n" << out;
    }
    // A first word other than startpos or fen leaves the board alone.
    std::string out = movesAfter(session, "position startpos moves e2e4\nposition moves e7e5\n");
    EXPECT_NE(out.find("#moves = 20\n"), std::string::npos) << out;

    std::string log = session.logText();
    EXPECT_NE(log.find("WARNING invalid move from GUI: e9e9\n"), std::string::npos) << log;
    EXPECT_NE(log.find("WARNING invalid move from GUI: e2e4\n"), std::string::npos) << log;
    EXPECT_NE(log.find("WARNING invalid move from GUI: e1e3\n"), std::string::npos) << log;
    EXPECT_NE(log.find("SKIP continuation move: .e7e5\n"), std::string::npos) << log;
}

// A GUI may send games of thousands of plies, far more than the board's history holds: the whole game is
// set up, with its fifty-move and ply counts, and the answer is legal in it. An odd length leaves Black
// to move, so an answer for a game cut short at an even ply is caught too.
TEST(UciPosition, GameLongerThanTheHistory) {
    const LongGame game = buildLongGame(3001);
    UciSession session("uci_longer_game");
    std::string line = "position startpos moves";
    for (const std::string& move : game.moves) line += " " + move;
    std::string out = movesAfter(session, line + "\n");
    const std::string count = "#moves = " + std::to_string(legalMoveCount(game.end)) + "\n";
    EXPECT_NE(out.find(count), std::string::npos) << out;
    const std::string log = session.logText();
    EXPECT_EQ(log.find("WARNING"), std::string::npos);
    EXPECT_NE(log.find(game.fen + "\n"), std::string::npos) << game.fen;

    out = session.exchange("go depth 3\n", "bestmove ");
    out += session.settle("");
    const size_t at = out.find("bestmove ") + 9;
    const std::string best = out.substr(at, out.find_first_of(" \n", at) - at);
    EXPECT_TRUE(isLegalIn(game.end, best)) << best << " in " << game.fen;
}

}  // namespace
