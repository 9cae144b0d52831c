// The king term of one side: safety (shelter, storm, attackers) while the opponent has enough
// material to attack, else centralisation for the endgame.
#pragma once

#include "board/board.h"
#include "eval/pawnhash.h"

// side's king term, from side's view.
int evalKing(const Board& board, const PawnEntry& entry, int side);
// The enemy pieces bearing on side's king zone, from side's view (0 or negative).
int evalKingAttack(const Board& board, int side);
