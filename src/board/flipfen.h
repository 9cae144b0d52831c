// The colour-flipped twin of a position written as FEN, for checks that a position and its twin are
// treated alike.
#pragma once

#include <string>

// The twin of a FEN: ranks in reverse order with the colours of the pieces swapped, the other side to
// move, castling rights of the other colour, the en-passant square on the mirrored rank. Counters after
// the four position fields are kept.
std::string flipFen(const std::string& fen);
