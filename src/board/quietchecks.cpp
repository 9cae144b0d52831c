// Quiet moves that give check, for the first levels of the quiescence search.
#include "board/movegen.h"
#include "board/movegen_helpers.h"

using namespace movegen;

namespace {

// The line from the enemy king that the piece on `from` alone blocks against a slider of the side to
// move, as the unit step from the king; 0 when moving the piece can uncover no check.
int uncoveredLine(const Board& board, int king, int from) {
    const int step = direction[from - king];
    if (!step) return 0;
    int square = king + step;
    while (board.at(square) == EMPTY) square += step;
    if (square != from) return 0;
    square += step;
    while (board.at(square) == EMPTY) square += step;
    const uint8_t bit = lineBit(step);
    const uint8_t own = colourBit(static_cast<int>(board.sideToMove));
    return (pieceCode[board.at(square)] & (WHITE_BIT | BLACK_BIT | bit)) == (own | bit) ? step : 0;
}

// The check bits a quiet move would have, worked out on the board before it is made; `line` is
// uncoveredLine of the move's from-square.
Move quietCheckBits(const Board& board, Move move, int king, int line) {
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
    Move bits = line && direction[to - king] != line ? MOVE_DISCOVERED : 0;
    const uint8_t slot = board.at(from);
    if (attackMask[king - to] & pieceCode[slot]) {
        bool clear = true;
        if (isSliderSlot(slot)) {
            const int ray = direction[king - to];
            for (int square = to + ray; square != king; square += ray)
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
    const int king = board.kingSquare(static_cast<int>(board.sideToMove ^ 1));
    // A piece's moves come together: its line is worked out once for all of them.
    int lastFrom = -1;
    int line = 0;
    for (Move* move = list; move != end; ++move) {
        if (moveFrom(*move) != lastFrom) {
            lastFrom = moveFrom(*move);
            line = uncoveredLine(board, king, lastFrom);
        }
        const Move bits = quietCheckBits(board, *move, king, line);
        if (bits) *out++ = *move | bits;
    }
    return out;
}
