// A position and its colour-flipped twin must score exactly alike: every term is computed for both
// colours by one code path through mirrored tables, so a wrong sign or mirror shows here.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "board/legalmoves.h"
#include "eval_support.h"

using namespace evaltest;

namespace {

struct FlipChecker {
    Evaluator evaluator;
    std::unique_ptr<Board> twin = std::make_unique<Board>();
    int checked = 0;

    void check(Board& board) {
        const std::string flipped = flipFen(fenOf(board));
        ASSERT_TRUE(twin->setFen(flipped.c_str())) << flipped;
        for (bool cache : {false, true}) {
            const int score = evaluator(board, cache);
            // Twice on the twin with the cache on: the second call is a hit.
            ASSERT_EQ(score, evaluator(*twin, cache)) << flipped << (cache ? " (cache)" : "");
            ASSERT_EQ(score, evaluator(*twin, cache)) << flipped << (cache ? " (cache hit)" : "");
        }
        ++checked;
    }

    // Every position reached within depth plies, the root included.
    void walk(Board& board, int depth) {
        check(board);
        if (depth == 0 || ::testing::Test::HasFatalFailure()) return;
        forEachLegalMove(board, [&](Move) {
            if (!::testing::Test::HasFatalFailure()) walk(board, depth - 1);
        });
    }
};

}  // namespace

TEST(ColourFlip, PerftPositionsToDepthThree) {
    FlipChecker checker;
    const int depth = sanitized() ? 2 : 3;
    for (const std::string& fen : fensOf(testData("perft.epd"))) {
        auto board = boardFrom(fen);
        checker.walk(*board, depth);
        if (HasFatalFailure()) return;
    }
    EXPECT_GT(checker.checked, sanitized() ? 5000 : 280000);
}
