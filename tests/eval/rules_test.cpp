// The ending rules of the evaluation: material draws, rook pawns the defending king stops,
// opposite-coloured bishops, and the cache returning what a miss returned.
#include <gtest/gtest.h>

#include "eval_support.h"

using namespace evaltest;

namespace {

// Each position as given and as its colour-flipped twin, with either side to move.
void expectScore(Evaluator& evaluate, const std::string& fen, bool draw) {
    auto board = boardFrom(fen);
    for (const std::string& version : {fen, flipFen(fenOf(*board))}) {
        for (const char* side : {" w - -", " b - -"}) {
            const std::string position = version.substr(0, version.find(' ')) + side;
            const int score = evaluate(position);
            if (draw)
                EXPECT_EQ(score, 0) << position;
            else
                EXPECT_NE(score, 0) << position;
        }
    }
}

}  // namespace

TEST(DrawRules, MaterialThatCannotWin) {
    Evaluator evaluate;
    expectScore(evaluate, "4k3/8/8/8/8/8/8/1NN1K3 w - -", true);   // two knights
    expectScore(evaluate, "4k3/8/8/8/8/4B3/8/2B1K3 w - -", true);  // two bishops on dark squares
    expectScore(evaluate, "4k3/8/8/8/8/8/8/2B1KB2 w - -", false);  // bishops on both colours
    expectScore(evaluate, "4k3/8/8/8/8/8/8/1N2KB2 w - -", false);  // bishop and knight
    expectScore(evaluate, "4k3/8/8/3b4/8/8/8/R3K3 w - -", true);   // rook against bishop
    expectScore(evaluate, "4k3/8/8/8/8/8/8/R3K3 w - -", false);    // a lone rook wins
    // A pawn cannot win against a knight; two pawns against a knight without pawns are the better
    // side by the imbalance tables, and it is not a draw.
    expectScore(evaluate, "4k3/8/8/3n4/8/4P3/8/4K3 w - -", true);
    expectScore(evaluate, "4k3/8/8/3n4/8/8/4PP2/4K3 w - -", false);
}

TEST(DrawRules, RookPawnsWithTheDefendingKingInFront) {
    Evaluator evaluate;
    expectScore(evaluate, "k7/8/8/8/8/P7/8/4K3 w - -", true);
    expectScore(evaluate, "4k3/8/8/8/8/P7/8/4K3 w - -", false);   // the king is too far
    expectScore(evaluate, "8/8/8/1k6/8/P7/P7/4K3 w - -", true);   // in front of the front pawn
    expectScore(evaluate, "8/8/8/8/P7/P7/1k6/4K3 w - -", false);  // behind it
    expectScore(evaluate, "k7/8/8/8/8/P7/1P6/4K3 w - -", false);  // not on the rook file only
    // The a8 corner is light: a dark-squared bishop cannot drive the king out, a light one can.
    expectScore(evaluate, "k7/8/8/8/8/P7/8/2B1K3 w - -", true);
    expectScore(evaluate, "k7/8/8/8/8/P7/8/3BK3 w - -", false);
    // The pawn is not passed: taking on b4 puts it on the knight's file.
    expectScore(evaluate, "k7/8/8/8/1p6/P7/8/2B1K3 w - -", false);
}

TEST(DrawRules, OppositeBishopsHalveTheScoreKeepingTheOddUnit) {
    // Scores before halving 284, 153 and -233 (from "eval"): halved away from zero to 142, 77 and -117,
    // then the tempo for the side to move.
    Evaluator evaluate;
    EXPECT_EQ(evaluate("4k3/5p2/8/8/3b4/8/2PP1PP1/4KB2 w - -"), 142 + 4);
    EXPECT_EQ(evaluate("4k3/5p2/8/8/3b4/8/2P2PP1/4KB2 b - -"), -77 + 4);
    EXPECT_EQ(evaluate("4k3/1pp2pp1/4b3/8/8/8/5PP1/2B1K3 w - -"), -117 + 4);
    EXPECT_EQ(evaluate("4k3/1pp2pp1/4b3/8/8/8/5PP1/2B1K3 b - -"), 117 + 4);
    // Bishops of one colour are not halved.
    EXPECT_EQ(evaluate("4k3/5p2/8/8/4b3/8/2PP1PP1/4KB2 w - -"), 285 + 4);
}

TEST(EvalCache, HitReturnsExactlyWhatTheMissReturned) {
    Evaluator evaluate;
    for (const char* fen : {"r1bqkb1r/pppp1ppp/2n2n2/4p3/2B1P3/5N2/PPPP1PPP/RNBQK2R w KQkq -",
                            "r1bqkb1r/pppp1ppp/2n2n2/4p3/2B1P3/5N2/PPPP1PPP/RNBQK2R b KQkq -",
                            "8/5k2/8/2p5/8/1P6/5K2/8 b - -"}) {
        auto board = boardFrom(fen);
        const int uncached = evaluate(*board, false);
        const uint64_t hits = evaluate.context->cacheHits;
        const int miss = evaluate(*board, true);
        const int hit = evaluate(*board, true);
        EXPECT_EQ(evaluate.context->cacheHits, hits + 1) << fen;
        EXPECT_EQ(miss, uncached) << fen;
        EXPECT_EQ(hit, uncached) << fen;
    }
    // Rule draws are not stored: both calls compute them.
    auto draw = boardFrom("4k3/8/8/8/8/8/8/1NN1K3 b - -");
    const uint64_t hits = evaluate.context->cacheHits;
    EXPECT_EQ(evaluate(*draw, true), 0);
    EXPECT_EQ(evaluate(*draw, true), 0);
    EXPECT_EQ(evaluate.context->cacheHits, hits);
    // Castling rights change the king term, so they must not share a cached score.
    const int withRights = evaluate("r3k2r/pppq1ppp/2n2n2/8/8/2N2N2/PPPQ1PPP/R3K2R w KQkq -", true);
    EXPECT_EQ(evaluate("r3k2r/pppq1ppp/2n2n2/8/8/2N2N2/PPPQ1PPP/R3K2R w Qkq -", true),
              evaluate("r3k2r/pppq1ppp/2n2n2/8/8/2N2N2/PPPQ1PPP/R3K2R w Qkq -", false));
    EXPECT_EQ(withRights, evaluate("r3k2r/pppq1ppp/2n2n2/8/8/2N2N2/PPPQ1PPP/R3K2R w KQkq -", false));
}
