#include "board/movegen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "board/legalmoves.h"
#include "positions.h"
#include "reference.h"

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

TEST(Generators, PinnedPawnsMoveAlongTheirLineOnly) {
    // Pinned on the diagonal by the bishop it may take, not the knight beside it, nor push.
    Board board = *boardFrom("4k3/8/8/8/1n1b4/2P5/1K6/8 w - -");
    EXPECT_EQ(movesFrom(engineLegalMoves(board), 0x22),
              std::vector<Move>{makeMoveWord(0x22, 0x33, board.at(0x33))});
    // Pinned on its file: both pushes, no capture.
    board = *boardFrom("4r1k1/8/8/8/8/3b4/4P3/4K3 w - -");
    EXPECT_EQ(movesFrom(listOf(board, generateMoves), 0x14),
              (std::vector<Move>{makeMoveWord(0x14, 0x24), makeMoveWord(0x14, 0x34, 0, MOVE_DOUBLE_PUSH)}));
    // A pinned rook slides along the pin, a pinned knight stays.
    board = *boardFrom("4r1k1/8/8/8/8/8/4N3/4K3 w - -");
    EXPECT_TRUE(movesFrom(listOf(board, generateMoves), 0x14).empty());
    board = *boardFrom("4r1k1/8/8/8/4R3/8/8/4K3 w - -");
    EXPECT_EQ(movesFrom(engineLegalMoves(board), 0x34).size(), 6u);
}

TEST(Generators, CastlingPathAndEnPassantPinAreLeftToMakeMove) {
    // f1 is attacked by the bishop: the generator emits short castling, makeMove refuses it.
    Board board = *boardFrom("4k3/8/8/8/2b5/8/8/4K2R w K -");
    const Move castle = makeMoveWord(0x04, 0x06, 0, MOVE_CASTLING);
    const std::vector<Move> moves = listOf(board, generateMoves);
    EXPECT_NE(std::find(moves.begin(), moves.end(), castle), moves.end());
    const std::string before = fenOf(board);
    const uint64_t hash = board.hash;
    EXPECT_EQ(makeMove(board, castle), NO_MOVE);
    EXPECT_EQ(fenOf(board), before);
    EXPECT_EQ(board.hash, hash);
    EXPECT_EQ(board.ply, 0u);
    EXPECT_TRUE(board.check("castling refused"));

    // Both pawns stand between king and rook on the rank: taking en passant would expose the king.
    board = *boardFrom("8/8/8/KPp4r/8/8/8/7k w - c6");
    const Move enPassant = makeMoveWord(0x41, 0x52, board.at(0x42), MOVE_EN_PASSANT);
    const std::vector<Move> withEp = listOf(board, generateMoves);
    EXPECT_NE(std::find(withEp.begin(), withEp.end(), enPassant), withEp.end());
    EXPECT_EQ(makeMove(board, enPassant), NO_MOVE);
    EXPECT_TRUE(board.check("en passant refused"));
    EXPECT_EQ(fenOf(board), "8/8/8/KPp4r/8/8/8/7k w - c6 0 0");
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
