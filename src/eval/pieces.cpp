#include "eval/pieces.h"

#include <algorithm>
#include <bit>

#include "eval/evalboard.h"

using namespace eval;

namespace {

// clang-format off
constexpr RankTable KNIGHT_TABLE = {
    {-40, -32, -24, -24, -24, -24, -32, -40},
    {-32, -24, -16, -8, -8, -16, -24, -32},
    {-16, -8, 0, 4, 4, 0, -8, -16},
    {-12, 0, 8, 16, 16, 8, 0, -12},
    {-4, 4, 16, 20, 20, 16, 4, -4},
    {-4, 4, 20, 24, 24, 20, 4, -4},
    {-16, -8, 0, 4, 4, 0, -8, -16},
    {-72, -32, -24, -24, -24, -24, -32, -72},
};
constexpr RankTable BISHOP_TABLE = {
    {-16, -14, -12, -12, -12, -12, -14, -16},
    {-8, 0, -2, 0, 0, -2, 0, -8},
    {-6, -2, 4, 2, 2, 4, -2, -6},
    {-4, 0, 2, 8, 8, 2, 0, -4},
    {-4, 0, 2, 8, 8, 2, 0, -4},
    {-6, -2, 4, 2, 2, 4, -2, -6},
    {-8, 0, -2, 0, 0, -2, 0, -8},
    {-12, -8, -6, -4, -4, -6, -8, -12},
};
constexpr RankTable KNIGHT_BEHIND_PAWN = {
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0, 6, 6, 6, 6, 6, 6, 0},
    {8, 16, 20, 24, 24, 20, 16, 8},
    {24, 32, 32, 32, 32, 32, 32, 24},
    {0, 4, 8, 8, 8, 8, 4, 0},
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0, 0, 0, 0, 0, 0, 0, 0},
};
constexpr RankTable KNIGHT_ADVANCED = {
    {-32, -32, -32, -32, -32, -32, -32, -32},
    {-20, -16, -12, -8, -8, -12, -16, -20},
    {-16, -16, -16, -8, -8, -16, -16, -16},
    {-8, -8, -8, -12, -12, -8, -8, -8},
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0, 0, 0, 0, 0, 0, 0, 0},
};
// clang-format on
constexpr int KNIGHT_EMPTY[9] = {-24, -8, 0, 4, 8, 11, 14, 17, 21};
constexpr int KNIGHT_THREAT[9] = {0, 6, 12, 18, 24, 24, 24, 24, 24};
constexpr int BISHOP_RAY[16] = {-24, -16, -12, -8, -4, 0, 4, 8, 12, 14, 16, 18, 20, 22, 24, 26};
constexpr int BISHOP_THREAT[5] = {0, 6, 12, 12, 12};
constexpr int ROOK_RAY[16] = {-12, -6, -5, -4, -3, 3, 5, 8, 12, 13, 14, 15, 16, 18, 20, 22};
constexpr int ROOK_THREAT[5] = {0, 4, 20, 28, 8};
constexpr int ROOK_OPEN[9] = {0, 32, 32, 32, 20, 8, -2, -2, -2};
constexpr int ROOK_HALF_OPEN[9] = {0, 7, 12, 11, 9, 8, 8, 8, 8};
constexpr int BACK_RANK[8] = {0, 5, 10, 15, 30, 30, 30, 30};

constexpr int TRAPPED = -100;
constexpr int SHUT_IN_ROOK = -50;

// Absolute squares of White's trap patterns; Black's are the same with the ranks mirrored.
constexpr int sq(int file, int rank) {
    return makeSquare(file, rank);
}

