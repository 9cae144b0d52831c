// Pawn structure: the per-structure terms kept in the thread's pawn table, and the passed-pawn and
// pawn-piece terms recomputed on every call.
#pragma once

#include "board/board.h"
#include "eval/evalcontext.h"

// The pawn-structure score from White's view, blended between middlegame and endgame by the
// material left. Leaves context.pawnEntry on the structure's entry.
int pawnevaluator(EvalContext& context, Board& board);

// The structure's entry in the thread's pawn table, computed on a miss (which always overwrites);
// also left in context.pawnEntry.
PawnEntry& probePawnTable(EvalContext& context, const Board& board);

// Fills one colour's block and adds its middlegame and endgame pawn terms to mg and eg.
void evalPawnSide(const Board& board, int side, PawnBlock& block, int& mg, int& eg);

// The king- and piece-dependent term of side's passed pawns (listed in its block).
int evalPassedDynamic(Board& board, const PawnBlock& block, int side);

// Pawns against pieces for side: its bishops against its own pawns on their colour, and in a pawn
// ending of the opponent its passed pawns that the enemy king can no longer catch.
int pawnPieceTerm(const Board& board, const PawnEntry& entry, int side, int phase);
