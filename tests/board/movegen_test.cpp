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

std::vector<Move> movesFrom(const std::vector<Move>& moves, int from) {
    std::vector<Move> result;
    for (Move move : moves)
        if (moveFrom(move) == from) result.push_back(move);
    return result;
}

TEST(Generators, PromotionsComeQueenKnightRookBishop) {
    Board board = *boardFrom("1r2k3/P7/8/8/8/8/8/4K3 w - -");
    const int rook = board.at(0x71);
    const std::vector<Move> moves = movesFrom(listOf(board, generateMoves), 0x60);
    std::vector<Move> expected;
    for (int to : {0x71, 0x70})
        for (int kind : {QUEEN, KNIGHT, ROOK, BISHOP})
            expected.push_back(makeMoveWord(0x60, to, to == 0x71 ? rook : 0, promotionFlag(kind)));
    EXPECT_EQ(moves, expected);
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
                if (makeMove(board, move & ~MOVE_CHECKS)) {
                    takeBack(board, move & ~MOVE_CHECKS, state);
                    generatedChecks.push_back(move);
                }
            EXPECT_EQ(sorted(generatedChecks), sorted(checks)) << c.fen;
            EXPECT_EQ(sorted(listOf(board, generateKingMoves)), sorted(kingSteps)) << c.fen;
        }
    }
}

TEST(Generators, ChecksByCastlingRooksAndUncoveredLines) {
    Board board = *boardFrom("5k2/8/8/8/8/8/4P3/4K2R w K -");
    const std::vector<Move> checks = listOf(board, generateChecks);
    for (Move check : {makeMoveWord(0x04, 0x06, 0, MOVE_CASTLING | MOVE_CHECK),
                       makeMoveWord(0x07, 0x05, 0, MOVE_CHECK), makeMoveWord(0x07, 0x77, 0, MOVE_CHECK)})
        EXPECT_NE(std::find(checks.begin(), checks.end(), check), checks.end()) << std::hex << check;
    // Every knight move off the file uncovers the rook.
    board = *boardFrom("4k3/8/8/8/8/8/4N3/4R1K1 w - -");
    std::vector<Move> expected;
    for (int to : {0x02, 0x22, 0x33, 0x35, 0x26})
        expected.push_back(makeMoveWord(0x14, to, 0, MOVE_DISCOVERED));
    EXPECT_EQ(sorted(listOf(board, generateChecks)), sorted(expected));
}

}  // namespace
