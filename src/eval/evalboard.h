// How the evaluation reads a Board: side-relative square tables, distances, piece lists and the
// piece-code tests used on raw square contents.
#pragma once

#include <algorithm>
#include <cstdlib>

#include "board/board.h"
#include "board/tables.h"

namespace eval {

// A square table by own rank: row 0 is the side's own first rank, row 7 its eighth, files a..h.
// Read for White as it stands and for Black with the ranks mirrored, so one table serves both
// colours.
using RankTable = int[8][8];

constexpr int ownRank(int side, int square) {
    return side == WHITE ? rankOf(square) : 7 - rankOf(square);
}
inline int lookup(const RankTable& table, int side, int square) {
    return table[ownRank(side, square)][fileOf(square)];
}

// The larger of the file and rank distances.
inline int distance(int a, int b) {
    return std::max(std::abs(fileOf(a) - fileOf(b)), std::abs(rankOf(a) - rankOf(b)));
}

// Light squares are those where file + rank is odd (h1, a8).
constexpr int squareColour(int square) {
    return (fileOf(square) + rankOf(square)) & 1;
}

// Calls f(square) for every piece of one kind of a colour still on the board (captured and promoted
// pieces keep their list entry with an off-board square).
template <typename F>
inline void forEachPiece(const Board& board, int colour, int firstSlot, F f) {
    for (int slot = colourBase(colour) + firstSlot; board.pieceSquare[slot] != NO_SQUARE; ++slot) {
        const int square = board.pieceSquare[slot];
        if (onBoard(square)) f(square);
    }
}

// Codes as the squares hold them; off-board squares read as OFF_BOARD and match none of these.
inline uint8_t codeAt(const Board& board, int square) {
    return pieceCode[board.at(square)];
}

// Tested on the slot a square holds, which spares the dependent look-up of its code.
inline bool pawnAt(const Board& board, int colour, int square) {
    return isPawnOf(board.at(square), colourBase(colour));
}
inline bool anyPawnAt(const Board& board, int square) {
    return isPawnSlot(board.at(square));
}
inline bool isEmpty(const Board& board, int square) {
    return board.at(square) == EMPTY;
}
// A piece of any colour (not empty, not off the board).
inline bool isOccupied(const Board& board, int square) {
    const uint8_t slot = board.at(square);
    return slot != EMPTY && slot != OFF_BOARD;
}
inline bool ownsPiece(uint8_t code, int colour) {
    return (code & colourBit(colour)) != 0 && code != OFF_BOARD;
}

// Pawn-free-file masks hold a bit per file; files off the board count as holding pawns.
constexpr bool fileFree(uint8_t mask, int file) {
    return file >= 0 && file < 8 && ((mask >> file) & 1) != 0;
}

}  // namespace eval
