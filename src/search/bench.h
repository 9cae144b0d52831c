// The benchmark: a fixed set of positions searched one by one to a fixed depth from an empty table.
// With one search thread the node total is the same on every run and every machine, so it serves as a
// signature of the search's behaviour; the speed figure comes with it.
#pragma once

#include <cstdint>
#include <span>

std::span<const char* const> benchPositions();

struct BenchResult {
    uint64_t nodes = 0;  // interior plus quiescence nodes of all positions
    uint32_t ms = 0;
};

// Searches every bench position to depth; perPosition (may be null) hears each position's index, nodes
// and milliseconds. The game board is left as it is; the table is cleared.
BenchResult runBench(int depth, void (*perPosition)(int index, uint64_t nodes, uint32_t ms) = nullptr);
