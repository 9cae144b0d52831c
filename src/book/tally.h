// Counts per position and move, gathered while a book is built, and their writing as a book file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "book/builder.h"
#include "book/record.h"

// Positions live in an open-addressing table (the keys are random, so their low bits index it well);
// each keeps a chain of its moves.
class Tally {
  public:
    Tally() : slots(1024, Slot{0, NONE}) {}

    // The counts of a position's move (from may carry BOOK_ODD_PLY); a new pair starts at zero.
    BookEntry& at(uint64_t key, uint8_t from, uint8_t to);

    size_t positions() const { return used; }
    size_t moves() const { return nodes.size(); }

    // The book: sorted by key behind a first record no position shares, a position's moves most played
    // first, at most BOOK_MAX_ENTRIES of them (a probe reads no more), after the options' thresholds.
    std::vector<BookEntry> entries(const BookBuildOptions& options) const;

    // Saves entries(options) to bookPath; says so and fails when source gave no moves at all.
    bool write(const char* source, const std::string& bookPath, const BookBuildOptions& options) const;

  private:
    static constexpr uint32_t NONE = UINT32_MAX;
    struct Slot {
        uint64_t key;
        uint32_t head;  // NONE while the slot is free
    };
    struct Node {
        BookEntry entry;
        uint32_t next;
    };

    // The slot of key; a new key gets a free slot, whose empty chain the caller fills.
    Slot& slotOf(uint64_t key);
    void grow();

    std::vector<Slot> slots;
    size_t used = 0;
    std::vector<Node> nodes;
};
