// The draw rules on positions reached by real moves, so that the history the rules read is the one
// the board keeps.
#include "search/drawrules.h"

#include <gtest/gtest.h>

#include "boards.h"

namespace {

TEST(DrawRules, RepetitionNeedsTwoEarlierOccurrencesNearTheRootAndOneDeeper) {
    const Board once = *boardAfter(START_FEN, "Nf3 Nf6 Ng1 Ng8");
    EXPECT_TRUE(repetitionDraw(once, 4));
    EXPECT_FALSE(repetitionDraw(once, 3));
    EXPECT_FALSE(repetitionDraw(once, 2));

    const Board twice = *boardAfter(START_FEN, "Nf3 Nf6 Ng1 Ng8 Nf3 Nf6 Ng1 Ng8");
    EXPECT_TRUE(repetitionDraw(twice, 2));

    // A pawn move in between cuts the history: the earlier positions can never come back.
    const Board cut = *boardAfter(START_FEN, "Nf3 Nf6 Ng1 Ng8 e4 e5 Nf3 Nf6 Ng1 Ng8");
    EXPECT_TRUE(repetitionDraw(cut, 5));
    EXPECT_FALSE(repetitionDraw(cut, 1));
}

TEST(DrawRules, FiftyMovesCountPliesSinceTheLastCaptureOrPawnMove) {
    Board board = *boardAfter("4k3/8/8/8/8/8/8/R3K2R w - - 0 1", "");
    // Rooks wander without repeating a position's count: only the ply difference matters here.
    const char* cycle[] = {"Ra2", "Kd8", "Ra1", "Ke8"};
    int plies = 0;
    while (plies < 99) {
        const Move made = makeMove(board, isMove(board, cycle[plies % 4]));
        ASSERT_NE(made, NO_MOVE);
        board.lastMove = made;
        ++plies;
    }
    EXPECT_FALSE(fiftyMoveDraw(board));
    board.lastMove = makeMove(board, isMove(board, cycle[plies % 4]));
    EXPECT_TRUE(fiftyMoveDraw(board));
    // A capture starts the count again.
    const Board fresh = *boardAfter("4k3/8/8/8/8/8/r7/R3K3 w - - 0 1", "Rxa2");
    EXPECT_FALSE(fiftyMoveDraw(fresh));
}

TEST(DrawRules, InsufficientMaterialIsAtMostOneMinorPieceAndNothingElse) {
    struct Case {
        const char* fen;
        bool draw;
    };
    const Case cases[] = {
        {"4k3/8/8/8/8/8/8/4K3 w - - 0 1", true},    {"4k3/8/8/8/8/8/8/4KN2 w - - 0 1", true},
        {"4kb2/8/8/8/8/8/8/4K3 w - - 0 1", true},   {"4k3/8/8/8/8/8/8/3NKN2 w - - 0 1", false},
        {"4kb2/8/8/8/8/8/8/4KB2 w - - 0 1", false}, {"4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", false},
        {"4k3/8/8/8/8/8/8/4K2R w - - 0 1", false},  {"4k3/8/8/8/8/8/8/3QK3 w - - 0 1", false},
    };
    for (const Case& c : cases) {
        Board board;
        ASSERT_TRUE(board.setFen(c.fen));
        EXPECT_EQ(insufficientMaterial(board), c.draw) << c.fen;
    }
}

TEST(DrawRules, ReversalGivesTheMoveThatRepeats) {
    // Black's bishop goes out and back while White's rook went up the file: the rook can go back too.
    const Board board = *boardAfter("4k3/8/8/8/8/2b5/8/3R3K b - - 0 1", "Bb4 Rd7 Bc3");
    const Move back = reversalDraw(board, 3, 0, board.lastMove);
    EXPECT_EQ(moveFrom(back), 0x63);  // d7
    EXPECT_EQ(moveTo(back), 0x03);    // d1
    // Only a draw when that is enough to fail high, and only with three moves inside the search.
    EXPECT_EQ(reversalDraw(board, 3, 1, board.lastMove), NO_MOVE);
    EXPECT_EQ(reversalDraw(board, 2, 0, board.lastMove), NO_MOVE);

    // The returning bishop now blocks the rook's way back along the file.
    const Board blocked = *boardAfter("4k3/8/8/8/8/3b4/8/3RK3 b - - 0 1", "Be4 Rd5 Bd3");
    EXPECT_EQ(reversalDraw(blocked, 3, 0, blocked.lastMove), NO_MOVE);
    // A knight's way back lies on no line, which the rule reads as blocked.
    const Board knights = *boardAfter(START_FEN, "Nf3 Nf6 Nc3 Ng8");
    EXPECT_EQ(reversalDraw(knights, 4, 0, knights.lastMove), NO_MOVE);
    // A pawn move in between is irreversible.
    const Board pawn = *boardAfter(START_FEN, "Nf3 Nf6 e4 Ng8");
    EXPECT_EQ(reversalDraw(pawn, 4, 0, pawn.lastMove), NO_MOVE);
}

}  // namespace
