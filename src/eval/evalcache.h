// The evaluation cache shared by all search threads: final scores by position key, written and read
// without a lock. A torn entry can only cause a key mismatch or, rarely, a wrong score, which is
// accepted; the words are relaxed atomics so that the race is a defined one.
#pragma once

#include <atomic>
#include <cstdint>

class EvalCache {
  public:
    static constexpr uint32_t HALF = 1024;

    // The side to move picks the half: the position key has no side-to-move component.
    bool probe(uint64_t key, int sideToMove, int& score) const {
        const Entry& e = entries[index(key, sideToMove)];
        if (e.low.load(std::memory_order_relaxed) != lowWord(key) ||
            e.high.load(std::memory_order_relaxed) != highWord(key))
            return false;
        score = e.score.load(std::memory_order_relaxed);
        return true;
    }

    void store(uint64_t key, int sideToMove, int score) {
        Entry& e = entries[index(key, sideToMove)];
        e.low.store(lowWord(key), std::memory_order_relaxed);
        e.high.store(highWord(key), std::memory_order_relaxed);
        e.score.store(score, std::memory_order_relaxed);
    }

  private:
    struct Entry {
        std::atomic<uint32_t> low{0};
        std::atomic<uint32_t> high{0};
        std::atomic<int32_t> score{0};
    };
    static constexpr uint32_t lowWord(uint64_t key) { return static_cast<uint32_t>(key); }
    static constexpr uint32_t highWord(uint64_t key) { return static_cast<uint32_t>(key >> 32); }
    static constexpr uint32_t index(uint64_t key, int sideToMove) {
        return static_cast<uint32_t>(sideToMove) * HALF + (lowWord(key) & (HALF - 1));
    }

    Entry entries[2 * HALF];
};

// Starts zeroed and is never cleared: a stored score depends only on its position, so an entry left
// from another game or search is still right for its key.
extern EvalCache evalCache;
