// Helpers shared by the evaluation tests: the colour-flipped twin of a position, and evaluation with
// the shared cache on or off.
#pragma once

#include <gtest/gtest.h>

#include <cctype>
#include <memory>
#include <string>

#include "board/board.h"
#include "board/tables.h"
#include "boards.h"
#include "environment.h"
#include "eval/evaluate.h"

namespace evaltest {

// The position with ranks mirrored, colours exchanged and the other side to move, as FEN.
inline std::string flippedFen(const Board& board) {
    std::string fen;
    for (int rank = 0; rank < 8; ++rank) {  // the flipped board's eighth rank is the original first
        int empty = 0;
        for (int file = 0; file < 8; ++file) {
            const uint8_t code = pieceCode[board.at(makeSquare(file, rank))];
            if (!code) {
                ++empty;
                continue;
            }
            if (empty) fen += static_cast<char>('0' + empty);
            empty = 0;
            const char letter = (code & (WHITE_PAWN_BIT | BLACK_PAWN_BIT)) ? 'p'
                                : (code & QUEEN_BITS) == QUEEN_BITS        ? 'q'
                                : (code & ROOK_BIT)                        ? 'r'
                                : (code & BISHOP_BIT)                      ? 'b'
                                : (code & KNIGHT_BIT)                      ? 'n'
                                                                           : 'k';
            // White pieces become black ones (small letters) and the other way round.
            fen += (code & WHITE_BIT) ? letter : static_cast<char>(std::toupper(letter));
        }
        if (empty) fen += static_cast<char>('0' + empty);
        if (rank < 7) fen += '/';
    }
    fen += board.sideToMove == WHITE ? " b " : " w ";
    std::string castling;
    if (board.castling & BLACK_SHORT) castling += 'K';
    if (board.castling & BLACK_LONG) castling += 'Q';
    if (board.castling & WHITE_SHORT) castling += 'k';
    if (board.castling & WHITE_LONG) castling += 'q';
    fen += castling.empty() ? "-" : castling;
    fen += ' ';
    if (board.epSquare) {
        fen += static_cast<char>('a' + fileOf(board.epSquare));
        fen += static_cast<char>('1' + 7 - rankOf(board.epSquare));
    } else {
        fen += '-';
    }
    return fen;
}

// One context per test: each holds a 2 MiB pawn table.
struct Evaluator {
    std::unique_ptr<EvalContext> context = std::make_unique<EvalContext>();

    int operator()(Board& board, bool cache = false) {
        context->useCache = cache;
        return evaluate(*context, board);
    }
    int operator()(const std::string& fen, bool cache = false) { return (*this)(*boardFrom(fen), cache); }
};

}  // namespace evaltest
