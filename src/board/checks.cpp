// Quiet moves that give check, for the first levels of the quiescence search.
#include "board/movegen.h"
#include "board/movegen_helpers.h"

using namespace movegen;

namespace {

// The check bits a quiet move would have, worked out on the board before it is made.
Move quietCheckBits(const Board& board, Move move) {
    const int side = static_cast<int>(board.sideToMove);
    const int king = board.kingSquare(side ^ 1);
    const int from = moveFrom(move);
    const int to = moveTo(move);
    if (move & MOVE_CASTLING) {
        // The rook lands on the square the king passes over; the corner and the king's square empty.
        const int rook = (from + to) / 2;
        const int corner = rook ^ 2 ^ ((rook & 2) >> 1);
        if (!(attackMask[king - rook] & ROOK_BIT)) return 0;
        const int step = direction[king - rook];
        for (int square = rook + step; square != king; square += step)
            if (square == to || (board.at(square) != EMPTY && square != from && square != corner)) return 0;
        return MOVE_CHECK;
    }
    Move bits = 0;
    const int step = direction[from - king];
    if (step && direction[to - king] != step) {
        int square = king + step;
        while (board.at(square) == EMPTY) square += step;
        if (square == from) {
            square += step;
            while (board.at(square) == EMPTY) square += step;
            const uint8_t bit = lineBit(step);
            if ((pieceCode[board.at(square)] & (WHITE_BIT | BLACK_BIT | bit)) == (colourBit(side) | bit))
                bits |= MOVE_DISCOVERED;
        }
    }
    const uint8_t slot = board.at(from);
    if (attackMask[king - to] & pieceCode[slot]) {
        bool clear = true;
        if (isSliderSlot(slot)) {
            const int line = direction[king - to];
            for (int square = to + line; square != king; square += line)
                if (board.at(square) != EMPTY && square != from) clear = false;
        }
        if (clear) bits |= MOVE_CHECK;
    }
    return bits;
}

}  // namespace

Move* generateChecks(Board& board, Move* list) {
    Move* end = generateQuiet(board, list);
    Move* out = list;
    for (Move* move = list; move != end; ++move) {
        const Move bits = quietCheckBits(board, *move);
        if (bits) *out++ = *move | bits;
    }
    return out;
}
