// A slow, plain move generator for comparison: every pseudo-legal move from the squares alone, kept
// when the mover's king is not attacked after the move. It shares makeMove and isAttacked with the
// engine but none of the pin, evasion or check-bit logic.
#pragma once

#include <algorithm>
#include <vector>

#include "board/legalmoves.h"
#include "board/tables.h"

inline std::vector<Move> pseudoMoves(const Board& board) {
    std::vector<Move> moves;
    const int side = static_cast<int>(board.sideToMove);
    const int forward = side == WHITE ? 16 : -16;
    auto enemyAt = [&](int square) {
        const uint8_t slot = board.at(square);
        return slot != EMPTY && slot != OFF_BOARD && colourOfSlot(slot) != side;
    };
    auto addPromotionsOrMove = [&](int from, int to, int captured) {
        if (rankOf(to) == 0 || rankOf(to) == 7) {
            for (int kind : {QUEEN, KNIGHT, ROOK, BISHOP})
                moves.push_back(makeMoveWord(from, to, captured, promotionFlag(kind)));
        } else {
            moves.push_back(makeMoveWord(from, to, captured));
        }
    };
    for (int from = 0; from < 128; ++from) {
        if (!onBoard(from)) continue;
        const uint8_t slot = board.at(from);
        if (slot == EMPTY || colourOfSlot(slot) != side) continue;
        const uint8_t code = pieceCode[slot];
        if (isPawnSlot(slot)) {
            const int to = from + forward;
            if (onBoard(to) && board.at(to) == EMPTY) {
                addPromotionsOrMove(from, to, 0);
                if (rankOf(from) == (side == WHITE ? 1 : 6) && board.at(to + forward) == EMPTY)
                    moves.push_back(makeMoveWord(from, to + forward, 0, MOVE_DOUBLE_PUSH));
            }
            for (int to2 : {to - 1, to + 1}) {
                if (!onBoard(to2)) continue;
                if (enemyAt(to2)) addPromotionsOrMove(from, to2, board.at(to2));
                if (board.epSquare && to2 == static_cast<int>(board.epSquare) && board.at(to2) == EMPTY &&
                    enemyAt(to2 ^ 16) && isPawnSlot(board.at(to2 ^ 16)))
                    moves.push_back(makeMoveWord(from, to2, board.at(to2 ^ 16), MOVE_EN_PASSANT));
            }
            continue;
        }
        for (int to = 0; to < 128; ++to) {
            if (!onBoard(to) || to == from || !(attackMask[to - from] & code)) continue;
            const uint8_t target = board.at(to);
            if (target != EMPTY && !enemyAt(to)) continue;
            if (isSliderSlot(slot)) {
                const int step = direction[to - from];
                int square = from + step;
                while (square != to && board.at(square) == EMPTY) square += step;
                if (square != to) continue;
            }
            moves.push_back(makeMoveWord(from, to, target));
        }
    }
    // Castling: rights, empty squares, king not in check and not passing an attacked square.
    const int king = board.kingSquare(side);
    const int enemy = side ^ 1;
    if ((board.castling & (WHITE_SHORT << side)) && board.at(king + 1) == EMPTY &&
        board.at(king + 2) == EMPTY && !isAttacked(board, enemy, king) && !isAttacked(board, enemy, king + 1))
        moves.push_back(makeMoveWord(king, king + 2, 0, MOVE_CASTLING));
    if ((board.castling & (WHITE_LONG << side)) && board.at(king - 1) == EMPTY &&
        board.at(king - 2) == EMPTY && board.at(king - 3) == EMPTY && !isAttacked(board, enemy, king) &&
        !isAttacked(board, enemy, king - 1))
        moves.push_back(makeMoveWord(king, king - 2, 0, MOVE_CASTLING));
    return moves;
}

// The legal moves (as generated, without check bits), sorted.
inline std::vector<Move> referenceLegalMoves(Board& board) {
    std::vector<Move> legal;
    const int side = static_cast<int>(board.sideToMove);
    const SavedState saved = saveState(board);
    for (Move move : pseudoMoves(board)) {
        const Move made = makeMove(board, move);
        if (!made) continue;
        if (!isAttacked(board, side ^ 1, board.kingSquare(side))) legal.push_back(move);
        takeBack(board, move, saved);
    }
    std::sort(legal.begin(), legal.end());
    return legal;
}

// The engine's legal moves: generator output that makeMove accepts, sorted.
inline std::vector<Move> engineLegalMoves(Board& board) {
    std::vector<Move> legal;
    forEachLegalMove(board, [&](Move made) { legal.push_back(plainMove(made)); });
    std::sort(legal.begin(), legal.end());
    return legal;
}
