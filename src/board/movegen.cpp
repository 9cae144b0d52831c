// Attack tests and the generators for a side that is not in check.
#include "board/movegen.h"

#include "board/movegen_helpers.h"

using namespace movegen;

bool isAttacked(const Board& board, int byColour, int square) {
    const int base = colourBase(byColour);
    const uint8_t* list = board.pieceSquare;
    // The king.
    if (attackMask[square - list[base + KING_SLOT]] & KING_BIT) return true;
    // Pawns, from the two squares that capture onto the square.
    const int pawnFrom = square - pawnStep(byColour);
    if (isPawnOf(board.at(pawnFrom - 1), base) || isPawnOf(board.at(pawnFrom + 1), base)) return true;
    // Knights.
    int from;
    for (int slot = base + KNIGHT_SLOT; (from = list[slot]) != NO_SQUARE; ++slot)
        if (onBoard(from) && (attackMask[square - from] & KNIGHT_BIT)) return true;
    // Bishops, rooks, queens.
    for (int slot = base + BISHOP_SLOT; (from = list[slot]) != NO_SQUARE; ++slot)
        if (onBoard(from) && (attackMask[square - from] & BISHOP_BIT) && pathClear(board, square, from))
            return true;
    for (int slot = base + ROOK_SLOT; (from = list[slot]) != NO_SQUARE; ++slot)
        if (onBoard(from) && (attackMask[square - from] & ROOK_BIT) && pathClear(board, square, from))
            return true;
    for (int slot = base + QUEEN_SLOT; (from = list[slot]) != NO_SQUARE; ++slot)
        if (onBoard(from) && (attackMask[square - from] & QUEEN_BITS) && pathClear(board, square, from))
            return true;
    return false;
}

bool exposesKing(const Board& board, int kingSquare, int from, int to) {
    const int step = direction[from - kingSquare];
    if (!step || direction[to - kingSquare] == step) return false;
    int square = kingSquare + step;
    while (board.at(square) == EMPTY) square += step;
    if (square != from) return false;
    square += step;
    while (board.at(square) == EMPTY) square += step;
    const uint8_t bit = lineBit(step);
    const uint8_t enemy = colourBit(static_cast<int>(board.sideToMove ^ 1));
    return (pieceCode[board.at(square)] & (WHITE_BIT | BLACK_BIT | bit)) == (enemy | bit);
}

