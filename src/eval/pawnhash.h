// The per-thread table of pawn structures: what depends on the pawns alone is computed once per
// structure and kept here, together with the lists the king- and piece-dependent terms start from.
#pragma once

#include <cstdint>

#include "board/makemove.h"

// One colour's part of an entry.
struct PawnBlock {
    uint8_t pawnFreeFiles;  // bit f set: no pawn of this colour on file f (a = bit 0)
    uint8_t passedCount;
    uint8_t passed[8];     // squares of the passed pawns, in the order found
    uint8_t passedFiles;   // bit f set: a passed pawn of this colour on file f
    uint8_t colourCounts;  // own pawns on light squares (low nibble) and on dark squares (high nibble)
};

struct PawnEntry {
    uint32_t check;      // high half of the pawn key
    int16_t middlegame;  // pawn terms that depend on pawns alone, White minus Black
    int16_t endgame;
    PawnBlock block[2];  // White, Black
};
static_assert(sizeof(PawnEntry) == 32, "entries are packed 32 bytes, 2 MiB per table");

constexpr uint32_t PAWN_HASH_ENTRIES = 65536;
constexpr uint32_t PAWN_HASH_BYTES = PAWN_HASH_ENTRIES * sizeof(PawnEntry);

// Allocated aligned and zeroed when it is created; a failed allocation ends the process.
class PawnHash {
  public:
    PawnHash();
    ~PawnHash();
    PawnHash(const PawnHash&) = delete;
    PawnHash& operator=(const PawnHash&) = delete;

    // The entry a pawn key indexes (low 16 bits of its low half); it may hold another structure.
    PawnEntry& slot(uint64_t pawnKey) { return entries[index(pawnKey)]; }

    // Asks for the entry of the position a generated move will produce, before the move is made: the
    // child evaluates first thing. Always inlined: g++ finds no effect in an out-of-line copy whose
    // only work is a prefetch, and drops the calls to it.
    [[gnu::always_inline]] void prefetchAfter(const Board& board, Move move) const {
        __builtin_prefetch(entries + index(pawnKeyAfter(board, move)));
    }

  private:
    static uint32_t index(uint64_t pawnKey) {
        return static_cast<uint32_t>(pawnKey & (PAWN_HASH_ENTRIES - 1));
    }

    PawnEntry* entries;
};
