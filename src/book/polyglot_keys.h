// The key under which a Polyglot opening book (".bin") files a position.
#pragma once

#include <cstdint>

#include "board/board.h"

// The XOR of the format's fixed numbers for each piece on its square, each castling right, an
// en-passant file (only when the side to move has a pawn beside the pawn that just moved two squares)
// and White to move.
uint64_t polyglotKey(const Board& board);
