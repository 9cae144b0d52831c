#include "board/perft.h"

#include <gtest/gtest.h>

#include "positions.h"

namespace {

class PerftFile : public testing::TestWithParam<PerftCase> {};

TEST_P(PerftFile, MatchesKnownCountsToDepthFive) {
    const PerftCase& c = GetParam();
    Board board = *boardFrom(c.fen.c_str());
    const int maxDepth = sanitized() ? 4 : 5;
    for (int depth = 1; depth <= maxDepth && depth <= static_cast<int>(c.counts.size()); ++depth)
        EXPECT_EQ(perft(board, depth, board.lastMove), c.counts[depth - 1]) << c.fen << " depth " << depth;
}

INSTANTIATE_TEST_SUITE_P(Positions, PerftFile, testing::ValuesIn(loadPerftCases()));

}  // namespace
