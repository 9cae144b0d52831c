// What the evaluation keeps per search thread: its pawn table, the entry of the position last
// evaluated, counters, and the piece-term parts of the last evaluation for display. One context per
// thread slot; only its own thread uses it (the counters are read while the thread is idle).
#pragma once

#include <cstdint>

#include "eval/pawnhash.h"

// The three parts of the piece term of one side.
struct PieceTerms {
    int threats = 0;
    int penalties = 0;
    int position = 0;
};

struct EvalContext {
    PawnHash pawnHash;
    PawnEntry* pawnEntry = nullptr;  // entry of the last position evaluated, set on every call
    uint64_t nodes = 0;              // evaluate calls, cache hits included
    uint64_t cacheHits = 0;
    uint64_t pawnHits = 0;
    uint64_t pawnStores = 0;
    PieceTerms pieceTerms[2];  // by side, from the last full evaluation
    bool useCache = true;      // the shared evaluation cache; off only for tests and checks
};
