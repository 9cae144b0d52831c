// The board's read-only tables. They are computed by the compiler, so they are complete and constant
// before the first Board exists and need no start-up call; every thread reads them freely.
#pragma once

#include <array>
#include <cstdint>

#include "board/board.h"
#include "board/random_keys.h"

namespace board_tables {

constexpr std::array<uint8_t, 256> buildPieceCodes() {
    std::array<uint8_t, 256> codes{};
    for (int colour = WHITE; colour <= BLACK; ++colour) {
        const int base = colourBase(colour);
        const uint8_t bit = colourBit(colour);
        codes[base + KING_SLOT] = bit | KING_BIT;
        for (int i = 0; i < 8; ++i)
            codes[base + PAWN_SLOT + i] = bit | (colour == WHITE ? WHITE_PAWN_BIT : BLACK_PAWN_BIT);
        for (int i = 0; i < 10; ++i) codes[base + KNIGHT_SLOT + i] = bit | KNIGHT_BIT;
        for (int i = 0; i < 10; ++i) codes[base + BISHOP_SLOT + i] = bit | BISHOP_BIT;
        for (int i = 0; i < 10; ++i) codes[base + ROOK_SLOT + i] = bit | ROOK_BIT;
        for (int i = 0; i < 9; ++i) codes[base + QUEEN_SLOT + i] = bit | QUEEN_BITS;
    }
    codes[OFF_BOARD] = OFF_BOARD;
    return codes;
}

// Indexed by to - from + 128.
constexpr std::array<uint8_t, 256> buildAttackMask() {
    std::array<uint8_t, 256> mask{};
    mask[128 + 15] |= WHITE_PAWN_BIT;
    mask[128 + 17] |= WHITE_PAWN_BIT;
    mask[128 - 15] |= BLACK_PAWN_BIT;
    mask[128 - 17] |= BLACK_PAWN_BIT;
    for (int d : {1, 15, 16, 17, -1, -15, -16, -17}) mask[128 + d] |= KING_BIT;
    for (int d : {14, 18, 31, 33, -14, -18, -31, -33}) mask[128 + d] |= KNIGHT_BIT;
    for (int d : {17, 15, -17, -15})
        for (int k = 1; k <= 7; ++k) mask[128 + k * d] |= BISHOP_BIT;
    for (int d : {1, 16, -1, -16})
        for (int k = 1; k <= 7; ++k) mask[128 + k * d] |= ROOK_BIT;
    return mask;
}

constexpr std::array<int8_t, 256> buildDirection() {
    std::array<int8_t, 256> dir{};
    for (int d : {17, 15, -17, -15, 1, 16, -1, -16})
        for (int k = 1; k <= 7; ++k) dir[128 + k * d] = static_cast<int8_t>(d);
    return dir;
}

// Offset into RANDOM_KEYS by slot; 0 for the empty and off-board slots.
constexpr std::array<uint16_t, 256> buildKeyOffsets() {
    std::array<uint16_t, 256> offsets{};
    for (int colour = WHITE; colour <= BLACK; ++colour) {
        const int base = colourBase(colour);
        const int black = colour == BLACK ? 8 : 0;
        offsets[base + KING_SLOT] = static_cast<uint16_t>(384 + black);
        for (int i = 0; i < 8; ++i) offsets[base + PAWN_SLOT + i] = static_cast<uint16_t>(128 + black);
        for (int i = 0; i < 10; ++i) offsets[base + KNIGHT_SLOT + i] = static_cast<uint16_t>(256 + black);
        for (int i = 0; i < 10; ++i) offsets[base + BISHOP_SLOT + i] = static_cast<uint16_t>(640 + black);
        for (int i = 0; i < 10; ++i) offsets[base + ROOK_SLOT + i] = static_cast<uint16_t>(768 + black);
        for (int i = 0; i < 9; ++i) offsets[base + QUEEN_SLOT + i] = static_cast<uint16_t>(896 + black);
    }
    return offsets;
}

// Indexed by slot & 63.
constexpr std::array<uint32_t, 64> buildMaterialWords() {
    std::array<uint32_t, 64> words{};
    for (int i = 0; i < 8; ++i) words[PAWN_SLOT + i] = PAWN_MATERIAL;
    for (int i = 0; i < 10; ++i) words[KNIGHT_SLOT + i] = KNIGHT_MATERIAL;
    for (int i = 0; i < 10; ++i) words[BISHOP_SLOT + i] = BISHOP_MATERIAL;
    for (int i = 0; i < 10; ++i) words[ROOK_SLOT + i] = ROOK_MATERIAL;
    for (int i = 0; i < 9; ++i) words[QUEEN_SLOT + i] = QUEEN_MATERIAL;
    return words;
}

// Indexed by slot & 63; the king counts 0 (it only ever captures last).
constexpr std::array<uint8_t, 64> buildSeeValues() {
    std::array<uint8_t, 64> values{};
    for (int i = 0; i < 8; ++i) values[PAWN_SLOT + i] = 1;
    for (int i = 0; i < 10; ++i) values[KNIGHT_SLOT + i] = 3;
    for (int i = 0; i < 10; ++i) values[BISHOP_SLOT + i] = 3;
    for (int i = 0; i < 10; ++i) values[ROOK_SLOT + i] = 5;
    for (int i = 0; i < 9; ++i) values[QUEEN_SLOT + i] = 10;
    return values;
}

// Entry mask is the OR (deliberately not the XOR) of the keys of the rights in mask; entries 8..11 of
// RANDOM_KEYS belong to the rights 1, 2, 4, 8.
constexpr std::array<uint64_t, 16> buildCastlingKeys() {
    std::array<uint64_t, 16> keys{};
    for (int mask = 1; mask < 16; ++mask)
        for (int right = 0; right < 4; ++right)
            if (mask & (1 << right)) keys[mask] |= RANDOM_KEYS[8 + right];
    return keys;
}

constexpr std::array<uint8_t, 128> buildCastleKeep() {
    std::array<uint8_t, 128> keep{};
    for (auto& k : keep) k = 15;
    keep[0x00] = 11;
    keep[0x04] = 10;
    keep[0x07] = 14;
    keep[0x70] = 7;
    keep[0x74] = 5;
    keep[0x77] = 13;
    return keep;
}

inline constexpr std::array<uint8_t, 256> ATTACK_MASK = buildAttackMask();
inline constexpr std::array<int8_t, 256> DIRECTION = buildDirection();

}  // namespace board_tables

