// A stand-in for the endgame bitbase library, loaded by the tests through the engine's real loading
// path. It knows king and pawn against king exactly (solved by retrograde analysis when it is
// loaded), can be told to claim larger sets and to give a fixed answer for them, and records what
// it was asked so that tests can check the engine's square and piece conversion.
//
// Squares are 0..63 (a1 = 0, file + 8 * rank). Piece codes: White queen 2, rook 3, bishop 4,
// knight 5, pawn 6; Black's the same plus 6. Answers are from the side to move's view:
// positive won, negative lost, 0 drawn, 99999 not available.
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#if defined(_WIN32)
#define KPK_EXPORT extern "C" __declspec(dllexport)
#else
#define KPK_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace {

constexpr int NOT_AVAILABLE = 99999;
constexpr int WHITE_PAWN = 6;
constexpr int BLACK_PAWN = 12;

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
int otherAnswer = NOT_AVAILABLE;

// Results of the retrograde analysis: White (the pawn's side) wins or not.
enum : uint8_t { UNKNOWN, DRAW, WIN, INVALID };

constexpr int fileOf(int sq) {
    return sq & 7;
}
constexpr int rankOf(int sq) {
    return sq >> 3;
}
constexpr int distance(int a, int b) {
    int df = std::abs(fileOf(a) - fileOf(b)), dr = std::abs(rankOf(a) - rankOf(b));
    return df > dr ? df : dr;
}

// Index: side to move (0 White), white king, black king, white pawn (any square; ranks 1 and 8 unused).
constexpr int index(int stm, int wk, int bk, int wp) {
    return ((stm * 64 + wk) * 64 + bk) * 64 + wp;
}

std::vector<uint8_t> table;

bool pawnAttacks(int wp, int sq) {
    return rankOf(sq) == rankOf(wp) + 1 && std::abs(fileOf(sq) - fileOf(wp)) == 1;
}

// Whether a queen (or a rook) on q attacks sq, with the white king the only piece that can block:
// the black king is the piece that moves, so its own square never shields another.
bool newPieceAttacks(int q, bool rook, int wk, int sq) {
    int sf = fileOf(sq) - fileOf(q), sr = rankOf(sq) - rankOf(q);
    if (sq == q || !(sf == 0 || sr == 0 || (!rook && std::abs(sf) == std::abs(sr)))) return false;
    int step = ((sr > 0) - (sr < 0)) * 8 + ((sf > 0) - (sf < 0));
    for (int s = q + step; s != sq; s += step)
        if (s == wk) return false;
    return true;
}

// After promotion on q the position is king and queen (or rook) against king with Black to move:
// won unless Black takes the new piece at once or is stalemated.
bool promotionWins(int wk, int bk, int q) {
    for (bool rook : {false, true}) {
        bool takes = false, canMove = false;
        for (int df = -1; df <= 1; df++)
            for (int dr = -1; dr <= 1; dr++) {
                int f = fileOf(bk) + df, r = rankOf(bk) + dr;
                if ((!df && !dr) || f < 0 || f > 7 || r < 0 || r > 7) continue;
                int to = r * 8 + f;
                if (distance(to, wk) <= 1) continue;
                if (to == q) takes = true;
                if (to == q || !newPieceAttacks(q, rook, wk, to)) canMove = true;
            }
        if (takes) continue;
        if (!canMove && !newPieceAttacks(q, rook, wk, bk)) continue;
        return true;
    }
    return false;
}

uint8_t initial(int stm, int wk, int bk, int wp) {
    if (rankOf(wp) == 0 || rankOf(wp) == 7 || wk == bk || wk == wp || bk == wp || distance(wk, bk) <= 1)
        return INVALID;
    if (stm == 0 && pawnAttacks(wp, bk)) return INVALID;  // Black in check with White to move
    if (stm == 0) {
        int q = wp + 8;
        if (rankOf(wp) == 6 && q != wk && q != bk && promotionWins(wk, bk, q)) return WIN;
        return UNKNOWN;
    }
    // Black to move: the pawn falls, or Black has no move (mated by the pawn's check, else stalemated).
    if (distance(bk, wp) == 1 && distance(wk, wp) > 1) return DRAW;
    bool anyMove = false;
    for (int df = -1; df <= 1; df++)
        for (int dr = -1; dr <= 1; dr++) {
            int f = fileOf(bk) + df, r = rankOf(bk) + dr;
            if ((!df && !dr) || f < 0 || f > 7 || r < 0 || r > 7) continue;
            int to = r * 8 + f;
            if (distance(to, wk) > 1 && !pawnAttacks(wp, to)) anyMove = true;
        }
    if (anyMove) return UNKNOWN;
    return pawnAttacks(wp, bk) ? WIN : DRAW;
}

