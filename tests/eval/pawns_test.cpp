// Pawn structure: the per-structure terms and their block, the passed-pawn terms that depend on the
// pieces, and the pawn table's store, hit and overwrite.
#include "eval/pawns.h"

#include <gtest/gtest.h>

#include "board/tables.h"
#include "eval_support.h"

using namespace evaltest;

namespace {

struct SideTerms {
    int mg = 0, eg = 0;
    PawnBlock block{};
};

SideTerms pawnSide(const std::string& fen, int side) {
    SideTerms terms;
    evalPawnSide(*boardFrom(fen), side, terms.block, terms.mg, terms.eg);
    return terms;
}

int passedDynamic(const std::string& fen, int side) {
    auto board = boardFrom(fen);
    auto context = std::make_unique<EvalContext>();
    pawnevaluator(*context, *board);
    return evalPassedDynamic(*board, context->pawnEntry->block[side], side);
}

}  // namespace

TEST(PawnStructure, TermsAndBlockOfEachSide) {
    // White c4 d5, Black h7.
    // d5 (own rank 5) protected by c4 and passed: placement 8/6, protected 20, passed 28/36,
    //    protected passer 6/12: mg 62, eg 54.
    // c4 (own rank 4) passed and backward (no neighbour beside it, none that can come up):
    //    placement 8/4, passed 14/16, backward -12/-20 and -24/-4 on the open file: mg -14, eg -4.
    const std::string fen = "4k3/7p/8/3P4/2P5/8/8/4K3 w - -";
    const SideTerms white = pawnSide(fen, WHITE);
    EXPECT_EQ(white.mg, 48);
    EXPECT_EQ(white.eg, 50);
    EXPECT_EQ(white.block.pawnFreeFiles, 0xF3);
    EXPECT_EQ(white.block.passedFiles, 0x0C);
    ASSERT_EQ(white.block.passedCount, 2);
    EXPECT_EQ(white.block.passed[0], 0x43);  // in the order the pawns are listed: d5 came first
    EXPECT_EQ(white.block.passed[1], 0x32);
    EXPECT_EQ(white.block.colourCounts, 0x02);  // both on light squares
    // h7 (own rank 2 for Black) passed and isolated: placement -12/0, passed 0/4,
    //    isolated -20/-10 and -24/-10 on the open file: mg -56, eg -16.
    const SideTerms black = pawnSide(fen, BLACK);
    EXPECT_EQ(black.mg, -56);
    EXPECT_EQ(black.eg, -16);
    EXPECT_EQ(black.block.pawnFreeFiles, 0x7F);
    ASSERT_EQ(black.block.passedCount, 1);
    EXPECT_EQ(black.block.passed[0], 0x67);

    // White e2 e3: the front pawn is doubled (-20/-25), -10 more with the file ahead open, passed
    // (0/0 on the third rank), isolated (-20/-10, open -24/-10), placement 16/4: mg -58, eg -41.
    // The rear pawn is not passed (a pawn ahead) but isolated: placement 8/0, -20/-10: mg -12, eg -10.
    const SideTerms doubled = pawnSide("4k3/8/8/8/8/4P3/4P3/4K3 w - -", WHITE);
    EXPECT_EQ(doubled.mg, -70);
    EXPECT_EQ(doubled.eg, -51);
    ASSERT_EQ(doubled.block.passedCount, 1);
    EXPECT_EQ(doubled.block.passed[0], 0x24);
}

TEST(PawnStructure, NoPawnsStoreZeroScoresAndEmptyBlocks) {
    auto context = std::make_unique<EvalContext>();
    auto board = boardFrom("4k3/8/8/8/8/8/8/R3K3 w - -");
    ASSERT_EQ(board->pawnHash, 0u);
    // The key of no pawns is 0: it must not hit the zeroed entry 0 before anything was stored there.
    EXPECT_EQ(pawnevaluator(*context, *board), 0);
    EXPECT_EQ(context->pawnStores, 1u);
    for (int side = WHITE; side <= BLACK; ++side) {
        EXPECT_EQ(context->pawnEntry->block[side].pawnFreeFiles, 0xFF);
        EXPECT_EQ(context->pawnEntry->block[side].passedCount, 0);
    }
    pawnevaluator(*context, *board);
    EXPECT_EQ(context->pawnHits, 1u);
}

TEST(PawnStructure, KeysSharingTheIndexOverwriteEachOther) {
    // Two structures of different scores; the second's key is given the first one's low half, so both
    // land in one entry and only the high half tells them apart.
    auto a = boardFrom("4k3/8/8/8/8/8/4P3/4K3 w - -");
    auto b = boardFrom("4k3/8/8/3P4/8/8/8/4K3 w - -");
    b->pawnHash = (b->pawnHash & ~uint64_t{0xFFFFFFFF}) | (a->pawnHash & 0xFFFFFFFF);
    ASSERT_NE(highHalf(a->pawnHash), highHalf(b->pawnHash));

    auto context = std::make_unique<EvalContext>();
    const int scoreA = pawnevaluator(*context, *a);
    const PawnEntry* entry = context->pawnEntry;
    const int scoreB = pawnevaluator(*context, *b);
    ASSERT_NE(scoreA, scoreB);
    EXPECT_EQ(context->pawnEntry, entry);
    EXPECT_EQ(pawnevaluator(*context, *a), scoreA);  // recomputed, not read from b's entry
    EXPECT_EQ(pawnevaluator(*context, *b), scoreB);
    EXPECT_EQ(context->pawnStores, 4u);
    EXPECT_EQ(context->pawnHits, 0u);
}

TEST(PassedPawns, FrontSquareKingsAndRooks) {
    // Pawn a7 (own rank 7): passedFree 25, kingFar 40, kingNear 20, rookBehind 25. Black king e8 is 4
    // from a8, White's king e1 is 7 away: 160 - 140 = 20 in each case below.
    EXPECT_EQ(passedDynamic("4k3/P7/8/8/8/8/8/4K3 w - -", WHITE), 25 + 20);        // queening is safe
    EXPECT_EQ(passedDynamic("n3k3/P7/8/8/8/8/8/4K3 w - -", WHITE), -50 + 20);      // a knight blocks: twice
    EXPECT_EQ(passedDynamic("r3k3/P7/8/8/8/8/8/4K3 w - -", WHITE), -25 + 20);      // a rook blocks: once
    EXPECT_EQ(passedDynamic("4k3/P7/8/8/8/8/8/R3K3 w - -", WHITE), 25 + 20 + 25);  // own rook behind
    // An enemy rook behind also guards a8 through the pawn: no passedFree.
    EXPECT_EQ(passedDynamic("4k3/P7/8/8/8/8/8/r3K3 w - -", WHITE), 20 - 25);
    // The same for Black, mirrored.
    EXPECT_EQ(passedDynamic("4k3/8/8/8/8/8/p7/N3K3 b - -", BLACK), -50 + 20);
    // Own rank 5, e5 blocked by a knight on e6: passedFree 4 twice; kings e8 (2 from e6, x 12) and
    // e1 (5 from e6, x 6).
    EXPECT_EQ(passedDynamic("4k3/8/4n3/4P3/8/8/8/4K3 w - -", WHITE), -8 + 24 - 30);
}
