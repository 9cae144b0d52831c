// Counting leaf positions, to test the generators and make/take-back against known totals.
#pragma once

#include <cstdint>

#include "board/board.h"

// The number of legal move sequences of `depth` plies; lastMove is the move that led here.
uint64_t perft(Board& board, int depth, Move lastMove);
// perft from the board's own last move; logs the count.
uint64_t perftTop(Board& board, int depth);
