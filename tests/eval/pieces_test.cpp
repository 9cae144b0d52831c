// The penalty part of the piece term, which the whole-score derivations do not reach: trapped
// knights and bishops, the rook shut in by its own king, rooks on open files and on the seventh,
// knights behind pawns. White's pieces in each case; the colour-flip test carries them to Black.
#include "eval/pieces.h"

#include <gtest/gtest.h>

#include "eval/pawns.h"
#include "eval_support.h"

using namespace evaltest;

namespace {

int whitePenalties(const std::string& fen) {
    auto board = boardFrom(fen);
    auto context = std::make_unique<EvalContext>();
    pawnevaluator(*context, *board);
    PieceTerms terms;
    evalPieces(*board, *context->pawnEntry, WHITE, terms);
    return terms.penalties;
}

}  // namespace

TEST(PiecePenalties, TrappedAndShutInPieces) {
    EXPECT_EQ(whitePenalties("N3k3/2p5/8/8/8/8/8/4K3 w - -"), -100);   // knight a8, pawn c7
    EXPECT_EQ(whitePenalties("N3k3/8/2p5/8/8/8/8/4K3 w - -"), 0);      // the pawn on c6 does not trap it
    EXPECT_EQ(whitePenalties("4k3/N7/p1P5/8/8/8/8/4K3 w - -"), -100);  // knight a7: a6 and c6 (any colour)
    EXPECT_EQ(whitePenalties("4k3/N7/2P5/8/8/8/8/4K3 w - -"), -100);   // a6 empty, c6 taken
    EXPECT_EQ(whitePenalties("4k3/N7/p7/8/8/8/8/4K3 w - -"), 0);       // a6 alone
    EXPECT_EQ(whitePenalties("4k3/7B/6p1/8/8/8/8/4K3 w - -"), -100);   // bishop h7, pawn g6
    EXPECT_EQ(whitePenalties("4k3/8/8/8/8/8/6PP/5KR1 w - -"), -50);    // king f1 shuts in the rook on g1
    EXPECT_EQ(whitePenalties("4k3/8/8/8/8/8/PP6/1RK5 w - -"), -50);    // and on the queen's side
    EXPECT_EQ(whitePenalties("4k3/8/8/8/8/8/6P1/5KR1 w - -"), 0);      // the h-pawn is gone
}

TEST(PiecePenalties, FilesRanksAndOutposts) {
    // Rook a7: open a-file with 5 files free of pawns 8; Black's king on its back rank: counter 2,
    // 2 x backRank[2] = 20.
    EXPECT_EQ(whitePenalties("4k3/R7/8/8/8/8/5PPP/6K1 w - -"), 8 + 20);
    EXPECT_EQ(whitePenalties("4k3/RR6/8/8/8/8/5PPP/6K1 w - -"), 2 * 8 + 2 * 30);  // counter 4
    // Rook d1, Black pawn d7: half-open with 5 files free of own pawns 8; on the enemy king's file
    // 20 x 5 units / 32 = 3.
    EXPECT_EQ(whitePenalties("3k4/3p4/8/8/8/8/5PPP/3R2K1 w - -"), 8 + 3);
    // Knight d4 behind its pawn d5: 32; an enemy pawn three squares ahead on d7: -12.
    EXPECT_EQ(whitePenalties("4k3/8/8/3P4/3N4/8/8/4K3 w - -"), 32);
    EXPECT_EQ(whitePenalties("4k3/3p4/8/3P4/3N4/8/8/4K3 w - -"), 32 - 12);
}

TEST(PawnStructure, MaterialWithoutItsBishopIsNotReached) {
    auto board = boardFrom("4k3/8/8/8/8/8/4P3/4K3 w - -");
    board->material[WHITE] += BISHOP_MATERIAL;  // a bishop the piece list does not hold
    auto context = std::make_unique<EvalContext>();
    EXPECT_DEATH(pawnevaluator(*context, *board), "pawnevaluator\\(\\): not reached!");
}
