// The position record every subsystem works on: an 0x88 board whose squares hold piece slots, the
// per-colour piece lists the slots index, material words, hash keys and the per-ply history.
#pragma once

#include <cstdint>
#include <cstdio>

#include "board/move.h"

// Colours index per-colour arrays; White moves first.
constexpr int WHITE = 0;
constexpr int BLACK = 1;

// Squares: rank * 16 + file, a1 = 0, h8 = 0x77; on the board exactly when square & 0x88 is 0.
constexpr bool onBoard(int square) {
    return (square & 0x88) == 0;
}
constexpr int fileOf(int square) {
    return square & 7;
}
constexpr int rankOf(int square) {
    return square >> 4;
}
constexpr int makeSquare(int file, int rank) {
    return rank * 16 + file;
}
// Side-relative square tables are mirrored by this XOR.
constexpr int flipSquare(int square) {
    return square ^ 0x70;
}

// Slots. A square holds the slot of its piece; the slot names an entry of pieceSquare and fixes colour
// and kind: colour base + kind offset + index within the kind.
constexpr uint8_t EMPTY = 0;
constexpr uint8_t OFF_BOARD = 192;
constexpr int WHITE_BASE = 64;
constexpr int BLACK_BASE = 128;
constexpr int colourBase(int colour) {
    return WHITE_BASE << colour;
}
constexpr int KING_SLOT = 4;     // 1 slot
constexpr int PAWN_SLOT = 8;     // 8 slots
constexpr int KNIGHT_SLOT = 20;  // 10 slots
constexpr int BISHOP_SLOT = 32;  // 10 slots
constexpr int ROOK_SLOT = 43;    // 10 slots
constexpr int QUEEN_SLOT = 54;   // 9 slots
// The free slot after each kind's range ends its list even when the range is full.
constexpr int KING_END = 5;
constexpr int PAWN_END = 16;
constexpr int KNIGHT_END = 30;
constexpr int BISHOP_END = 42;
constexpr int ROOK_END = 53;
constexpr int QUEEN_END = 63;
// pieceSquare value of a free slot; also the end mark of a kind's list.
constexpr uint8_t NO_SQUARE = 255;
// Added to a list entry's square (mod 256) while its piece is captured or set aside.
constexpr uint8_t SET_ASIDE = 128;

constexpr int colourOfSlot(int slot) {
    return slot >> 7;
}  // for real pieces only
constexpr bool isSliderSlot(int slot) {
    return (slot & 32) != 0;
}
constexpr bool isPawnSlot(int slot) {
    return (slot & 56) == 8;
}
// Whether a raw slot belongs to the colour with this base (empty and off-board belong to neither).
constexpr bool isColour(uint8_t slot, int base) {
    return (slot & 0xC0) == base;
}
constexpr bool isPawnOf(uint8_t slot, int base) {
    return static_cast<unsigned>(slot - (base + PAWN_SLOT)) < 8;
}

// Kinds as indexes into PIECE_LETTERS; promotion kinds in a move word use the same numbers.
constexpr int PAWN = 1;
constexpr int KNIGHT = 2;
constexpr int KING = 3;
constexpr int BISHOP = 5;
constexpr int ROOK = 6;
constexpr int QUEEN = 7;
inline constexpr char PIECE_LETTERS[] = " pnk?brq";

// Piece codes: a colour bit or'ed with kind bits; the same kind bits are used by attackMask.
constexpr uint8_t WHITE_BIT = 0x40;
constexpr uint8_t BLACK_BIT = 0x80;
constexpr uint8_t WHITE_PAWN_BIT = 1;
constexpr uint8_t BLACK_PAWN_BIT = 2;
constexpr uint8_t KING_BIT = 4;
constexpr uint8_t KNIGHT_BIT = 8;
constexpr uint8_t BISHOP_BIT = 16;
constexpr uint8_t ROOK_BIT = 32;
constexpr uint8_t QUEEN_BITS = 48;
constexpr uint8_t colourBit(int colour) {
    return WHITE_BIT << colour;
}