// White to move: wins when a move reaches a win. Black to move: draws when a move reaches a draw,
// wins for White when every move reaches a win.
uint8_t successor(int stm, int wk, int bk, int wp) {
    uint8_t* t = table.data();
    if (stm == 0) {
        bool allDraw = true;
        for (int df = -1; df <= 1; df++)
            for (int dr = -1; dr <= 1; dr++) {
                int f = fileOf(wk) + df, r = rankOf(wk) + dr;
                if ((!df && !dr) || f < 0 || f > 7 || r < 0 || r > 7) continue;
                int to = r * 8 + f;
                uint8_t v = t[index(1, to, bk, wp)];
                if (v == INVALID) continue;
                if (v == WIN) return WIN;
                if (v != DRAW) allDraw = false;
            }
        if (rankOf(wp) < 6) {
            int one = wp + 8;
            if (one != wk && one != bk) {
                uint8_t v = t[index(1, wk, bk, one)];
                if (v == WIN) return WIN;
                if (v != DRAW && v != INVALID) allDraw = false;
                int two = wp + 16;
                if (rankOf(wp) == 1 && two != wk && two != bk) {
                    v = t[index(1, wk, bk, two)];
                    if (v == WIN) return WIN;
                    if (v != DRAW && v != INVALID) allDraw = false;
                }
            }
        }
        // A pawn on the seventh that cannot promote with a win only draws by promoting.
        return allDraw ? DRAW : UNKNOWN;
    }
    bool allWin = true;
    for (int df = -1; df <= 1; df++)
        for (int dr = -1; dr <= 1; dr++) {
            int f = fileOf(bk) + df, r = rankOf(bk) + dr;
            if ((!df && !dr) || f < 0 || f > 7 || r < 0 || r > 7) continue;
            int to = r * 8 + f;
            if (to == wp)
                continue;  // capturing a defended pawn is illegal; an undefended one was a draw above
            uint8_t v = t[index(0, wk, to, wp)];
            if (v == INVALID) continue;
            if (v == DRAW) return DRAW;
            if (v != WIN) allWin = false;
        }
    return allWin ? WIN : UNKNOWN;
}

[[maybe_unused]] void solve() {
    table.assign(2 * 64 * 64 * 64, INVALID);
    for (int stm = 0; stm < 2; stm++)
        for (int wk = 0; wk < 64; wk++)
            for (int bk = 0; bk < 64; bk++)
                for (int wp = 0; wp < 64; wp++) table[index(stm, wk, bk, wp)] = initial(stm, wk, bk, wp);
    for (bool changed = true; changed;) {
        changed = false;
        for (int stm = 0; stm < 2; stm++)
            for (int wk = 0; wk < 64; wk++)
                for (int bk = 0; bk < 64; bk++)
                    for (int wp = 8; wp < 56; wp++) {
                        uint8_t& v = table[index(stm, wk, bk, wp)];
                        if (v != UNKNOWN) continue;
                        uint8_t next = successor(stm, wk, bk, wp);
                        if (next != UNKNOWN) {
                            v = next;
                            changed = true;
                        }
                    }
    }
    // Whatever White cannot force is a draw.
    for (uint8_t& v : table)
        if (v == UNKNOWN) v = DRAW;
}

// A won king-and-pawn ending scores more the further the pawn has come, so that a search that sees
// only these answers still pushes the pawn.
int winValue(int pawnRank) {
    return 2000 + 100 * pawnRank;
}

// Unused in the variants built without the probe entry point.
[[maybe_unused]] int probeKpk(int player, int wk, int bk, int pawn, int square) {
    int stm = player, pawnRank = rankOf(square);
    if (pawn == BLACK_PAWN) {  // mirror ranks and exchange colours so that White holds the pawn
        int mirroredWk = bk ^ 56, mirroredBk = wk ^ 56;
        wk = mirroredWk;
        bk = mirroredBk;
        square ^= 56;
        stm ^= 1;
        pawnRank = rankOf(square);
    }
    uint8_t v = table[index(stm, wk, bk, square)];
    if (v == INVALID) return NOT_AVAILABLE;
    if (v == DRAW) return 0;
    return stm == 0 ? winValue(pawnRank) : -winValue(pawnRank);
}

}  // namespace

#ifndef KPK_WITHOUT_LOAD
KPK_EXPORT void load_egbb_5men(char* path, int cacheBytes, int loadOptions) {
    std::strncpy(recorded.path, path ? path : "", sizeof recorded.path - 1);
    recorded.cacheBytes = cacheBytes;
    recorded.loadOptions = loadOptions;
    recorded.loads++;
    if (table.empty()) solve();
}
#endif

#ifndef KPK_WITHOUT_PROBE
KPK_EXPORT int probe_egbb_5men(int player, int wKing, int bKing, int piece1, int square1, int piece2,
                               int square2, int piece3, int square3) {
    int args[9] = {player, wKing, bKing, piece1, square1, piece2, square2, piece3, square3};
    std::memcpy(recorded.lastProbe, args, sizeof args);
    recorded.probes++;
    int men = 2 + (piece1 != 0) + (piece2 != 0) + (piece3 != 0);
    if (men > claimedMen || table.empty()) return NOT_AVAILABLE;
    if (men == 3 && (piece1 == WHITE_PAWN || piece1 == BLACK_PAWN))
        return probeKpk(player, wKing, bKing, piece1, square1);
    return otherAnswer;
}
#endif

// Test controls: the largest set the library claims (3, 4 or 5 men), and the answer it gives for
// every position it claims other than king and pawn against king.
KPK_EXPORT void kpk_set_claim(int men, int answer) {
    claimedMen = men;
    otherAnswer = answer;
}

// What the library was last asked: the load call's path, cache bytes and option, the counts of load
// and probe calls, and the nine arguments of the last probe.
KPK_EXPORT const char* kpk_last_load(int* cacheBytes, int* loadOptions, int* loads) {
    *cacheBytes = recorded.cacheBytes;
    *loadOptions = recorded.loadOptions;
    *loads = recorded.loads;
    return recorded.path;
}

KPK_EXPORT int kpk_last_probe(int* args) {
    std::memcpy(args, recorded.lastProbe, sizeof recorded.lastProbe);
    return recorded.probes;
}