// One instance per colour, so that the side-relative steps, ranks and slot tests fold to constants.
template <int side>
int piecesOf(const Board& board, const PawnEntry& entry, PieceTerms& terms) {
    constexpr int enemy = side ^ 1;
    constexpr int dir = pawnStep(side);
    const int enemyKing = board.kingSquare(enemy);
    constexpr uint8_t ownBit = colourBit(side);
    // White's pattern squares mirrored for Black.
    auto rel = [&](int square) { return side == WHITE ? square : flipSquare(square); };
    auto own = [&](int square) { return pawnAt(board, side, square); };
    auto theirs = [&](int square) { return pawnAt(board, enemy, square); };
    // An enemy piece, unless it is a pawn that another enemy pawn defends.
    auto threatTarget = [&](int square) {
        const uint8_t slot = board.at(square);
        if (!isColour(slot, colourBase(enemy))) return false;
        if (!isPawnSlot(slot)) return true;
        const int behind = square - pawnStep(enemy);
        return !theirs(behind - 1) && !theirs(behind + 1);
    };
    // The trap patterns below only match a piece on an edge file of the opponent's two back ranks;
    // testing that first spares the patterns for nearly every piece.
    auto nearCorner = [&](int square) {
        return ownRank(side, square) >= 6 && (fileOf(square) == 0 || fileOf(square) == 7);
    };
    int m = 0, p = 0, q = 0;

    // Knights: placement and empty targets scale with the own pawns; threats and outposts do not.
    forEachPiece(board, side, KNIGHT_SLOT, [&](int s) {
        int empty = 0, threats = 0;
        // Unrolled, each step gets branches of its own, which predict better.
#pragma GCC unroll 8
        for (int step : KNIGHT_STEPS) {
            // Counted without branching on the square: which steps are empty is unpredictable.
            empty += isEmpty(board, s + step);
            threats += threatTarget(s + step);  // never an empty square
        }
        q += lookup(KNIGHT_TABLE, side, s) + KNIGHT_EMPTY[empty];
        m += KNIGHT_THREAT[threats];
        if (own(s - dir - 1) || own(s - dir + 1)) m += 4;
        if (own(s + dir)) p += lookup(KNIGHT_BEHIND_PAWN, side, s);
        if (theirs(s + 3 * dir)) p += lookup(KNIGHT_ADVANCED, side, s);

        // Trapped in a corner by pawns of either colour.
        if (!nearCorner(s)) return;
        auto pawn = [&](int file, int rank) { return anyPawnAt(board, rel(sq(file, rank))); };
        for (int edge : {0, 7}) {
            const int in = edge == 0 ? 1 : -1;  // one file toward the centre
            const bool trapped =
                (s == rel(sq(edge, 7)) && pawn(edge + 2 * in, 6)) ||
                (s == rel(sq(edge, 6)) &&
                 (pawn(edge, 5) ? (pawn(edge + in, 6) || pawn(edge + 2 * in, 5)) : pawn(edge + 2 * in, 5)));
            if (trapped) p += TRAPPED;
        }
    });
    q = pawnCount(board.material[side]) * q / 8;

    // Bishops: the empty squares of the four diagonals, the first pieces they meet.
    forEachPiece(board, side, BISHOP_SLOT, [&](int s) {
        int empty = 0, threats = 0;
        // Unrolled, each direction's scan gets a branch of its own, which predicts better.
#pragma GCC unroll 4
        for (int step : DIAGONAL_STEPS) {
            int t = s + step;
            for (; isEmpty(board, t); t += step) ++empty;
            if (threatTarget(t)) ++threats;
        }
        q += lookup(BISHOP_TABLE, side, s) + BISHOP_RAY[std::min(empty, 15)];
        m += BISHOP_THREAT[threats];
        if (!nearCorner(s)) return;
        for (int edge : {0, 7}) {
            const int in = edge == 0 ? 1 : -1;
            if ((s == rel(sq(edge, 6)) && anyPawnAt(board, rel(sq(edge + in, 5)))) ||
                (s == rel(sq(edge, 7)) && anyPawnAt(board, rel(sq(edge + 2 * in, 5)))))
                p += TRAPPED;
        }
    });

    // Rooks: mobility, threats, open and half-open files near the enemy king, the seventh rank.
    const uint8_t ownFree = entry.block[side].pawnFreeFiles;
    const uint8_t bothFree = ownFree & entry.block[enemy].pawnFreeFiles;
    const bool enemyKingOnBackRank = ownRank(side, enemyKing) == 7;
    const uint32_t ownUnits = board.material[side] & 255;
    int backRank = 0;
    forEachPiece(board, side, ROOK_SLOT, [&](int s) {
        int empty = 0, threats = 0;
        // Unrolled, each direction's scan gets a branch of its own, which predicts better.
#pragma GCC unroll 4
        for (int step : STRAIGHT_STEPS) {
            int t = s + step;
            for (; isEmpty(board, t); t += step) ++empty;
            if (threatTarget(t)) ++threats;
        }
        q += ROOK_RAY[std::min(empty, 15)];
        m += ROOK_THREAT[threats];
        const int file = fileOf(s);
        if ((ownFree >> file) & 1) {
            if ((bothFree >> file) & 1)
                p += ROOK_OPEN[std::popcount(bothFree)];
            else
                p += ROOK_HALF_OPEN[std::popcount(ownFree)];
            const int kingFiles = std::abs(file - fileOf(enemyKing));
            if (kingFiles < 3) p += static_cast<int>((kingFiles == 0 ? 20u : 10u) * ownUnits / 32u);
        }
        if (ownRank(side, s) >= 6 && enemyKingOnBackRank) backRank += 2;
    });

    // Queens: near the enemy king, and on the seventh against a king on its back rank.
    forEachPiece(board, side, QUEEN_SLOT, [&](int s) {
        q += 8 - 2 * distance(s, enemyKing);
        if (ownRank(side, s) == 6 && enemyKingOnBackRank) backRank += 2;
    });

    // A rook shut in by its own king, on either edge rank whatever the king's colour.
    const int king = board.kingSquare(side);
    const int kingRank = rankOf(king), kingFile = fileOf(king);
    if (kingRank == 0 || kingRank == 7) {
        const uint8_t rook = ownBit | ROOK_BIT;
        auto rookOn = [&](int square) { return codeAt(board, square) == rook; };
        auto shut = [&](int toward) {
            return rookOn(king + toward) || rookOn(king + 2 * toward) || rookOn(king + toward + dir) ||
                   rookOn(king + 2 * toward + dir);
        };
        auto pawnsOn = [&](int fileA, int fileB) {
            return !fileFree(ownFree, fileA) && !fileFree(ownFree, fileB);
        };
        if ((kingFile == 5 || kingFile == 6) && pawnsOn(6, 7) && shut(1))
            p += SHUT_IN_ROOK;
        else if ((kingFile == 1 || kingFile == 2) && pawnsOn(0, 1) && shut(-1))
            p += SHUT_IN_ROOK;
    }

    p += 2 * BACK_RANK[std::min(backRank, 7)];
    terms = {m, p, q};
    return m + p + q;
}

}  // namespace

int evalPieces(const Board& board, const PawnEntry& entry, int side, PieceTerms& terms) {
    return side == WHITE ? piecesOf<WHITE>(board, entry, terms) : piecesOf<BLACK>(board, entry, terms);
}
