// A stand-in for the endgame bitbase library, for what the real one cannot show: a library without
// an entry point, sets larger than the installed tables, and the exact arguments the engine passes.
// It answers one fixed value for every position up to the number of men it is told to claim and
// records what it was asked.
#include <cstring>

#define STAND_IN_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

constexpr int NOT_AVAILABLE = 99999;

struct Recorded {
    int probes = 0;
    int lastProbe[9] = {};
};

Recorded recorded;
int claimedMen = 3;
int answer = 0;

}  // namespace

#ifndef STAND_IN_WITHOUT_LOAD
STAND_IN_EXPORT void load_egbb_5men(char*, int, int) {}
#endif

#ifndef STAND_IN_WITHOUT_PROBE
STAND_IN_EXPORT int probe_egbb_5men(int player, int wKing, int bKing, int piece1, int square1, int piece2,
                                    int square2, int piece3, int square3) {
    int args[9] = {player, wKing, bKing, piece1, square1, piece2, square2, piece3, square3};
    std::memcpy(recorded.lastProbe, args, sizeof args);
    recorded.probes++;
    const int men = 2 + (piece1 != 0) + (piece2 != 0) + (piece3 != 0);
    return men > claimedMen ? NOT_AVAILABLE : answer;
}
#endif

// Test controls: the largest set the library claims (3, 4 or 5 men) and its answer for every
// position in it.
STAND_IN_EXPORT void stand_in_claim(int men, int value) {
    claimedMen = men;
    answer = value;
}

// The count of probe calls and the nine arguments of the last one.
STAND_IN_EXPORT int stand_in_last_probe(int* args) {
    std::memcpy(args, recorded.lastProbe, sizeof recorded.lastProbe);
    return recorded.probes;
}
