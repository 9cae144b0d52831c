// Static exchange evaluation: what a capture wins or loses, in pawn units, when both sides keep
// recapturing on the target square with their cheapest piece.
#pragma once

#include <cstdint>

#include "board/board.h"
#include "board/move.h"

struct SeeAttacker {
    uint8_t square;
    uint8_t value;
};
constexpr int MAX_SEE_ATTACKERS = 16;

// Fills list with the pieces of colour that attack square directly (no x-rays, no king): queens, rooks,
// bishops, knights, then pawns. Returns their number.
int collectAttackers(SeeAttacker* list, const Board& board, int colour, int square);
// The value of the exchange that move starts, for side.
int see(Board& board, int side, Move move);
