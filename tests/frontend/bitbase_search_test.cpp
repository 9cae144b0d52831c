// Endgames played out through the real binary, with and without the bitbase library built beside
// the engine. Every search thread probes the library without a lock: the ThreadSanitizer build turns
// a race in it into a non-zero exit code.
#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <string>

#include "engine_process.h"
#include "environment.h"

namespace {

struct Game {
    int plies = 0;
    bool mated = false;
    long nodes = 0;  // of all the searches up to the end
};

// The engine plays both sides from fen for at most plies moves, each searched to depth.
Game playOut(const std::string& ini, const std::string& fen, int depth, int plies) {
    std::string input = "fen " + fen + "\nmd " + std::to_string(depth) + "\n";
    for (int i = 0; i < plies; ++i) input += "g\n";
    const std::string directory = scratchDirectory("bitbase_search");
    EngineProcess engine({writeFile(directory, "engine.ini", ini)}, directory);
    engine.send(input + "q\n");
    EXPECT_EQ(engine.wait(120000), 0);  // the sanitizers make a game slow

    // Each search's lines end with the move it played; the last line counts its nodes.
    static const std::regex line(R"(^%?\s*\d+/\d+\s+\S+\s+(\d+)(k?)\s)");
    static const std::regex played(R"(^my move: (\S+))");
    Game game;
    long searchNodes = 0;
    std::string lastMove;
    std::istringstream lines(engine.output());
    for (std::string text; std::getline(lines, text);) {
        std::smatch match;
        if (std::regex_search(text, match, line)) {
            searchNodes = std::stol(match[1]) * (match[2].length() ? 1000 : 1);
        } else if (std::regex_search(text, match, played)) {
            game.nodes += searchNodes;
            game.plies++;
            lastMove = match[1];
        } else if (text == "no legal move") {
            game.mated = !lastMove.empty() && lastMove.back() == '+';
            break;
        }
    }
    return game;
}

}  // namespace

// With the tables the engine mates in king and rook (queen) against king on a small budget of
// nodes; searched as deep without them it spends many times as many, or does not mate at all.
TEST(BitbaseSearch, MatesSoonerWithTheTables) {
    SKIP_WITHOUT_BITBASES();
    const long budget = 100000;
    for (const char* fen : {"8/8/8/4k3/8/8/8/R3K3 w - - 0 1", "8/8/8/3k4/8/8/8/4K1Q1 w - - 0 1"}) {
        const Game with = playOut("egbb.dir=" KELVRA_EGBB_DIR "\n", fen, 6, 32);
        EXPECT_TRUE(with.mated) << fen;
        EXPECT_LT(with.nodes, budget) << fen;
        // Under the sanitizers one game with the tables is enough to watch the threads probe together.
        if (sanitized()) return;
        const Game without = playOut("", fen, 6, 32);
        EXPECT_TRUE(!without.mated || without.nodes > budget) << fen << ": " << without.nodes << " nodes";
    }
}
