// The piece term of one side: threats, penalties (trapped and shut-in pieces, files, the back rank)
// and placement with mobility.
#pragma once

#include "board/board.h"
#include "eval/evalcontext.h"

// side's piece term, from side's view; its three parts are left in terms.
int evalPieces(const Board& board, const PawnEntry& entry, int side, PieceTerms& terms);