// Slot -> piece code (colour bit | kind bits); 0 for empty, 0xC0 off the board.
inline constexpr std::array<uint8_t, 256> pieceCode = board_tables::buildPieceCodes();
// attackMask[to - from] & pieceCode[slot]: can the piece reach `to` from `from` by geometry alone.
inline constexpr const uint8_t* attackMask = board_tables::ATTACK_MASK.data() + 128;
// direction[to - from]: the unit step of the slider line from `from` to `to`, 0 when there is none.
inline constexpr const int8_t* direction = board_tables::DIRECTION.data() + 128;
inline constexpr std::array<uint16_t, 256> keyOffset = board_tables::buildKeyOffsets();
inline constexpr std::array<uint32_t, 64> materialWord = board_tables::buildMaterialWords();
inline constexpr std::array<uint8_t, 64> seeValue = board_tables::buildSeeValues();
inline constexpr std::array<uint64_t, 16> castlingKey = board_tables::buildCastlingKeys();
// The castling rights that survive a move from or to a square.
inline constexpr std::array<uint8_t, 128> castleKeep = board_tables::buildCastleKeep();

inline constexpr int DIAGONAL_STEPS[4] = {17, 15, -17, -15};
inline constexpr int STRAIGHT_STEPS[4] = {1, 16, -1, -16};
inline constexpr int KING_STEPS[8] = {1, 17, 16, 15, -1, -17, -16, -15};
inline constexpr int KNIGHT_STEPS[8] = {14, 18, 31, 33, -14, -18, -31, -33};
constexpr int pawnStep(int colour) {
    return colour == WHITE ? 16 : -16;
}
// First slot offset of each kind by its letter index (0 and 4 name no kind).
inline constexpr int FIRST_SLOT[8] = {0, PAWN_SLOT,   KNIGHT_SLOT, KING_SLOT,
                                      0, BISHOP_SLOT, ROOK_SLOT,   QUEEN_SLOT};

// Kind index (into PIECE_LETTERS) of a piece code.
constexpr int kindOfCode(uint8_t code) {
    switch (code & 63) {
        case WHITE_PAWN_BIT:
        case BLACK_PAWN_BIT:
            return PAWN;
        case KING_BIT:
            return KING;
        case KNIGHT_BIT:
            return KNIGHT;
        case BISHOP_BIT:
            return BISHOP;
        case ROOK_BIT:
            return ROOK;
        case QUEEN_BITS:
            return QUEEN;
        default:
            return 0;
    }
}
// The FEN letter of a piece code: capital for White.
constexpr char pieceLetter(uint8_t code) {
    const char letter = PIECE_LETTERS[kindOfCode(code)];
    return (code & WHITE_BIT) ? static_cast<char>(letter & ~32) : letter;
}

// The key of a slot standing on a square.
constexpr uint64_t pieceKey(int slot, int square) {
    return RANDOM_KEYS[square | keyOffset[slot]];
}
// The en-passant key is the entry of the square itself (offset 0).
constexpr uint64_t epKey(int square) {
    return RANDOM_KEYS[square];
}
