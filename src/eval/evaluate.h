// The static evaluation: the score of a position in centipawns from the side to move's view.
#pragma once

#include "board/board.h"
#include "eval/evalcontext.h"

// Scores the board for its side to move. The board is marked and restored by the exchange tests of
// passed pawns, so it is not const, but it is unchanged on return. Uses and fills the shared
// evaluation cache unless the context turns it off.
int evaluate(EvalContext& context, Board& board);

// Every term of one evaluation, as the console shows it. Sides are White 0, Black 1; sums are from
// White's view unless named otherwise.
struct EvalBreakdown {
    int material = 0;  // (pawns + units) x 100, White minus Black
    int imbalance = 0;
    int pawns = 0;  // pawn structure with the passed-pawn terms
    int king[2] = {};
    PieceTerms pieces[2];
    int beforeDraws = 0;    // material, imbalance and pawns, before draw recognition
    int beforeEnding = 0;   // with the king and piece terms, before the ending rules
    const char* rule = "";  // the draw or ending rule that decided, if any
    int score = 0;          // what evaluate returns, side to move's view
};

// The same evaluation as evaluate without the cache, keeping every term.
int explainEvaluation(EvalContext& context, Board& board, EvalBreakdown& parts);
