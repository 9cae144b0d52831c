// Answers to check: king steps, captures of the checker and interpositions.
#include "board/movegen.h"
#include "board/movegen_helpers.h"

using namespace movegen;

namespace movegen {

int findCheckers(const Board& board, int* checkers) {
    const int side = static_cast<int>(board.sideToMove);
    const int enemy = colourBase(side ^ 1);
    const int king = board.kingSquare(side);
    const Move last = board.lastMove;
    int count = 0;
    auto add = [&](int square) {
        if (count < 2 && (count == 0 || checkers[0] != square) && isColour(board.at(square), enemy) &&
            pieceAttacks(board, square, king))
            checkers[count++] = square;
    };
    // The first piece met from the king through `square`.
    auto alongLine = [&](int square) {
        if (!onBoard(square)) return;
        const int step = direction[square - king];
        if (!step) return;
        int s = king + step;
        while (board.at(s) == EMPTY) s += step;
        add(s);
    };
    const int from = moveFrom(last);
    const int to = moveTo(last);
    bool explained = true;
    if (last & MOVE_CHECK) {
        const int before = count;
        add((last & MOVE_CASTLING) ? (from + to) / 2 : to);
        explained &= count > before;
    }
    if (last & MOVE_DISCOVERED) {
        const int before = count;
        alongLine(from);
        if (last & MOVE_EN_PASSANT) alongLine(to ^ 16);
        explained &= count > before;
    }
    if (count && explained) return count;
    // A check bit without its checker (set-up positions can make such words): search them all.
    count = 0;
    for (int slot = enemy; slot < enemy + 64 && count < 2; ++slot) {
        const int square = board.pieceSquare[slot];
        if (onBoard(square) && pieceAttacks(board, square, king)) checkers[count++] = square;
    }
    return count;
}

bool blocksCheck(const Board& board, int checker, int king, int target) {
    if (!isSliderSlot(board.at(checker))) return false;
    const int step = direction[king - checker];
    for (int square = checker + step; square != king; square += step)
        if (square == target) return true;
    return false;
}

}  // namespace movegen

namespace {

// The non-king pieces of the mover (pinned ones are set aside) that can move to `target`.
Move* movesTo(const Board& board, Move* list, int target, bool capture) {
    const int side = static_cast<int>(board.sideToMove);
    const int base = colourBase(side);
    const int forward = pawnStep(side);
    const uint8_t content = board.at(target);
    auto free = [&](uint8_t slot) { return onBoard(board.pieceSquare[slot]); };
    auto pawnMove = [&](int from, int captured, Move flags) {
        if (isPromotionTarget(target))
            list = addPromotions(list, from, target, captured);
        else
            *list++ = makeMoveWord(from, target, captured, flags);
    };
    if (capture) {
        for (int from : {target - forward - 1, target - forward + 1}) {
            const uint8_t slot = board.at(from);
            if (isPawnOf(slot, base) && free(slot)) pawnMove(from, content, 0);
        }
    } else {
        const int from = target - forward;
        const uint8_t slot = board.at(from);
        if (isPawnOf(slot, base)) {
            if (free(slot)) pawnMove(from, 0, 0);
        } else if (slot == EMPTY && rankOf(target) == (side == WHITE ? 3 : 4)) {
            const uint8_t back = board.at(from - forward);
            if (isPawnOf(back, base) && free(back)) pawnMove(from - forward, 0, MOVE_DOUBLE_PUSH);
        }
    }
    for (int first : {KNIGHT_SLOT, BISHOP_SLOT, ROOK_SLOT, QUEEN_SLOT}) {
        int from;
        for (int slot = base + first; (from = board.pieceSquare[slot]) != NO_SQUARE; ++slot)
            if (onBoard(from) && pieceAttacks(board, from, target))
                *list++ = makeMoveWord(from, target, content);
    }
    return list;
}

}  // namespace

Move* generateEvasions(Board& board, Move* list) {
    const int side = static_cast<int>(board.sideToMove);
    const int enemy = colourBase(side ^ 1);
    const int king = board.kingSquare(side);
    int checkers[2];
    const int count = findCheckers(board, checkers);

    // King steps, never further along the ray of a checking slider: the king itself hides
    // that square from isAttacked.
    for (int step : KING_STEPS) {
        const int target = king + step;
        const uint8_t content = board.at(target);
        if (content != EMPTY && !isColour(content, enemy)) continue;
        bool alongRay = false;
        for (int i = 0; i < count; ++i)
            alongRay |= isSliderSlot(board.at(checkers[i])) && direction[king - checkers[i]] == step;
        if (!alongRay && !isAttacked(board, side ^ 1, target)) *list++ = makeMoveWord(king, target, content);
    }
    if (count != 1) return list;

    // Capture the checker or step between it and the king, with unpinned pieces.
    Pins pins;
    setAsidePinned(board, pins);
    const int checker = checkers[0];
    list = movesTo(board, list, checker, true);
    if (isSliderSlot(board.at(checker))) {
        const int step = direction[king - checker];
        for (int square = checker + step; square != king; square += step)
            list = movesTo(board, list, square, false);
    }
    const int ep = static_cast<int>(board.epSquare);
    if (ep && ((ep ^ 16) == checker || blocksCheck(board, checker, king, ep)))
        list = enPassantMoves(board, list);
    pins.restore(board);
    return list;
}
