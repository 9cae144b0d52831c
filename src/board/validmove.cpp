// Whether a move word from elsewhere (hash table, killer slot) is one the generators would emit here.
#include "board/movegen.h"
#include "board/movegen_helpers.h"

using namespace movegen;

namespace {

bool validPawnMove(const Board& board, int from, int to, int captured, Move flags) {
    const int side = static_cast<int>(board.sideToMove);
    const int forward = pawnStep(side);
    if ((flags & MOVE_PROMOTION) != 0) {
        const int kind = promotionKind(flags);
        if (!isPromotionTarget(to) || (kind != QUEEN && kind != KNIGHT && kind != ROOK && kind != BISHOP))
            return false;
        flags &= ~MOVE_PROMOTION;
    } else if (isPromotionTarget(to)) {
        return false;
    }
    if (captured) return flags == 0 && (to == from + forward - 1 || to == from + forward + 1);
    if (to == from + forward) return flags == 0;
    return flags == MOVE_DOUBLE_PUSH && to == from + 2 * forward && rankOf(from) == (side == WHITE ? 1 : 6) &&
           board.at(from + forward) == EMPTY;
}

bool validCastling(const Board& board, int from, int to) {
    const int side = static_cast<int>(board.sideToMove);
    if (from != board.kingSquare(side) || board.inCheck()) return false;
    if (to == from + 2) {
        if (!(board.castling & (WHITE_SHORT << side)) || board.at(from + 1) != EMPTY ||
            board.at(from + 2) != EMPTY)
            return false;
    } else if (to == from - 2) {
        if (!(board.castling & (WHITE_LONG << side)) || board.at(from - 1) != EMPTY ||
            board.at(from - 2) != EMPTY || board.at(from - 3) != EMPTY)
            return false;
    } else {
        return false;
    }
    return !isAttacked(board, side ^ 1, to);
}

}  // namespace

bool isValidMove(Board& board, Move move) {
    // The reduced mark and the check bits say how the move was found, not what it does.
    move &= ~(MOVE_REDUCED | MOVE_CHECKS);
    if (!move) return false;
    const int side = static_cast<int>(board.sideToMove);
    const int base = colourBase(side);
    const int enemy = colourBase(side ^ 1);
    const int from = moveFrom(move);
    const int to = moveTo(move);
    const int captured = capturedSlot(move);
    const Move flags = move & (MOVE_PROMOTION | MOVE_EN_PASSANT | MOVE_CASTLING | MOVE_DOUBLE_PUSH);
    if (!onBoard(from) || !onBoard(to)) return false;
    const uint8_t slot = board.at(from);
    if (!isColour(slot, base)) return false;
    if (flags == MOVE_CASTLING)
        return captured == 0 && slot == base + KING_SLOT && validCastling(board, from, to);

    int checkers[2];
    const int checks = board.inCheck() ? findCheckers(board, checkers) : 0;
    const int king = board.kingSquare(side);

    if (flags == MOVE_EN_PASSANT) {
        Move list[2];
        Move* end = enPassantMoves(board, list);
        bool listed = false;
        for (Move* m = list; m != end; ++m) listed |= *m == move;
        if (!listed || checks > 1) return false;
        return checks == 0 || (to ^ 16) == checkers[0] || blocksCheck(board, checkers[0], king, to);
    }
    if (board.at(to) != captured || (captured && !isColour(static_cast<uint8_t>(captured), enemy)) ||
        (pieceCode[captured] & KING_BIT))
        return false;

    if (slot == base + KING_SLOT) {
        if (flags || !(attackMask[to - from] & KING_BIT)) return false;
        for (int i = 0; i < checks; ++i)
            if (isSliderSlot(board.at(checkers[i])) && direction[king - checkers[i]] == to - from)
                return false;
        return !isAttacked(board, side ^ 1, to);
    }
    if (isPawnSlot(slot)) {
        if (!validPawnMove(board, from, to, captured, flags)) return false;
    } else if (flags || !pieceAttacks(board, from, to)) {
        return false;
    }
    if (exposesKing(board, king, from, to)) return false;
    if (checks > 1) return false;
    return checks == 0 || to == checkers[0] || blocksCheck(board, checkers[0], king, to);
}