// Material words: bits 0-7 non-pawn units, 8-11 pawns, 12-15 knights, 16-19 bishops, 20-23 rooks,
// 24-27 queens, 28-31 pieces other than pawns and king.
constexpr uint32_t PAWN_MATERIAL = 0x00000100;
constexpr uint32_t KNIGHT_MATERIAL = 0x10001003;
constexpr uint32_t BISHOP_MATERIAL = 0x10010003;
constexpr uint32_t ROOK_MATERIAL = 0x10100005;
constexpr uint32_t QUEEN_MATERIAL = 0x1100000A;
constexpr int materialUnits(uint32_t word) {
    return static_cast<int>((word & 255) + ((word >> 8) & 15));
}
constexpr int pawnCount(uint32_t word) {
    return static_cast<int>((word >> 8) & 15);
}
constexpr int knightCount(uint32_t word) {
    return static_cast<int>((word >> 12) & 15);
}
constexpr int bishopCount(uint32_t word) {
    return static_cast<int>((word >> 16) & 15);
}
constexpr int rookCount(uint32_t word) {
    return static_cast<int>((word >> 20) & 15);
}
constexpr int queenCount(uint32_t word) {
    return static_cast<int>((word >> 24) & 15);
}
constexpr int pieceCount(uint32_t word) {
    return static_cast<int>(word >> 28);
}

// Castling rights.
constexpr uint8_t WHITE_SHORT = 1;
constexpr uint8_t BLACK_SHORT = 2;
constexpr uint8_t WHITE_LONG = 4;
constexpr uint8_t BLACK_LONG = 8;

// The 64-bit keys are used as two 32-bit halves (the book and the hash table store them so).
constexpr uint32_t lowHalf(uint64_t key) {
    return static_cast<uint32_t>(key);
}
constexpr uint32_t highHalf(uint64_t key) {
    return static_cast<uint32_t>(key >> 32);
}

// The index of square 0 (a1) in Board::squares: two ranks of off-board guard below and above let a step
// of up to two ranks from any real square be read without a bounds test.
constexpr int SQUARES_OFFSET = 64;
constexpr int MAX_PLY_HISTORY = 1024;
constexpr int PROMOTION_STACK_SIZE = 16;

// The position that begins a new game, in the form stored and handed to setFen.
inline constexpr char START_FEN[] = "rnbqkbnr/pppppppp/////PPPPPPPP/RNBQKBNR w KQkq - -";

struct Board {
    uint8_t squares[256];      // slots; square s is squares[SQUARES_OFFSET + s]
    uint8_t pieceSquare[192];  // slot -> square, NO_SQUARE when free
    uint64_t hash;             // no side-to-move component; see setFen
    uint32_t sideToMove;
    uint32_t ply;
    uint32_t droppedPlies;  // plies played since the position was set that the history no longer holds
    uint32_t material[2];
    uint64_t pawnHash;
    uint8_t castling;
    uint16_t lastIrreversible;
    uint32_t epSquare;
    Move moves[MAX_PLY_HISTORY];            // the move played at each ply
    uint64_t hashHistory[MAX_PLY_HISTORY];  // hash before the move of each ply
    uint8_t promotionStack[PROMOTION_STACK_SIZE];
    uint32_t promotionCount;
    Move lastMove;  // the move that led here, with its check bits

    // Indexed from a1's address, so that a square plus a constant step folds into one addressing mode.
    const uint8_t* a1() const { return squares + SQUARES_OFFSET; }
    uint8_t* a1() { return squares + SQUARES_OFFSET; }
    uint8_t at(int square) const { return a1()[square]; }
    uint8_t& at(int square) { return a1()[square]; }
    int kingSquare(int colour) const { return pieceSquare[colourBase(colour) + KING_SLOT]; }
    // Plies played since the position was set, those the history has dropped included.
    uint32_t gamePly() const { return droppedPlies + ply; }
    bool inCheck() const { return (lastMove & MOVE_CHECKS) != 0; }

    // Replaces the position with the FEN text; false (with a message) when it cannot be read, and the
    // record must then be set again before use.
    bool setFen(const char* text);
    void writeFen(FILE* stream) const;
    // mode 0 letters, 1 piece codes in hex, 2 raw slots in hex.
    void print(FILE* stream, int mode) const;
    // Recomputes everything kept incrementally; logs each difference under label.
    bool check(const char* label) const;
    // Renumbers the piece lists without captured and promoted-away entries. The moves in the history
    // can no longer be taken back afterwards.
    void compactPieceLists();
};

// The position the console and the protocols play on.
extern Board gameBoard;
