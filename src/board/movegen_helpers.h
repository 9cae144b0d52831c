// Small pieces shared by the generator files; not part of the board's interface.
#pragma once

#include "board/board.h"
#include "board/move.h"
#include "board/tables.h"

namespace movegen {

enum Mode { ALL, CAPTURES, QUIET, SET_ASIDE_ONLY };

// Ranks 1 and 8 in one unsigned comparison.
constexpr bool isPromotionTarget(int square) {
    return static_cast<unsigned>(square - 8) > 102;
}
// The kind bit of the sliders that move along a unit step.
constexpr uint8_t lineBit(int step) {
    return (step == 1 || step == -1 || step == 16 || step == -16) ? ROOK_BIT : BISHOP_BIT;
}

// Whether every square strictly between a and b (on one line) is empty.
inline bool pathClear(const Board& board, int a, int b) {
    const int step = direction[b - a];
    int square = a + step;
    while (square != b && board.at(square) == EMPTY) square += step;
    return square == b;
}

// Whether the piece on `from` attacks `target`: geometry, and for a slider a clear path.
inline bool pieceAttacks(const Board& board, int from, int target) {
    const uint8_t slot = board.at(from);
    if (!(attackMask[target - from] & pieceCode[slot])) return false;
    return !isSliderSlot(slot) || pathClear(board, from, target);
}

// Queen, knight, rook, bishop: the order promotions are emitted in.
inline Move* addPromotions(Move* list, int from, int to, int captured) {
    const Move move = makeMoveWord(from, to, captured);
    *list++ = move | promotionFlag(QUEEN);
    *list++ = move | promotionFlag(KNIGHT);
    *list++ = move | promotionFlag(ROOK);
    *list++ = move | promotionFlag(BISHOP);
    return list;
}

// The slots a pin pass set aside, restored before the generator returns.
struct Pins {
    uint8_t slots[8];
    int count = 0;
    void restore(Board& board) const {
        for (int i = 0; i < count; ++i)
            board.pieceSquare[slots[i]] = static_cast<uint8_t>(board.pieceSquare[slots[i]] - SET_ASIDE);
    }
};

// Sets the pieces pinned against the mover's king aside (no moves emitted).
void setAsidePinned(Board& board, Pins& pins);
// The pieces giving check to the side to move, found from the hints in lastMove and verified; a full
// search when a check bit names none. Returns their number (at most 2).
int findCheckers(const Board& board, int* checkers);
// Whether `target` lies strictly between a slider checker and the king.
bool blocksCheck(const Board& board, int checker, int king, int target);
// The en-passant captures of the side to move.
Move* enPassantMoves(const Board& board, Move* list);

}  // namespace movegen
