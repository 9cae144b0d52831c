// The words of "go" read into their value, without a search.
#include "frontend/go_limits.h"

#include <gtest/gtest.h>

#include "boards.h"
#include "frontend/protocol.h"

namespace {

TEST(GoLimits, SearchmovesEndAtTheFirstWordThatIsNoLegalMove) {
    auto board = boardFrom("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
    GoLimits limits =
        readGoWords(String("searchmoves e2e4  g1f3 e7e5 d2d4 wtime 9000 nodes 5 depth 4"), *board);
    ASSERT_EQ(limits.searchMoves.size(), 2u);
    char text[8];
    uciMoveText(text, limits.searchMoves[1]);
    EXPECT_STREQ(text, "g1f3");
    EXPECT_EQ(limits.wtime, 9000);  // the word after the list still counts
    EXPECT_EQ(limits.depth, 4);     // "nodes" takes its number with it

    // A mate search runs until the mate unless a clock is given.
    EXPECT_TRUE(readGoWords(String("mate 3"), *board).infinite);
    EXPECT_FALSE(readGoWords(String("mate 3 btime 5000"), *board).infinite);
    EXPECT_FALSE(readGoWords(String("depth 3"), *board).infinite);
}

}  // namespace
