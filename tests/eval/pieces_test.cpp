// What the whole-score derivations do not reach: the penalty part of the piece term (trapped knights
// and bishops, the rook shut in by its own king) and the king attack's zone squares, batteries and
// stacks. White's side in each case; the colour-flip test carries them to Black.
#include "eval/pieces.h"

#include <gtest/gtest.h>

#include "eval/king.h"
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

TEST(KingAttack, ZoneSquaresCoverBatteriesAndStacks) {
    auto attack = [](const std::string& fen) { return evalKingAttack(*boardFrom(fen), WHITE); };
    // One attacker weighs nothing (scale 16: 1 x -12 x 16 / 256 rounds to 0); two weigh
    // 2 x -12 x 128 / 256 = -12.
    // King g2; knight e5 hits f3; bishop h5 reaches the zone only at f3, which a pawn on e2 covers.
    EXPECT_EQ(attack("k7/8/8/4n2b/8/8/4P1K1/8 w - -"), 0);
    EXPECT_EQ(attack("k7/8/8/4n2b/8/4P3/6K1/8 w - -"), -12);  // e3 does not cover f3
    // King g1; bishop d4 with a queen behind it on the diagonal counts twice; a rook there does not.
    EXPECT_EQ(attack("k7/8/8/2q5/3b4/8/8/6K1 w - -"), -12);
    EXPECT_EQ(attack("k7/8/8/2r5/3b4/8/8/6K1 w - -"), 0);
    // Rooks on the h-file: the front one reaches h2 and the one behind it adds to count and weight:
    // 4 x -12 x 128 / 256 = -24. A pawn on h2 is where they bear, not behind it: they still count.
    EXPECT_EQ(attack("k6r/7r/8/8/8/8/5PP1/6K1 w - -"), -24);
    EXPECT_EQ(attack("k6r/8/8/8/8/8/5PP1/6K1 w - -"), -1);  // 2 x -12 x 16 / 256
    EXPECT_EQ(attack("k6r/7r/8/8/8/8/5PPP/6K1 w - -"), -24);
    // King g2: they bear on h3, and the pawn on h2 right behind it shuts the file.
    EXPECT_EQ(attack("k6r/7r/8/8/8/8/5PKP/8 w - -"), 0);
    // A slider bears on the one square beside the king its line enters first: the queen on h4 on f2
    // (level with h2, and on the a-side), which the knight on g3 shuts off; h2 does not count instead.
    EXPECT_EQ(attack("k7/8/8/8/7q/6N1/8/6K1 w - -"), 0);
    // In the corner the square the order prefers is off the board: the bishop on a3 bears on b2.
    EXPECT_EQ(attack("k7/8/8/8/8/b2n4/8/K7 w - -"), -12);
}
