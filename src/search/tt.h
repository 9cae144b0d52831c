// The transposition table: one table shared by every search thread without locks. Entries are 16
// bytes, four to a bucket (one cache line); each is read and written as four relaxed 32-bit atomics,
// and its first word is the key XOR the move and score words, so an entry torn by two threads writing
// at once fails its key test instead of handing out a wrong move or score.
//
// Entry words: 0 check = high key half ^ word 1 ^ word 2; 1 move; 2 score (low 16 bits, signed) and
// depth (high 16 bits, signed); 3 reserved (low 16 bits), age (byte 2), type (byte 3).
#pragma once

#include <atomic>
#include <cstdint>

#include "board/board.h"
#include "board/makemove.h"
#include "board/move.h"
#include "search/stats.h"

constexpr uint8_t TT_EXACT = 1;
constexpr uint8_t TT_LOWER = 2;  // the search failed high: the score is at least this
constexpr uint8_t TT_UPPER = 3;  // the search failed low: the score is at most this

struct TtEntry {
    Move move = NO_MOVE;
    int16_t score = 0;  // mate scores relative to the node that stored them
    int16_t depth = 0;  // plies; quiescence stores 0, -3 or -4
    uint16_t reserved = 0;
    uint8_t age = 0;
    uint8_t type = 0;
};

class Tt {
  public:
    static constexpr int MIN_KILOBYTES = 256;

    Tt() = default;
    Tt(const Tt&) = delete;
    Tt& operator=(const Tt&) = delete;

    // Sizes the table to kilobytes (at least MIN_KILOBYTES); keeps the contents when the size is
    // unchanged. On allocation failure halves the size until a block is obtained.
    void alloc(int kilobytes);
    // Empties every entry; a new game starts from here.
    void clear();
    // Ages the table by one search: entries of earlier searches are replaced first.
    void newSearch() {
        age.store(uint8_t(age.load(std::memory_order_relaxed) + 1), std::memory_order_relaxed);
    }
    // Finds the entry of the board's position. A stored capture whose victim has changed comes back
    // with its captured slot corrected, or with no move when the victim is now of another kind.
    bool probe(const Board& board, TtEntry& out) const;
    // Stores move, score, depth and type of e (age is filled in) for the board's position, counting
    // updates and replacements in stats.
    void store(SearchStats& stats, const Board& board, TtEntry& e);
    // Releases the table. Not left to a destructor: at exit a search may still be reading it.
    void free();

    // Loads the position's bucket into the cache ahead of probe or store; the search calls it right
    // after making a move, before it recurses.
    void prefetch(const Board& board) const { __builtin_prefetch(table + 4 * homeIndex(board)); }
    // The same for the position a generated move leads to, before the move is made. The child probes
    // its bucket right after the move, far too soon for main memory to answer unless asked while the
    // parent still works. Always inlined: g++ finds no effect in an out-of-line copy whose only work is
    // a prefetch, and drops the calls to it.
    [[gnu::always_inline]] void prefetchAfter(const Board& board, Move move) const {
        __builtin_prefetch(table + 4 * homeIndex(keyAfter(board, move), board.sideToMove ^ 1));
    }

    // Percent of the table taken over in this search: the replacements of older entries summed over
    // threads (replacements minus same-age replacements) relative to the number of entries.
    double filling(uint64_t olderReplacements) const;

    uint32_t sizeBytes() const { return bytes; }
    uint32_t entryCount() const { return entries; }
    uint8_t currentAge() const { return age.load(std::memory_order_relaxed); }

  private:
    std::atomic<uint32_t>* table = nullptr;  // 4 words per entry, at the start of raw (2 MB aligned)
    void* raw = nullptr;
    uint32_t bytes = 0;
    uint32_t entries = 0;
    uint32_t mask = 0;
    std::atomic<uint8_t> age{0};

    // No side-to-move in the key: the index folds it in instead, so the two sides' positions with
    // the same pieces land in different buckets.
    uint32_t homeIndex(uint64_t key, uint32_t sideToMove) const {
        return (lowHalf(key) + 4 * sideToMove) & mask;
    }
    uint32_t homeIndex(const Board& board) const { return homeIndex(board.hash, board.sideToMove); }
};

extern Tt tt;
