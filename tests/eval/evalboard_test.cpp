// The evaluation tells colours and pawns apart on the raw slot a square holds, not on its piece code;
// this holds only while the board's slot layout keeps each colour's slots in one block of 64 and its
// pawns in an aligned block of eight. Every value a square can hold must give the answer its code gives.
#include "eval/evalboard.h"

#include <gtest/gtest.h>

#include <memory>

using namespace eval;

TEST(EvalBoard, SlotTestsAgreeWithPieceCodes) {
    auto board = std::make_unique<Board>();
    constexpr int square = makeSquare(3, 3);
    for (int slot = 0; slot < 256; ++slot) {
        const uint8_t code = pieceCode[slot];
        if (code == 0 && slot != EMPTY) continue;  // no piece uses the slot, so no square holds it
        board->at(square) = static_cast<uint8_t>(slot);
        for (int colour = WHITE; colour <= BLACK; ++colour) {
            const bool pawnCode =
                code == (colourBit(colour) | (colour == WHITE ? WHITE_PAWN_BIT : BLACK_PAWN_BIT));
            EXPECT_EQ(isColour(static_cast<uint8_t>(slot), colourBase(colour)), ownsPiece(code, colour))
                << slot;
            EXPECT_EQ(pawnAt(*board, colour, square), pawnCode) << slot;
        }
    }
}
