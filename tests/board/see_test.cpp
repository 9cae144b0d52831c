#include "board/see.h"

#include <gtest/gtest.h>

#include "board/notation.h"
#include "positions.h"

namespace {

int seeOf(const char* fen, const char* move) {
    Board board = *boardFrom(fen);
    const Move word = isMove(board, move);
    EXPECT_NE(word, NO_MOVE) << move;
    const std::string before = fenOf(board);
    const int value = see(board, static_cast<int>(board.sideToMove), word);
    EXPECT_EQ(fenOf(board), before);
    EXPECT_TRUE(board.check("see"));
    return value;
}

TEST(See, Exchanges) {
    EXPECT_EQ(seeOf("4k3/8/8/3n4/4P3/8/8/4K3 w - -", "exd5"), 3);
    EXPECT_EQ(seeOf("4k3/8/2p5/3p4/8/8/8/3QK3 w - -", "Qxd5"), -9);
    // The rook behind the rook joins in; without it the pawn costs a rook.
    EXPECT_EQ(seeOf("3rk3/8/8/3p4/8/8/3R4/3RK3 w - -", "Rxd5"), 1);
    EXPECT_EQ(seeOf("3rk3/8/8/3p4/8/8/3R4/4K3 w - -", "Rxd5"), -4);
    // A queen behind the bishop on the diagonal wins the exchange back.
    EXPECT_EQ(seeOf("4k3/8/5n2/3p4/4B3/5Q2/8/4K3 w - -", "Bxd5"), 1);
    EXPECT_EQ(seeOf("4k3/8/5n2/3p4/4B3/8/8/4K3 w - -", "Bxd5"), -2);
    // Promotions: only the queen earns the bonus.
    EXPECT_EQ(seeOf("4k3/P7/8/8/8/8/8/4K3 w - -", "a8=Q"), 8);
    EXPECT_EQ(seeOf("4k3/P7/8/8/8/8/8/4K3 w - -", "a8=N"), 0);
    // En passant wins the pawn.
    EXPECT_EQ(seeOf("4k3/8/8/3pP3/8/8/8/4K3 w - d6", "exd6"), 1);
    // A defending king recaptures only when the square is not covered by the other king.
    EXPECT_EQ(seeOf("8/8/8/8/8/4k3/3p4/3QK3 w - -", "Qxd2+"), 1);
    EXPECT_EQ(seeOf("8/8/8/8/8/4k3/3p4/3Q3K w - -", "Qxd2+"), -9);
}

}  // namespace
