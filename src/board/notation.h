// Move text: the board's own long algebraic form, and reading the forms people and programs type.
#pragma once

#include "board/board.h"
#include "board/move.h"

// Writes at most MOVE_TEXT_SIZE characters with the end mark: Ng1f3, e7xd8=Q+, o-o, % for no move.
void moveToText(const Board& board, char* text, Move move);
// The legal move the text names (coordinate, long algebraic or SAN), with its check bits; 0 when it
// names none, several, or is malformed. The board is unchanged.
Move isMove(Board& board, const char* text);