namespace {

// One pinned piece's moves along the pin line. `step` points from the king to the pinner.
template <int MODE>
Move* pinnedMoves(const Board& board, Move* list, int square, int pinner, int step, int side) {
    const uint8_t slot = board.at(square);
    const uint8_t pinnerSlot = board.at(pinner);
    if (isPawnSlot(slot)) {
        const int forward = pawnStep(side);
        if (pinner == square + forward - 1 || pinner == square + forward + 1) {
            if (MODE != QUIET) {
                if (isPromotionTarget(pinner))
                    list = addPromotions(list, square, pinner, pinnerSlot);
                else
                    *list++ = makeMoveWord(square, pinner, pinnerSlot);
            }
        } else if ((step == 16 || step == -16) && MODE != CAPTURES) {
            const int target = square + forward;
            if (board.at(target) == EMPTY) {
                *list++ = makeMoveWord(square, target);
                if (rankOf(square) == (side == WHITE ? 1 : 6) && board.at(target + forward) == EMPTY)
                    *list++ = makeMoveWord(square, target + forward, 0, MOVE_DOUBLE_PUSH);
            }
        }
        return list;
    }
    if (!(pieceCode[slot] & lineBit(step))) return list;
    if (MODE != QUIET) *list++ = makeMoveWord(square, pinner, pinnerSlot);
    if (MODE != CAPTURES) {
        for (int target = square + step; target != pinner; target += step)
            *list++ = makeMoveWord(square, target);
        for (int target = square - step; board.at(target) == EMPTY; target -= step)
            *list++ = makeMoveWord(square, target);
    }
    return list;
}

// Finds the pieces pinned against the king of the side to move, emits their moves along the pin line
// and sets them aside. Returns the end of the list; the set-aside slots go to `pins`.
template <int MODE>
Move* pinPass(Board& board, Move* list, Pins& pins) {
    const int side = static_cast<int>(board.sideToMove);
    const int base = colourBase(side);
    const int enemy = colourBase(side ^ 1);
    const int king = board.kingSquare(side);
    pins.count = 0;
    for (int first : {BISHOP_SLOT, ROOK_SLOT, QUEEN_SLOT}) {
        int from;
        for (int slot = enemy + first; (from = board.pieceSquare[slot]) != NO_SQUARE; ++slot) {
            if (!onBoard(from) || !(attackMask[king - from] & pieceCode[slot])) continue;
            const int step = direction[from - king];
            int square = king + step;
            while (board.at(square) == EMPTY) square += step;
            if (!isColour(board.at(square), base)) continue;
            int beyond = square + step;
            while (board.at(beyond) == EMPTY) beyond += step;
            if (beyond != from) continue;
            if (MODE != SET_ASIDE_ONLY) list = pinnedMoves<MODE>(board, list, square, from, step, side);
            const uint8_t pinnedSlot = board.at(square);
            pins.slots[pins.count++] = pinnedSlot;
            board.pieceSquare[pinnedSlot] = static_cast<uint8_t>(board.pieceSquare[pinnedSlot] + SET_ASIDE);
        }
    }
    return list;
}

template <int MODE>
Move* pieceMoves(const Board& board, Move* list, int firstSlot, const int* steps, int stepCount,
                 bool slides) {
    const int enemy = colourBase(static_cast<int>(board.sideToMove ^ 1));
    // The rays are walked by pointer: a constant step then folds into each load's address.
    const uint8_t* const a1 = board.a1();
    int from;
    for (int slot = firstSlot; (from = board.pieceSquare[slot]) != NO_SQUARE; ++slot) {
        if (!onBoard(from)) continue;
            // Unrolled so that each step is a constant in the addressing of its ray.
#pragma GCC unroll 8
        for (int i = 0; i < stepCount; ++i) {
            const int step = steps[i];
            const uint8_t* ray = a1 + from + step;
            while (*ray == EMPTY) {
                if (MODE != CAPTURES) *list++ = makeMoveWord(from, static_cast<int>(ray - a1));
                if (!slides) break;
                ray += step;
            }
            // Written always and kept only for an enemy piece: the test decides no branch, whose outcome
            // (own piece, enemy or edge at the end of the ray) is too random to predict.
            if (MODE != QUIET) {
                const uint8_t content = *ray;
                *list = makeMoveWord(from, static_cast<int>(ray - a1), content);
                list += isColour(content, enemy);
            }
        }
    }
    return list;
}

template <int MODE>
Move* generate(Board& board, Move* list) {
    const int side = static_cast<int>(board.sideToMove);
    const int base = colourBase(side);
    const int enemy = colourBase(side ^ 1);
    const int king = board.kingSquare(side);
    const int forward = pawnStep(side);

    // Pinned pieces move along their line only, and are set aside for the rest.
    Pins pins;
    list = pinPass<MODE>(board, list, pins);

    // En passant.
    if (MODE != QUIET) list = enPassantMoves(board, list);

    // Castling; the king's path is tested by makeMove.
    if (MODE != CAPTURES && board.castling) {
        if ((board.castling & (WHITE_SHORT << side)) && board.at(king + 1) == EMPTY &&
            board.at(king + 2) == EMPTY)
            *list++ = makeMoveWord(king, king + 2, 0, MOVE_CASTLING);
        if ((board.castling & (WHITE_LONG << side)) && board.at(king - 1) == EMPTY &&
            board.at(king - 2) == EMPTY && board.at(king - 3) == EMPTY)
            *list++ = makeMoveWord(king, king - 2, 0, MOVE_CASTLING);
    }

    // Pawns.
    const int secondRank = side == WHITE ? 1 : 6;
    int from;
    for (int slot = base + PAWN_SLOT; (from = board.pieceSquare[slot]) != NO_SQUARE; ++slot) {
        if (!onBoard(from)) continue;
        const int target = from + forward;
        const uint8_t left = board.at(target - 1);
        const uint8_t right = board.at(target + 1);
        if (isPromotionTarget(target)) {
            if (MODE != QUIET) {
                if (isColour(left, enemy)) list = addPromotions(list, from, target - 1, left);
                if (isColour(right, enemy)) list = addPromotions(list, from, target + 1, right);
                if (board.at(target) == EMPTY) list = addPromotions(list, from, target, 0);
            }
            continue;
        }
        if (MODE != QUIET) {
            if (isColour(left, enemy)) *list++ = makeMoveWord(from, target - 1, left);
            if (isColour(right, enemy)) *list++ = makeMoveWord(from, target + 1, right);
        }
        if (MODE != CAPTURES && board.at(target) == EMPTY) {
            *list++ = makeMoveWord(from, target);
            if (rankOf(from) == secondRank && board.at(target + forward) == EMPTY)
                *list++ = makeMoveWord(from, target + forward, 0, MOVE_DOUBLE_PUSH);
        }
    }

    // Knights, bishops, rooks, queens, then the king onto squares the enemy does not attack.
    list = pieceMoves<MODE>(board, list, base + KNIGHT_SLOT, KNIGHT_STEPS, 8, false);
    list = pieceMoves<MODE>(board, list, base + BISHOP_SLOT, DIAGONAL_STEPS, 4, true);
    list = pieceMoves<MODE>(board, list, base + ROOK_SLOT, STRAIGHT_STEPS, 4, true);
    list = pieceMoves<MODE>(board, list, base + QUEEN_SLOT, KING_STEPS, 8, true);
    for (int step : KING_STEPS) {
        const int target = king + step;
        const uint8_t content = board.at(target);
        if (content == EMPTY ? MODE == CAPTURES : (MODE == QUIET || !isColour(content, enemy))) continue;
        if (!isAttacked(board, side ^ 1, target)) *list++ = makeMoveWord(king, target, content);
    }

    // Put the pinned pieces back.
    pins.restore(board);
    return list;
}

}  // namespace

