#include "board/perft.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "positions.h"

namespace {

class PerftFile : public testing::TestWithParam<PerftCase> {};

TEST_P(PerftFile, MatchesKnownCountsToDepthFive) {
    const PerftCase& c = GetParam();
    Board board = *boardFrom(c.fen.c_str());
    // Under the sanitizers a debug build checks the whole board after every make and take-back: a depth
    // runs there only while its count stays within a budget.
    const int maxDepth = sanitized() ? 4 : 5;
    const uint64_t budget = sanitized() ? 500000 : UINT64_MAX;
    for (int depth = 1;
         depth <= maxDepth && depth <= static_cast<int>(c.counts.size()) && c.counts[depth - 1] <= budget;
         ++depth)
        EXPECT_EQ(perft(board, depth, board.lastMove), c.counts[depth - 1]) << c.fen << " depth " << depth;
}

INSTANTIATE_TEST_SUITE_P(Positions, PerftFile, testing::ValuesIn(loadPerftCases()));

}  // namespace
