// Move generation and attack tests. Generators write Move words from `list` on and return the end; the
// word just past the end may be overwritten too, which a MoveList always has room for.
// Pins are resolved while generating; the castling path and the en-passant discovered check are left to
// makeMove, which refuses such moves. A generator marks pinned pieces on the board while it runs and
// restores them before it returns, so a board must not be shared while one runs on it.
#pragma once

#include "board/board.h"
#include "board/move.h"

// Whether any piece of byColour attacks square.
bool isAttacked(const Board& board, int byColour, int square);

// All moves of the side to move when it is not in check.
Move* generateMoves(Board& board, Move* list);
// The answers to the check that board.lastMove announces.
Move* generateEvasions(Board& board, Move* list);
// Captures, en-passant captures and promotions (all four kinds).
Move* generateCaptures(Board& board, Move* list);
// Moves that capture nothing and do not promote: castling, pawn pushes, piece moves.
Move* generateQuiet(Board& board, Move* list);
// Quiet moves that give check, emitted with their check bit set.
Move* generateChecks(Board& board, Move* list);
// The king's non-capturing steps to squares the enemy does not attack.
Move* generateKingMoves(Board& board, Move* list);

// Whether moving the piece on `from` to `to` uncovers an attack on kingSquare by a slider of the side
// not to move.
bool exposesKing(const Board& board, int kingSquare, int from, int to);
// Whether a move word from elsewhere (hash table, killer slot) can be played in this position.
bool isValidMove(Board& board, Move move);
