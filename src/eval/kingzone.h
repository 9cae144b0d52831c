// The king zone's geometry: for a piece standing at a difference d = piece square - king square,
// which squares of the zone (the king's square and its eight neighbours) it can bear on. Computed by
// the compiler from 0x88 differences alone, so the board edges are tested where the tables are read.
#pragma once

#include <array>
#include <cstdint>

namespace kingzone {

constexpr int ZONE[9] = {0, 1, -1, 16, -16, 17, 15, -17, -15};

// The zone squares a slider at one difference reaches along a line, as offsets from the king. The
// piece bears on the zone through any of them: picking one would favour one side of the king's rank,
// and the two colours would no longer score alike.
struct Targets {
    int8_t offset[9];
    uint8_t count;
};

// d = rank * 16 + file with both parts in -7..7.
constexpr int rankDiff(int d) {
    return (d + 136) / 16 - 8;
}
constexpr int fileDiff(int d) {
    return d - 16 * rankDiff(d);
}
constexpr int absolute(int x) {
    return x < 0 ? -x : x;
}

// Whether a slider moving diagonally (or straight) goes from d to t.
constexpr bool onLine(int d, int t, bool diagonal) {
    const int dr = rankDiff(t) - rankDiff(d), df = fileDiff(t) - fileDiff(d);
    if (dr == 0 && df == 0) return false;
    return diagonal ? absolute(dr) == absolute(df) : (dr == 0 || df == 0);
}

constexpr Targets targetsAt(int d, bool diagonal, bool straight) {
    Targets result{};
    for (int t : ZONE)
        if ((diagonal && onLine(d, t, true)) || (straight && onLine(d, t, false)))
            result.offset[result.count++] = static_cast<int8_t>(t);
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
        if (absolute(fileDiff(d)) <= 7 && absolute(rankDiff(d)) <= 7)
            table[d + 128] = targetsAt(d, diagonal, straight);
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
