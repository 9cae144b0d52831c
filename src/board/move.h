// The move word shared by every subsystem, and the caller-owned list the generators fill.
#pragma once

#include <cstdint>

// Bits 0-6 to-square, 7 reduced mark (search), 8-15 from-square, 16-23 captured slot, 24-26 promotion
// kind, 27 en passant, 28 castling, 29 double push, 30 direct check, 31 discovered check. 0 is no move.
using Move = uint32_t;

constexpr Move NO_MOVE = 0;
constexpr Move MOVE_REDUCED = 1u << 7;
constexpr Move MOVE_EN_PASSANT = 1u << 27;
constexpr Move MOVE_CASTLING = 1u << 28;
constexpr Move MOVE_DOUBLE_PUSH = 1u << 29;
constexpr Move MOVE_CHECK = 1u << 30;
constexpr Move MOVE_DISCOVERED = 1u << 31;
constexpr Move MOVE_CHECKS = MOVE_CHECK | MOVE_DISCOVERED;
constexpr Move MOVE_PROMOTION = 7u << 24;
// Promotion, en passant or castling: these need the full unmake.
constexpr Move MOVE_SPECIAL = 0x1F000000;

constexpr int moveTo(Move move) {
    return static_cast<int>(move & 127);
}
constexpr int moveFrom(Move move) {
    return static_cast<int>((move >> 8) & 255);
}
constexpr int capturedSlot(Move move) {
    return static_cast<int>((move >> 16) & 255);
}
constexpr int promotionKind(Move move) {
    return static_cast<int>((move >> 24) & 7);
}
constexpr bool isCapture(Move move) {
    return capturedSlot(move) != 0;
}
constexpr bool isSpecial(Move move) {
    return (move & MOVE_SPECIAL) != 0;
}
constexpr bool givesCheck(Move move) {
    return (move & MOVE_CHECKS) != 0;
}

// The move without its check bits and the search's reduced mark: the form that killers, table entries
// and comparisons between moves of different origin use.
constexpr Move plainMove(Move move) {
    return move & ~(MOVE_CHECKS | MOVE_REDUCED);
}

constexpr Move makeMoveWord(int from, int to, int captured = 0, Move flags = 0) {
    return static_cast<Move>(to) | static_cast<Move>(from) << 8 | static_cast<Move>(captured) << 16 | flags;
}
constexpr Move promotionFlag(int kind) {
    return static_cast<Move>(kind) << 24;
}

// No position has more moves than this.
constexpr int MAX_MOVES = 256;
using MoveList = Move[MAX_MOVES];

// Longest move text (Qe7xd8=Q++: a promotion shows its new piece first) and its end mark.
constexpr int MOVE_TEXT_SIZE = 11;
