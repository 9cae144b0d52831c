#include "search/tt.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "board/tables.h"
#include "frontend/util/log.h"
#include "platform/platform.h"

Tt tt;

namespace {

// Largest request that still fits the 32-bit byte count.
constexpr int MAX_KILOBYTES = 0x3FFFFF;
// An entry of another search loses this much depth in the choice of a slot to overwrite.
constexpr int OLD_AGE_PENALTY = 8192;

constexpr uint32_t scoreWord(const TtEntry& e) {
    return uint16_t(e.score) | uint32_t(uint16_t(e.depth)) << 16;
}
constexpr uint32_t infoWord(const TtEntry& e) {
    return e.reserved | uint32_t(e.age) << 16 | uint32_t(e.type) << 24;
}

// A consistent copy of one entry's words, read once.
struct Slot {
    uint32_t check, move, score, info;

    int depth() const { return int16_t(score >> 16); }
    int value() const { return int16_t(score & 0xFFFF); }
    uint8_t age() const { return uint8_t(info >> 16); }
    uint8_t type() const { return uint8_t(info >> 24); }
    bool holds(uint32_t keyHigh) const { return (check ^ move ^ score) == keyHigh; }
};

Slot read(const std::atomic<uint32_t>* entry) {
    return {entry[0].load(std::memory_order_relaxed), entry[1].load(std::memory_order_relaxed),
            entry[2].load(std::memory_order_relaxed), entry[3].load(std::memory_order_relaxed)};
}

void write(std::atomic<uint32_t>* entry, const Slot& s) {
    entry[0].store(s.check, std::memory_order_relaxed);
    entry[1].store(s.move, std::memory_order_relaxed);
    entry[2].store(s.score, std::memory_order_relaxed);
    entry[3].store(s.info, std::memory_order_relaxed);
}

// Whether an entry of the same position is worth more than the new result: a deeper search whose
// bound is at least as tight as what the new one says.
bool keepsOld(const Slot& old, const TtEntry& e) {
    if (old.depth() <= e.depth) return false;
    switch (old.type()) {
        case TT_EXACT:
            return true;
        case TT_LOWER:
            return old.value() >= e.score;
        case TT_UPPER:
            return old.value() <= e.score;
        default:
            return false;
    }
}

// The captured slot of a stored move may be stale: the same position can be reached with another
// piece of the same kind on the target square (slots are assigned by order of placement).
Move refreshCapture(const Board& board, Move move) {
    const int captured = capturedSlot(move);
    if (captured == 0) return move;
    const int square = (move & MOVE_EN_PASSANT) ? moveTo(move) ^ 16 : moveTo(move);
    const int present = board.at(square);
    if (present == captured) return move;
    if (pieceCode[present] != pieceCode[captured]) return NO_MOVE;
    return (move & ~(Move(255) << 16)) | Move(present) << 16;
}

}  // namespace

void Tt::alloc(int kilobytes) {
    Log logger;
    // The size in bytes, within the bounds the 32-bit fields can hold.
    if (kilobytes < MIN_KILOBYTES) kilobytes = MIN_KILOBYTES;
    if (kilobytes > MAX_KILOBYTES) kilobytes = MAX_KILOBYTES;
    uint32_t size = uint32_t(kilobytes) * 1024;
    if (size == bytes) return;

    // A fresh block; on failure ask for half as much until something is granted.
    free();
    void* block;
    while ((block = platform::allocLarge(size)) == nullptr) {
        logger.error("tt: malloc(%u) failed, retrying...\n", size);
        size /= 2;
        if (size < 64) {
            logger.error("FATAL: failed to malloc Tt!\n");
            std::fputs("FATAL: failed to malloc Tt!\n", stderr);
            std::abort();
        }
    }

    // Size the index; the block's huge-page alignment covers the cache line pair. The mask is
    // not rounded to a power of two: part of a table of another size stays unused, as intended.
    raw = block;
    const uintptr_t start = reinterpret_cast<uintptr_t>(block);
    bytes = size;
    entries = size / 16;
    mask = entries - 1;
    table = reinterpret_cast<std::atomic<uint32_t>*>(start);
    std::uninitialized_value_construct_n(table, size_t(entries) * 4);
    age.store(1, std::memory_order_relaxed);

    logger.info("tt.kb     =%i\n", int(bytes / 1024));
    logger.info("tt.entries=%x\n", entries);
    logger.info("tt.addr   =%x\n", unsigned(start));
}

void Tt::clear() {
    // No search runs now: fresh zero words constructed in place are cleared as one block, where a
    // store per word took sixteen million atomic stores for the default table.
    std::uninitialized_value_construct_n(table, size_t(entries) * 4);
    age.store(1, std::memory_order_relaxed);
}

bool Tt::probe(const Board& board, TtEntry& out) const {
    const uint32_t home = homeIndex(board);
    const std::atomic<uint32_t>* bucket = table + 4 * (home & ~3u);
    __builtin_prefetch(bucket);
    const uint32_t keyHigh = highHalf(board.hash);
    for (uint32_t i = 0; i < 4; i++) {
        const Slot s = read(bucket + 4 * ((home & 3) ^ i));
        if (!s.holds(keyHigh)) continue;
        out.move = refreshCapture(board, s.move);
        out.score = int16_t(s.value());
        out.depth = int16_t(s.depth());
        out.reserved = uint16_t(s.info & 0xFFFF);
        out.age = s.age();
        out.type = s.type();
        return true;
    }
    return false;
}

void Tt::store(SearchStats& stats, const Board& board, TtEntry& e) {
    const uint32_t home = homeIndex(board);
    std::atomic<uint32_t>* bucket = table + 4 * (home & ~3u);
    __builtin_prefetch(bucket);
    const uint32_t keyHigh = highHalf(board.hash);
    const uint8_t current = age.load(std::memory_order_relaxed);

    // The words to write.
    e.age = current;
    const uint32_t score = scoreWord(e);
    const Slot fresh{keyHigh ^ e.move ^ score, e.move, score, infoWord(e)};

    // The same position already stored: rewrite it unless the old result is worth more.
    std::atomic<uint32_t>* victim = nullptr;
    int victimValue = 0;
    uint8_t victimAge = 0;
    for (uint32_t i = 0; i < 4; i++) {
        std::atomic<uint32_t>* entry = bucket + 4 * ((home & 3) ^ i);
        const Slot old = read(entry);
        if (old.holds(keyHigh)) {
            if (keepsOld(old, e)) return;
            write(entry, fresh);
            stats.ttUpdates.add();
            return;
        }
        // The slot to take is chosen on the way: entries of older searches go first, then the
        // shallowest; the first in probe order wins ties.
        const int value = old.depth() - (old.age() != current ? OLD_AGE_PENALTY : 0);
        if (!victim || value < victimValue) {
            victim = entry;
            victimValue = value;
            victimAge = old.age();
        }
    }

    // Take the chosen slot of another position.
    stats.ttReplacements.add();
    if (victimAge == current) stats.ttSameAgeReplacements.add();
    write(victim, fresh);
}

void Tt::free() {
    platform::freeLarge(raw);
    raw = nullptr;
    table = nullptr;
    bytes = 0;
    entries = 0;
    mask = 0;
}

double Tt::filling(uint64_t olderReplacements) const {
    return entries ? 100.0 * double(olderReplacements) / double(entries) : 0.0;
}
