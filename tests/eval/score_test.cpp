// Whole scores derived by hand from the tables, term by term, so that a wrong entry, sign or mirror
// in any term the position reaches shows as a difference. Squares are written as on the board;
// "own rank" counts from the side's own back rank.
#include <gtest/gtest.h>

#include "eval_support.h"

using namespace evaltest;

namespace {

struct Derived {
    const char* fen;  // White to move; Black to move is checked as well
    int material, imbalance, pawns, kingW, kingB, piecesW, piecesB;
};

void expectDerived(const Derived& d) {
    auto context = std::make_unique<EvalContext>();
    context->useCache = false;
    auto board = boardFrom(d.fen);
    EvalBreakdown parts;
    explainEvaluation(*context, *board, parts);
    EXPECT_EQ(parts.material, d.material) << d.fen;
    EXPECT_EQ(parts.imbalance, d.imbalance) << d.fen;
    EXPECT_EQ(parts.pawns, d.pawns) << d.fen;
    EXPECT_EQ(parts.king[WHITE], d.kingW) << d.fen;
    EXPECT_EQ(parts.king[BLACK], d.kingB) << d.fen;
    const auto sum = [](const PieceTerms& t) { return t.threats + t.penalties + t.position; };
    EXPECT_EQ(sum(parts.pieces[WHITE]), d.piecesW) << d.fen;
    EXPECT_EQ(sum(parts.pieces[BLACK]), d.piecesB) << d.fen;
    const int t = d.material + d.imbalance + d.pawns + d.kingW + d.piecesW - d.piecesB - d.kingB;
    EXPECT_EQ(evaluate(*context, *board), t + 4) << d.fen;  // the tempo for the side to move
    std::string blackToMove = d.fen;
    blackToMove[blackToMove.find(" w ") + 1] = 'b';
    EXPECT_EQ(evaluate(*context, *boardFrom(blackToMove)), -t + 4) << blackToMove;
}

}  // namespace

// White Ke1, Pe4; Black Ke8.
// Material 100. Imbalance 0 (no knights or rooks, nothing else differs).
// Pawn e4 (own rank 4): placement mg 24 eg 2; passed mg 12 eg 14; isolated mg -10-10 eg -10, open
// file ahead mg -24 eg -10: mg -8, eg -4. Phase 0 (no pieces), so only the endgame counts.
// Passed e4, front square e5 free and safe: +passedFree 2; enemy king e8 at 3 x 4, own king e1 at
// 4 x 2: 2 + 12 - 8 = 6. Pawns = (6 - 4) = 2.
// Kings (no enemy pieces, endgame): White e1 -24 x 8 (no black pawns) x 24 / 256 = -18; Black e8
// -24 x 12 (one white pawn) x 24 / 256 = -27. Pieces 0.
// T = 100 + 2 - 18 + 27 = 111: White to move 115, Black to move -107.
TEST(HandDerivedScore, KingAndPawn) {
    expectDerived({"4k3/8/8/8/4P3/8/8/4K3 w - -", 100, 0, 2, -18, -27, 0, 0});
}

// White Kg1, Rd1, Pf2 g2 h2; Black Kg8, Nc6, Pf7 g7 h7.
// Material 800 - 600 = 200.
// Imbalance: rook by 3 pawns 20 - knight by 3 pawns 15 = 5; one minor against the exchange (d = -1):
// exchangeA[White h 1] 142 + exchangePawns[3] -4 = 138; total 143.
// Pawns: f2 eg -4; g2 mg -4; h2 mg -12 (none backward: a neighbour outnumbers the attackers of the
// square ahead); Black the same, so the structure is 0; no passed pawns, no bishops: 0.
// King g1 (Black has 3 units): -24 x 20 x 24 / 256 = -45; king g8 (White has 5): -24 x 20 x 16 / 256 = -30.
// Rook d1: 2 + 7 + 3 empty squares, rookRay[12] 16; open d-file with 5 files free of pawns, rookOpen 8;
// the enemy king's file is 3 away: 24. Knight c6 (own rank 3): table 0 + all 8 targets empty 21,
// scaled by 3 pawns / 8: 7.
// T = 200 + 143 - 45 + 24 - 7 + 30 = 345.
TEST(HandDerivedScore, RookAgainstKnight) {
    expectDerived({"6k1/5ppp/2n5/8/8/8/5PPP/3R2K1 w - -", 200, 143, 0, -45, -30, 24, 7});
}

