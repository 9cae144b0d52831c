#include "board/flipfen.h"

#include <gtest/gtest.h>

namespace {

TEST(FlipFen, MirrorsRanksSwapsColoursRightsAndTheSideToMove) {
    EXPECT_EQ(flipFen("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1"),
              "rnbqkbnr/pppp1ppp/8/4p3/8/8/PPPPPPPP/RNBQKBNR w KQkq e6 0 1");
    EXPECT_EQ(flipFen("r3k3/8/8/8/8/8/8/4K2R w Kq -"), "4k2r/8/8/8/8/8/8/R3K3 b Qk -");
    // The engine's own form with empty ranks, and a FEN with fields missing.
    EXPECT_EQ(flipFen("rnbqkbnr/pppppppp/////PPPPPPPP/RNBQKBNR w KQkq - -"),
              "rnbqkbnr/pppppppp/////PPPPPPPP/RNBQKBNR b KQkq - -");
    EXPECT_EQ(flipFen("8/8/8/8/8/8/k7/K7"), "k7/K7/8/8/8/8/8/8 b");
}

}  // namespace
