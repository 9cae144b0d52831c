// The moves a game keeps, as against those a search or the move reader plays and takes back. The
// history holds MAX_PLY_HISTORY plies and makeMove leaves that bound to its callers: a game of any
// length stays within it by dropping the plies before its last capture or pawn move, which no
// repetition can reach back past.
#pragma once

#include <cstdint>

#include "board/board.h"
#include "board/makemove.h"
#include "board/move.h"

// Plies kept free above a game for what is played on top of it and taken back: a search line, the
// move reader's trial move, perft.
constexpr int HISTORY_ROOM = 256;
// A longer run without a capture or pawn move keeps only its last plies, and its fifty-move count
// stops here: far past any draw claim, and past the 75-move rule that ends a game on its own.
constexpr int LONGEST_REVERSIBLE_RUN = 512;

// Leaves more than HISTORY_ROOM plies free, dropping the oldest plies of the history if need be. The
// position, its fifty-move count and the plies since the last capture or pawn move stay; so the moves
// still held can be taken back, but the saved states a caller kept for them must then have
// lastIrreversible 0, the new start of the history.
void keepHistoryRoom(Board& board);

// Plays a move of the game with room kept in the history; what makeMove returns. saved, if given,
// receives the state that takes the move back.
Move playGameMove(Board& board, Move move, SavedState* saved = nullptr);
