// Walks the trees of the perft positions and checks, move by move, what perft counts cannot see:
// the incremental state and the check bits.
#include <gtest/gtest.h>

#include "board/makemove.h"
#include "board/movegen.h"
#include "board/notation.h"
#include "board/tables.h"
#include "positions.h"

namespace {

// The pieces of `colour` that attack `square`, counted from the squares alone.
int countAttackers(const Board& board, int colour, int square) {
    int count = 0;
    for (int slot = colourBase(colour); slot < colourBase(colour) + 64; ++slot) {
        const int from = board.pieceSquare[slot];
        if (!onBoard(from)) continue;
        if (!(attackMask[square - from] & pieceCode[slot])) continue;
        bool clear = true;
        if (isSliderSlot(slot))
            for (int s = from + direction[square - from]; s != square; s += direction[square - from])
                clear &= board.at(s) == EMPTY;
        count += clear;
    }
    return count;
}

struct Walk {
    void expectCheckBits(const Board& board, Move made) {
        const int side = static_cast<int>(board.sideToMove);
        const int attackers = countAttackers(board, side ^ 1, board.kingSquare(side));
        auto text = [&] {
            char buffer[MOVE_TEXT_SIZE];
            moveToText(board, buffer, made);
            return std::string(buffer);
        };
        EXPECT_EQ(givesCheck(made), attackers > 0) << text();
        EXPECT_EQ(isAttacked(board, side ^ 1, board.kingSquare(side)), attackers > 0) << text();
        // Two checkers are always announced as a discovered check (with or without the direct bit).
        if (attackers > 1) {
            EXPECT_TRUE(made & MOVE_DISCOVERED) << text();
        }
        if (made & MOVE_CHECK) {
            const int piece = (made & MOVE_CASTLING) ? (moveFrom(made) + moveTo(made)) / 2 : moveTo(made);
            EXPECT_TRUE(attackMask[board.kingSquare(side) - piece] & pieceCode[board.at(piece)]) << text();
        }
    }

    void run(Board& board, int depth) {
        if (depth == 0 || testing::Test::HasFailure()) return;
        MoveList list;
        Move* end = board.inCheck() ? generateEvasions(board, list) : generateMoves(board, list);
        const SavedState saved = saveState(board);
        const Move lastMove = board.lastMove;
        const uint64_t hash = board.hash;
        for (Move* move = list; move != end; ++move) {
            const Move made = makeMove(board, *move);
            if (!made) {
                ASSERT_EQ(board.hash, hash);
                continue;
            }
            ASSERT_TRUE(board.check("make"));
            expectCheckBits(board, made);
            board.lastMove = made;
            run(board, depth - 1);
            board.lastMove = lastMove;
            takeBack(board, *move, saved);
            ASSERT_TRUE(board.check("take back"));
            ASSERT_EQ(board.hash, hash);
        }
    }
};

class TreeWalk : public testing::TestWithParam<PerftCase> {};

TEST_P(TreeWalk, StateAndCheckBitsHoldOnEveryMove) {
    const PerftCase& c = GetParam();
    Board board = *boardFrom(c.fen.c_str());
    Walk().run(board, sanitized() ? 3 : 4);
}

INSTANTIATE_TEST_SUITE_P(Positions, TreeWalk, testing::ValuesIn(loadPerftCases()));

}  // namespace
