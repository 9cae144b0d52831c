#include "eval/pawnhash.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

PawnHash::PawnHash() {
    entries = static_cast<PawnEntry*>(std::aligned_alloc(128, PAWN_HASH_BYTES));
    if (!entries) {
        std::fprintf(stderr, "failed to allocate %u bytes for pawnhash\n", PAWN_HASH_BYTES);
        std::abort();
    }
    std::memset(entries, 0, PAWN_HASH_BYTES);
    // A pawn key whose high half is 0 must not hit the zeroed entry 0 before anything was stored.
    entries[0].check = 1;
}

PawnHash::~PawnHash() {
    std::free(entries);
}
