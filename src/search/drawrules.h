// The draw rules the tree search applies at every node before it looks at any move.
#pragma once

#include "board/board.h"
#include "board/tables.h"

// The opponent has just moved a piece back to where it stood two moves ago, and the side to move can
// undo its own move in between too: the position repeats, so the side to move holds at least a draw.
// Returns that undoing move, or 0 when the rule does not apply. searchPly is the ply below the root.
inline Move reversalDraw(const Board& board, int searchPly, int beta, Move lastMove) {
    if (searchPly < 3 || beta > 0 || board.ply - board.lastIrreversible <= 2 || lastMove == NO_MOVE)
        return NO_MOVE;
    const Move a = board.moves[board.ply - 3];  // the opponent's move before
    const Move b = board.moves[board.ply - 2];  // the side to move's move in between
    // A null move is no move to take back: read as a word it would be a step from a1 to a1, and the
    // test below would ask about lines through a1. Over a null move the position only repeats with the
    // other side to move, which is no repetition.
    if (a == NO_MOVE || b == NO_MOVE) return NO_MOVE;
    if (moveFrom(a) != moveTo(lastMove) || moveTo(a) != moveFrom(lastMove) || (b & MOVE_CASTLING))
        return NO_MOVE;
    // The piece that came back must not stand in the way of b's way back.
    if (direction[moveFrom(b) - moveTo(b)] == direction[moveFrom(a) - moveTo(b)]) return NO_MOVE;
    return makeMoveWord(moveTo(b), moveFrom(b));
}

inline bool fiftyMoveDraw(const Board& board) {
    return board.ply - board.lastIrreversible > 99;
}

// Neither side can mate: no pawns, rooks or queens, and fewer than two minor pieces in all.
inline bool insufficientMaterial(const Board& board) {
    const uint32_t w = board.material[WHITE];
    const uint32_t b = board.material[BLACK];
    if (pawnCount(w) + pawnCount(b) + rookCount(w) + rookCount(b) + queenCount(w) + queenCount(b) != 0)
        return false;
    return knightCount(w) + bishopCount(w) + knightCount(b) + bishopCount(b) < 2;
}

// Near the root a position must have occurred twice before to count as a draw; deeper, once is enough,
// since the side that could avoid it would have to deviate inside the tree anyway.
inline bool repetitionDraw(const Board& board, int searchPly) {
    const int oldest = board.lastIrreversible;
    for (int i = static_cast<int>(board.ply) - 4; i >= oldest; i -= 2) {
        if (board.hashHistory[i] != board.hash) continue;
        if (searchPly > 3) return true;
        for (int j = i - 4; j >= oldest; j -= 2)
            if (board.hashHistory[j] == board.hash) return true;
        return false;
    }
    return false;
}
