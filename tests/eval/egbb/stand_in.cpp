// A stand-in for the endgame bitbase library, for what the real one cannot show: a library without
// an entry point, sets larger than the installed tables, and the exact arguments the engine passes.
// It answers one fixed value for every position up to the number of men it is told to claim and
// records what it was asked.
#include <cstring>

#define STAND_IN_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

constexpr int NOT_AVAILABLE = 99999;

struct Recorded {
    char path[512] = "";
    int cacheBytes = -1;
    int loadOptions = -1;
    int loads = 0;
    int probes = 0;
    int lastProbe[9] = {};
};

Recorded recorded;
int claimedMen = 3;
int answer = 0;

}  // namespace

#ifndef STAND_IN_WITHOUT_LOAD
STAND_IN_EXPORT void load_egbb_5men(char* path, int cacheBytes, int loadOptions) {
    std::strncpy(recorded.path, path ? path : "", sizeof recorded.path - 1);
    recorded.cacheBytes = cacheBytes;
    recorded.loadOptions = loadOptions;
    recorded.loads++;
}
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

// What the library was last asked: the load call's path, cache bytes and option, the counts of load
// and probe calls, and the nine arguments of the last probe.
STAND_IN_EXPORT const char* stand_in_last_load(int* cacheBytes, int* loadOptions, int* loads) {
    *cacheBytes = recorded.cacheBytes;
    *loadOptions = recorded.loadOptions;
    *loads = recorded.loads;
    return recorded.path;
}

STAND_IN_EXPORT int stand_in_last_probe(int* args) {
    std::memcpy(args, recorded.lastProbe, sizeof recorded.lastProbe);
    return recorded.probes;
}
