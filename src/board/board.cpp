#include "board/board.h"

#include "board/tables.h"

Board gameBoard;

void Board::compactPieceLists() {
    for (int colour = WHITE; colour <= BLACK; ++colour) {
        const int base = colourBase(colour);
        const int ranges[6][2] = {{KING_SLOT, KING_END},     {PAWN_SLOT, PAWN_END}, {KNIGHT_SLOT, KNIGHT_END},
                                  {BISHOP_SLOT, BISHOP_END}, {ROOK_SLOT, ROOK_END}, {QUEEN_SLOT, QUEEN_END}};
        for (const auto& range : ranges) {
            int next = base + range[0];
            for (int slot = base + range[0]; slot < base + range[1]; ++slot) {
                const uint8_t square = pieceSquare[slot];
                pieceSquare[slot] = NO_SQUARE;
                if (!onBoard(square)) continue;
                pieceSquare[next] = square;
                at(square) = static_cast<uint8_t>(next);
                ++next;
            }
        }
    }
    promotionCount = 0;
}
