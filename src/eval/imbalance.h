// The correction for material combinations: knights and rooks by pawns, the bishop pair, minor pieces
// against rooks, the exchange, queen against rooks.
#pragma once

#include "board/board.h"

// White's view; 0 when both sides have the same material.
int evalImbalance(const Board& board);
