// The builders' tally of position-move counts, and its sorted, capped form that becomes a book file.
#include "book/tally.h"

#include <algorithm>
#include <cstdio>

#include "book/book.h"

namespace {

// The book's first record is never found by a probe. The builders put this record there, under key 0
// (no real position has it), so that every real position is reachable.
constexpr BookEntry FIRST_RECORD = {0, 0, 0, 0, 1, 0};

}  // namespace

BookEntry& Tally::at(uint64_t key, uint8_t from, uint8_t to) {
    uint32_t* link = &slotOf(key).head;
    while (*link != NONE) {
        Node& node = nodes[*link];
        if ((node.entry.from & 127) == (from & 127) && node.entry.to == to) return node.entry;
        link = &node.next;
    }
    *link = static_cast<uint32_t>(nodes.size());
    nodes.push_back({BookEntry{key, from, to, 0, 0, 0}, NONE});
    return nodes.back().entry;
}

std::vector<BookEntry> Tally::entries(const BookBuildOptions& options) const {
    std::vector<Slot> positions;
    positions.reserve(used);
    for (const Slot& slot : slots)
        if (slot.head != NONE) positions.push_back(slot);
    std::sort(positions.begin(), positions.end(), [](const Slot& a, const Slot& b) { return a.key < b.key; });
    std::vector<BookEntry> sorted{FIRST_RECORD};
    std::vector<BookEntry> moves;
    for (const Slot& position : positions) {
        moves.clear();
        for (uint32_t i = position.head; i != NONE; i = nodes[i].next) {
            const BookEntry& entry = nodes[i].entry;
            const uint32_t games = entry.games();
            const uint32_t points = 2u * entry.won + entry.drawn;
            if (games >= static_cast<uint32_t>(std::max(options.minGames, 1)) &&
                points * 50 >= static_cast<uint32_t>(std::max(options.minScore, 0)) * games)
                moves.push_back(entry);
        }
        std::stable_sort(moves.begin(), moves.end(),
                         [](const BookEntry& a, const BookEntry& b) { return a.games() > b.games(); });
        if (moves.size() > BOOK_MAX_ENTRIES) moves.resize(BOOK_MAX_ENTRIES);
        sorted.insert(sorted.end(), moves.begin(), moves.end());
    }
    return sorted;
}

bool Tally::write(const char* source, const std::string& bookPath, const BookBuildOptions& options) const {
    if (moves() == 0) {
        std::printf("no book moves found in %s\n", source);
        return false;
    }
    return Book::save(bookPath.c_str(), entries(options));
}

Tally::Slot& Tally::slotOf(uint64_t key) {
    if (2 * (used + 1) > slots.size()) grow();
    const size_t mask = slots.size() - 1;
    size_t i = key & mask;
    while (slots[i].head != NONE && slots[i].key != key) i = (i + 1) & mask;
    if (slots[i].head == NONE) {
        // A new position: at() hangs its first move on the slot at once.
        used++;
        slots[i].key = key;
    }
    return slots[i];
}

void Tally::grow() {
    std::vector<Slot> old(slots.size() * 2, Slot{0, NONE});
    old.swap(slots);
    const size_t mask = slots.size() - 1;
    for (const Slot& slot : old) {
        if (slot.head == NONE) continue;
        size_t i = slot.key & mask;
        while (slots[i].head != NONE) i = (i + 1) & mask;
        slots[i] = slot;
    }
}
