// Per-thread search counters. Each thread writes only its own; the driver and the protocol sum
// them over all threads, possibly while the search runs, hence relaxed atomics. A counter is
// bumped with a relaxed load and store (no locked instruction): only its owner writes it.
#pragma once

#include <atomic>
#include <cstdint>

struct Counter {
    std::atomic<uint64_t> value{0};

    void add(uint64_t n = 1) {
        value.store(value.load(std::memory_order_relaxed) + n, std::memory_order_relaxed);
    }
    uint64_t get() const { return value.load(std::memory_order_relaxed); }
    void clear() { value.store(0, std::memory_order_relaxed); }
};

struct SearchStats {
    Counter nodes;     // interior nodes entered
    Counter qnodes;    // quiescence nodes entered, plus moves pruned by futility
    Counter frontier;  // calls into quiescence from alphaBeta, plus moves pruned by futility
    Counter pvNodes;
    Counter cutNodes;
    Counter allNodes;
    Counter endNodes;  // nodes without a legal move
    Counter ttProbes;
    Counter ttHits;
    Counter ttCuts;
    Counter ttUpdates;              // a store rewrote an entry of the same position
    Counter ttReplacements;         // a store took a slot of another position
    Counter ttSameAgeReplacements;  // ... whose age was the current one
    Counter nullTries;
    Counter nullCuts;
    Counter nullNodes;  // nodes spent below null moves
    Counter iidNodes;
    Counter firstCuts;  // cutoffs by the first move searched
    Counter alphaRaises;
    Counter killerTries;  // moves of the killer stages searched
    Counter killerCuts;
    Counter reduceTries;
    Counter reduceFails;
    Counter splitNodes;
    Counter splitWaitMs;

    // Adds every counter of other to this record's.
    void accumulate(const SearchStats& other);
    void clear();
};

inline constexpr Counter SearchStats::*ALL_COUNTERS[] = {
    &SearchStats::nodes,
    &SearchStats::qnodes,
    &SearchStats::frontier,
    &SearchStats::pvNodes,
    &SearchStats::cutNodes,
    &SearchStats::allNodes,
    &SearchStats::endNodes,
    &SearchStats::ttProbes,
    &SearchStats::ttHits,
    &SearchStats::ttCuts,
    &SearchStats::ttUpdates,
    &SearchStats::ttReplacements,
    &SearchStats::ttSameAgeReplacements,
    &SearchStats::nullTries,
    &SearchStats::nullCuts,
    &SearchStats::nullNodes,
    &SearchStats::iidNodes,
    &SearchStats::firstCuts,
    &SearchStats::alphaRaises,
    &SearchStats::killerTries,
    &SearchStats::killerCuts,
    &SearchStats::reduceTries,
    &SearchStats::reduceFails,
    &SearchStats::splitNodes,
    &SearchStats::splitWaitMs,
};

inline void SearchStats::accumulate(const SearchStats& other) {
    for (Counter SearchStats::*counter : ALL_COUNTERS) (this->*counter).add((other.*counter).get());
}

inline void SearchStats::clear() {
    for (Counter SearchStats::*counter : ALL_COUNTERS) (this->*counter).clear();
}
