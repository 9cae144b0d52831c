// The king zone's geometry: for a piece standing at a difference d = piece square - king square,
// which squares of the zone (the king's square and its eight neighbours) it can bear on. Computed by
// the compiler from 0x88 differences alone, so the board edges are tested where the tables are read.
#pragma once

#include <array>
#include <cstdint>
#include <cstdlib>

namespace kingzone {

constexpr int ZONE[9] = {0, 1, -1, 16, -16, 17, 15, -17, -15};
constexpr int MAX_TARGETS = 4;

// A slider's zone targets at one difference, nearest to the piece first, as offsets from the king.
struct Targets {
    int8_t offset[MAX_TARGETS];
    uint8_t count;
};

// d = rank * 16 + file with both parts in -7..7.
constexpr int rankDiff(int d) { return (d + 136) / 16 - 8; }
constexpr int fileDiff(int d) { return d - 16 * rankDiff(d); }
constexpr int absolute(int x) { return x < 0 ? -x : x; }

// Steps along which a slider of the kind (diagonal or straight) goes from d to t, 0 when none.
constexpr int stepsBetween(int d, int t, bool diagonal) {
    const int dr = rankDiff(t) - rankDiff(d), df = fileDiff(t) - fileDiff(d);
    if (dr == 0 && df == 0) return 0;
    if (diagonal ? absolute(dr) == absolute(df) : (dr == 0 || df == 0)) return absolute(dr) > absolute(df) ? absolute(dr) : absolute(df);
    return 0;
}

// Orders targets by distance from the piece, then the king's own square, then the smaller rank
// offset and the file: a key that mirroring the ranks leaves unchanged, so both colours agree.
constexpr int order(int d, int t, bool diagonal, bool straight) {
    int steps = 99;
    if (diagonal && stepsBetween(d, t, true)) steps = stepsBetween(d, t, true);
    if (straight && stepsBetween(d, t, false)) steps = stepsBetween(d, t, false);
    return steps * 1000 + (t == 0 ? 0 : 100) + absolute(rankDiff(t)) * 10 + fileDiff(t) + 1;
}

constexpr Targets targetsAt(int d, bool diagonal, bool straight) {
    Targets result{};
    int keys[9] = {}, offsets[9] = {}, n = 0;
    for (int t : ZONE) {
        if (t == d) continue;
        if (!((diagonal && stepsBetween(d, t, true)) || (straight && stepsBetween(d, t, false)))) continue;
        keys[n] = order(d, t, diagonal, straight);
        offsets[n++] = t;
    }
    for (int i = 0; i < n; ++i)
        for (int j = i + 1; j < n; ++j)
            if (keys[j] < keys[i]) {
                const int k = keys[i], o = offsets[i];
                keys[i] = keys[j], offsets[i] = offsets[j];
                keys[j] = k, offsets[j] = o;
            }
    for (int i = 0; i < n && i < MAX_TARGETS; ++i) result.offset[i] = static_cast<int8_t>(offsets[i]);
    result.count = static_cast<uint8_t>(n < MAX_TARGETS ? n : MAX_TARGETS);
    return result;
}

constexpr bool knightStep(int d) {
    for (int s : {14, 18, 31, 33, -14, -18, -31, -33})
        if (d == s) return true;
    return false;
}

// Indexed by d + 128 (d = piece square - king square).
constexpr std::array<Targets, 256> buildTargets(bool diagonal, bool straight) {
    std::array<Targets, 256> table{};
    for (int d = -119; d <= 119; ++d)
        if (absolute(fileDiff(d)) <= 7 && absolute(rankDiff(d)) <= 7) table[d + 128] = targetsAt(d, diagonal, straight);
    return table;
}

constexpr std::array<bool, 256> buildKnights() {
    std::array<bool, 256> table{};
    for (int d = -119; d <= 119; ++d)
        for (int t : ZONE)
            if (knightStep(d - t)) table[d + 128] = true;
    return table;
}

inline constexpr std::array<Targets, 256> BISHOP = buildTargets(true, false);
inline constexpr std::array<Targets, 256> ROOK = buildTargets(false, true);
inline constexpr std::array<Targets, 256> QUEEN = buildTargets(true, true);
// Whether a knight at the difference attacks a square of the zone.
inline constexpr std::array<bool, 256> KNIGHT = buildKnights();

}  // namespace kingzone