namespace movegen {

Move* enPassantMoves(const Board& board, Move* list) {
    const int target = static_cast<int>(board.epSquare);
    if (!target) return list;
    const int side = static_cast<int>(board.sideToMove);
    const int taken = target ^ 16;
    const uint8_t takenSlot = board.at(taken);
    // Set-up positions may name a square no pawn just passed; such a square offers no capture.
    if (rankOf(target) != (side == WHITE ? 5 : 2) || board.at(target) != EMPTY ||
        !isPawnOf(takenSlot, colourBase(side ^ 1)))
        return list;
    const int base = colourBase(side);
    if (isPawnOf(board.at(taken - 1), base))
        *list++ = makeMoveWord(taken - 1, target, takenSlot, MOVE_EN_PASSANT);
    if (isPawnOf(board.at(taken + 1), base))
        *list++ = makeMoveWord(taken + 1, target, takenSlot, MOVE_EN_PASSANT);
    return list;
}

void setAsidePinned(Board& board, Pins& pins) {
    pinPass<SET_ASIDE_ONLY>(board, nullptr, pins);
}

}  // namespace movegen

Move* generateMoves(Board& board, Move* list) {
    return generate<movegen::ALL>(board, list);
}
Move* generateCaptures(Board& board, Move* list) {
    return generate<movegen::CAPTURES>(board, list);
}
Move* generateQuiet(Board& board, Move* list) {
    return generate<movegen::QUIET>(board, list);
}

Move* generateKingMoves(Board& board, Move* list) {
    const int side = static_cast<int>(board.sideToMove);
    const int king = board.kingSquare(side);
    for (int step : KING_STEPS) {
        const int target = king + step;
        if (board.at(target) == EMPTY && !isAttacked(board, side ^ 1, target))
            *list++ = makeMoveWord(king, target);
    }
    return list;
}