// White Kg1, Qd1, Re1, Pf2 g2 h2; Black Kg8, Qd8, Rf8, Pf7 g6 h7.
// Material and imbalance 0. Black g6 (own rank 3) is protected: mg -4 + protected 0; f7 is not
// backward because g6 supports its double step; the structures score alike: pawns 0.
// King g1 (15 enemy units: safety, phase 15 - 12 = 3): no attacker reaches the zone (f-file shut by
// f7). Shelter: f2 4, g2 7, h2 5, storm f7 1 (rook behind it, king beside), g6 2, h7 1: 12 points =
// 192. f = 256 - 192 = 64: add -32. (0 + (-32 + kingMiddle g1 0)) x 3 / 16 = -6.
// King g8: shelter f7 4, g6 3, h7 5; storm f2 1, h2 1 (g2 has the king behind and nothing beside):
// 10 points = 160, f = 96, add -48: -48 x 3 / 16 = -9.
// Rook e1: 1 + 7 empty, rookRay[8] 12; open e-file rookOpen[5] 8; two files from the enemy king
// 10 x 15 units / 32 = 4. Queen d1: 8 - 2 x 7 = -6. White 18.
// Rook f8: 1 empty, rookRay[1] -6, own pawn on its file. Queen d8: -6. Black -12.
// T = 0 - 6 + 18 + 12 + 9 = 33.
TEST(HandDerivedScore, KingShelterAndStorm) {
    expectDerived({"3q1rk1/5p1p/6p1/8/8/8/5PPP/3QR1K1 w - -", 0, 0, 0, -6, -9, 18, -12});
}

// White Kg1, Qd1, Ra1, Pf2 g2 h2; Black Kg8, Qh4, Ng4, Bd6, Pf7 g7 h7.
// Material 1800 - 1900 = -100.
// Imbalance: rook by pawns 20 - knight by pawns 15 = 5; bishops -25, Black's bishop with a knight
// against no bishop: bishopVsKnightOnly[Black h 3] 15, so -15; two minors for the rook (d = -2):
// -minorsForRook2[3] 32. Total -67.
// Pawns: the structures cancel; Black's dark bishop has one own pawn (g7) on its colour: -3 for
// Black, so +3.
// King g1: attackers knight g4 (hits f2 and h2), bishop d6 (reaches h2 over e5 f4 g3), queen h4
// (of f2 and h2, both two steps off, it bears on the a-side one, f2, over g3): count 3, weight 1 + 1 + 4 = 6:
// 6 x -12 x 192 / 256 = -54. Shelter f2 4, g2 7, h2 5, storm f7 1, h7 1: 14 points = 224,
// f = 32, mult 288, add -16; phase 16 - 12 = 4: (-54 x 288 / 256 = -60) x 4 / 16 = -15, plus
// -16 x 4 / 16 = -4: -19.
// King g8: no attackers; shelter 16 - storm 2 = 14 points, add -16, phase 3: -3.
// Rook a1: 2 + 7 empty, rookRay[9] 13; open a-file 8. Queen d1: -6. White 15.
// Knight g4 (own rank 5): table 4 + 4 empty targets 8, scaled 12 x 3 / 8 = 4; threats f2 and h2
// (no pawn defends them) 12. Bishop d6 (own rank 3): table 2 + 10 empty squares 16, threat h2 6.
// Queen h4: 8 - 2 x 3 = 2. Black: threats 18, position 24: 42.
// T = -100 - 67 + 3 - 19 + 15 - 42 + 3 = -207.
TEST(HandDerivedScore, KingAttack) {
    expectDerived({"6k1/5ppp/3b4/8/6nq/8/5PPP/R2Q2K1 w - -", -100, -67, 3, -19, -3, 15, 42});
}
