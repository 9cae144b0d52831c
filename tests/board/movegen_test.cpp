#include "board/movegen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "board/legalmoves.h"
#include "positions.h"

namespace {

std::vector<Move> listOf(Board& board, Move* (*generator)(Board&, Move*)) {
    MoveList list;
    return std::vector<Move>(list, generator(board, list));
}

std::vector<Move> sorted(std::vector<Move> moves) {
    std::sort(moves.begin(), moves.end());
    return moves;
}

// The staged generators split the moves of generateMoves between them; the check generator finds
// exactly the quiet moves that makeMove reports as checks, with the same bits.
TEST(Generators, StagedGeneratorsCoverTheMovesOverThePerftTrees) {
    for (const PerftCase& c : loadPerftCases()) {
        Board root = *boardFrom(c.fen.c_str());
        std::vector<Board> positions{root};
        forEachLegalMove(root, [&](Move) { positions.push_back(root); });
        for (Board& board : positions) {
            if (board.inCheck()) continue;
            std::vector<Move> staged = listOf(board, generateCaptures);
            const std::vector<Move> quiet = listOf(board, generateQuiet);
            staged.insert(staged.end(), quiet.begin(), quiet.end());
            EXPECT_EQ(sorted(staged), sorted(listOf(board, generateMoves))) << c.fen;

            std::vector<Move> checks;
            std::vector<Move> kingSteps;
            const SavedState state = saveState(board);
            for (Move move : quiet) {
                const Move made = makeMove(board, move);
                if (!made) continue;
                takeBack(board, move, state);
                if (givesCheck(made)) checks.push_back(made);
                if (moveFrom(move) == board.kingSquare(static_cast<int>(board.sideToMove)) &&
                    !(move & MOVE_CASTLING))
                    kingSteps.push_back(move);
            }
            std::vector<Move> generatedChecks;
            for (Move move : listOf(board, generateChecks))
                if (makeMove(board, plainMove(move))) {
                    takeBack(board, plainMove(move), state);
                    generatedChecks.push_back(move);
                }
            EXPECT_EQ(sorted(generatedChecks), sorted(checks)) << c.fen;
            EXPECT_EQ(sorted(listOf(board, generateKingMoves)), sorted(kingSteps)) << c.fen;
        }
    }
}

}  // namespace
