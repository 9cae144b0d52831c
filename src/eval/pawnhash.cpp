#include "eval/pawnhash.h"

#include <cstdio>
#include <cstdlib>

#include "platform/platform.h"

PawnHash::PawnHash() {
    // One huge page where the system offers them: on small pages nearly every probe of a new
    // structure also missed the address cache and waited for a page walk.
    entries = static_cast<PawnEntry*>(platform::allocLarge(PAWN_HASH_BYTES));
    if (!entries) {
        std::fprintf(stderr, "failed to allocate %u bytes for pawnhash\n", PAWN_HASH_BYTES);
        std::abort();
    }
    // A pawn key whose high half is 0 must not hit the zeroed entry 0 before anything was stored.
    entries[0].check = 1;
}

PawnHash::~PawnHash() {
    platform::freeLarge(entries);
}
