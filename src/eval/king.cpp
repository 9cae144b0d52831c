#include "eval/king.h"

#include <algorithm>

#include "eval/evalboard.h"
#include "eval/kingzone.h"

using namespace eval;

namespace {

// clang-format off
constexpr RankTable KING_MIDDLEGAME = {
    {-2, 0, -8, -12, -12, -8, 0, -2},
    {-4, 0, -12, -16, -16, -12, 0, -4},
    {-32, -12, -16, -20, -20, -16, -12, -32},
    {-32, -32, -32, -32, -32, -32, -32, -32},
    {-32, -32, -32, -32, -32, -32, -32, -32},
    {-32, -32, -32, -32, -32, -32, -32, -32},
    {-32, -32, -32, -32, -32, -32, -32, -32},
    {-32, -32, -32, -32, -32, -32, -32, -32},
};
constexpr RankTable KING_ENDGAME = {
    {-32, -24, -24, -24, -24, -24, -24, -32},
    {-20, -12, -12, -8, -8, -12, -12, -20},
    {-20, -8, 2, 6, 6, 2, -8, -20},
    {-8, 0, 16, 22, 22, 16, 0, -8},
    {-8, 0, 24, 32, 32, 24, 0, -8},
    {-8, 0, 16, 22, 22, 16, 0, -8},
    {-20, -8, 2, 6, 6, 2, -8, -20},
    {-20, -12, -12, -8, -8, -12, -12, -20},
};
// clang-format on
constexpr int KING_END_BY_PAWNS[9] = {8, 12, 16, 20, 24, 24, 24, 24, 24};
constexpr int KING_END_BY_UNITS[14] = {24, 16, 16, 24, 16, 16, 24, 16, 16, 16, 16, 16, 16, 16};

// Shelter squares are taken as if the king stood on b, g (files) and on the edge rank.
constexpr int FILE_SHIFT[8] = {1, 0, -1, 0, 0, 1, 0, -1};
constexpr int RANK_SHIFT[8] = {0, -16, 0, 0, 0, 0, 16, 0};
// By the storming pawn's rank counted from the defender's side.
constexpr int STORM_BY_RANK[8] = {0, 0, 0, 1, 3, 2, 1, 0};

constexpr int ATTACKER_SCALE[16] = {0,   16,  128, 192, 208, 224, 240, 256,
                                    272, 288, 304, 320, 336, 352, 368, 384};

// Whether the squares strictly between from and to are empty (to lies on a line from from).
bool pathEmpty(const Board& board, int from, int to) {
    const int step = direction[to - from];
    for (int square = from + step; square != to; square += step)
        if (!isEmpty(board, square)) return false;
    return true;
}

// The storm of the enemy pawns on each file: the pawns that threaten to open a file around side's king,
// from side's view (0 or negative). Only the files set in `files` are counted; the others stay 0.
template <int side>
void countStorm(const Board& board, unsigned files, int storm[8]) {
    constexpr int enemy = side ^ 1;
    constexpr int back = pawnStep(enemy);  // the enemy pawn's forward step
    forEachPiece(board, enemy, PAWN_SLOT, [&](int p) {
        const int file = fileOf(p);
        if (!((files >> file) & 1)) return;
        if (isEmpty(board, p - back) || isOccupied(board, p - back - 1) || isOccupied(board, p - back + 1))
            storm[file] -= STORM_BY_RANK[ownRank(side, p)];
    });
}

// The files whose storm the shelter of a king on the square reads: those beside its normalised file.
unsigned stormFiles(int king) {
    return 7u << (fileOf(king) + FILE_SHIFT[fileOf(king)] - 1);
}

// The pawn shelter for side's king as if it stood on king, in sixteenths of a point; storm holds the
// enemy pawns' storm by file (countStorm) for at least the files this square reads.
template <int side>
int evalKingShelter(const Board& board, const PawnEntry& entry, int king, const int storm[8]) {
    constexpr int enemy = side ^ 1;
    const int e = fileOf(king) < 4 ? -1 : 1;
    constexpr int fwd = pawnStep(side);
    const int file = fileOf(king);
    int points = 0;

    // Open files beside the king matter once the opponent has a rook or queen.
    const uint32_t enemyMaterial = board.material[enemy];
    if (rookCount(enemyMaterial) || queenCount(enemyMaterial)) {
        const uint8_t own = entry.block[side].pawnFreeFiles, theirs = entry.block[enemy].pawnFreeFiles;
        if (fileFree(own, file - e)) points -= 1;
        if (fileFree(own, file)) points -= 2;
        if (fileFree(own, file + e)) points -= 1;
        if (fileFree(theirs, file)) points -= 1;
        if (fileFree(theirs, file + e)) points -= 1;
    }

    // Normalise the square.
    const int k = king + FILE_SHIFT[file] + RANK_SHIFT[rankOf(king)];
    const int f = k + fwd;

    // Shelter pawns, and a bishop on the square in front.
    auto own = [&](int square) { return pawnAt(board, side, square); };
    if (own(f - e)) points += 4;
    if (own(k - e)) points += 2;
    if (own(f)) points += 7;
    if (own(k + 2 * fwd)) points += 3;
    if (codeAt(board, f) == (colourBit(side) | BISHOP_BIT)) points += 4;
    if (own(f + e))
        points += 5;
    else if (own(f + e + fwd))
        points += 5;

    // Enemy pawns storming the files around the king (the normalised file is never an edge).
    const int kf = fileOf(k);
    points += storm[kf - 1] + storm[kf] + storm[kf + 1];
    return points * 16;
}

// The king terms, one instance per colour so that the side-relative steps, ranks and slot tests fold to
// constants.
template <int side>
int attackOn(const Board& board) {
    constexpr int enemy = side ^ 1;
    const int king = board.kingSquare(side);
    int count = 0, weight = 0;

    // Whether the slider on from reaches the square target beside the king: an empty path and a square
    // no defending pawn covers. Along a file, a defending pawn just beyond the square, as the slider
    // looks, shuts the file too: it is the defender's own pawns that close a file, and "behind" is
    // taken along the slider's line so that the rule reads the same from whichever end it comes.
    auto reaches = [&](int from, int target) {
        if (!pathEmpty(board, from, target)) return false;
        const int behind = target - pawnStep(side);
        if (pawnAt(board, side, behind - 1) || pawnAt(board, side, behind + 1)) return false;
        return !(fileOf(from) == fileOf(target) && pawnAt(board, side, target + direction[target - from]));
    };
    // Movers of the kind (BISHOP_BIT or ROOK_BIT; queens have both) stacked behind the slider on from,
    // up to limit, on its line to the square it bears on; -1 when it does not reach that square.
    auto stacked = [&](const kingzone::Targets& targets, int from, uint8_t kind, int limit) {
        int target = -1;
        for (int i = 0; i < targets.count && target < 0; ++i)
            if (onBoard(king + targets.offset[i])) target = king + targets.offset[i];
        if (target < 0 || !reaches(from, target)) return -1;
        const int step = direction[from - target];  // away from the king, beyond the slider
        int n = 0, at = from;
        while (n < limit) {
            do at += step;
            while (onBoard(at) && isEmpty(board, at));
            const uint8_t code = onBoard(at) ? codeAt(board, at) : 0;
            if (!ownsPiece(code, enemy) || !(code & kind)) break;
            ++n;
        }
        return n;
    };

    forEachPiece(board, enemy, KNIGHT_SLOT, [&](int square) {
        if (kingzone::KNIGHT[square - king + 128]) ++count;
    });
    forEachPiece(board, enemy, BISHOP_SLOT, [&](int square) {
        const int behind = stacked(kingzone::BISHOP[side][square - king + 128], square, BISHOP_BIT, 1);
        if (behind >= 0) count += 1 + behind;
    });
    weight = count;
    forEachPiece(board, enemy, ROOK_SLOT, [&](int square) {
        const int behind = stacked(kingzone::ROOK[side][square - king + 128], square, ROOK_BIT, 2);
        if (behind < 0) return;
        count += 1 + behind;
        weight += 2 * (1 + behind);
    });
    forEachPiece(board, enemy, QUEEN_SLOT, [&](int square) {
        if (stacked(kingzone::QUEEN[side][square - king + 128], square, 0, 0) < 0) return;
        count += 1;
        weight += 4;
    });
    return weight * -12 * ATTACKER_SCALE[std::min(count, 15)] / 256;
}

template <int side>
int kingOf(const Board& board, const PawnEntry& entry) {
    constexpr int enemy = side ^ 1;
    const int king = board.kingSquare(side);
    const int u = static_cast<int>(board.material[enemy] & 255);

    if (u > 13) {
        // Safety: the attack, and the better of the present shelter and the one castling gives.
        const int attack = attackOn<side>(board);
        const bool canShort = board.castling & (WHITE_SHORT << side);
        const bool canLong = board.castling & (WHITE_LONG << side);
        // One walk over the enemy pawns serves the shelters of all the squares weighed.
        unsigned files = stormFiles(king);
        if (canShort) files |= stormFiles(king + 2);
        if (canLong) files |= stormFiles(king - 3);
        int storm[8] = {};
        countStorm<side>(board, files, storm);
        const int s0 = evalKingShelter<side>(board, entry, king, storm);
        int s1 = s0, s2 = s0;
        if (canShort) {
            int sK =
                evalKingShelter<side>(board, entry, king + 2, storm) - (isEmpty(board, king + 1) ? 24 : 36);
            if (!isEmpty(board, king + 2)) sK -= 12;
            s1 = std::max(s0, sK);
        }
        if (canLong) {
            int sQ =
                evalKingShelter<side>(board, entry, king - 3, storm) - (isEmpty(board, king - 1) ? 24 : 36);
            if (!isEmpty(board, king - 2)) sQ -= 12;
            if (!isEmpty(board, king - 3)) sQ -= 12;
            s2 = std::max(s0, sQ);
        }
        const int f = 256 - (s1 + s2) / 2;
        int mult = 256, add = 0;
        if (f > 256) {
            mult = 512;
            add = -128;
        } else if (f >= 0) {
            mult = f + 256;
            add = -(f / 2);
        }
        const int p = u > 28 ? 16 : u - 12;
        return (attack * mult / 256) * p / 16 + (add + lookup(KING_MIDDLEGAME, side, king)) * p / 16;
    }

    // The endgame: a central king, the more so the more pawns the opponent has.
    const int pawns = std::min(pawnCount(board.material[enemy]), 8);
    int value = lookup(KING_ENDGAME, side, king) * KING_END_BY_PAWNS[pawns] * KING_END_BY_UNITS[u] / 256;
    if (queenCount(board.material[enemy])) value /= 4;
    return value;
}

}  // namespace

int evalKingAttack(const Board& board, int side) {
    return side == WHITE ? attackOn<WHITE>(board) : attackOn<BLACK>(board);
}

int evalKing(const Board& board, const PawnEntry& entry, int side) {
    return side == WHITE ? kingOf<WHITE>(board, entry) : kingOf<BLACK>(board, entry);
}
