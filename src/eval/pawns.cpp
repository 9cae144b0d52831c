#include "eval/pawns.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "board/see.h"
#include "eval/evalboard.h"

using namespace eval;

namespace {

// Square tables by own rank (row 0 = own first rank), files a..h.
// clang-format off
constexpr RankTable PAWN_MG = {
    {0, 0, 0, 0, 0, 0, 0, 0},
    {-12, -4, 0, 8, 8, 0, -4, -12},
    {-12, -4, 0, 16, 16, 0, -4, -12},
    {-12, -4, 8, 24, 24, 8, -4, -12},
    {-12, -4, 4, 8, 8, 4, -4, -12},
    {-12, -4, 4, 8, 8, 4, -4, -12},
    {-12, -4, 0, 0, 0, 0, -4, -12},
    {0, 0, 0, 0, 0, 0, 0, 0},
};
constexpr RankTable PAWN_EG = {
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0, 0, -4, 0, 0, -4, 0, 0},
    {0, 0, -4, 4, 4, -4, 0, 0},
    {8, 8, 4, 2, 2, 4, 8, 8},
    {16, 14, 12, 6, 6, 12, 14, 16},
    {20, 18, 18, 18, 18, 18, 18, 20},
    {20, 18, 18, 18, 18, 18, 18, 20},
    {0, 0, 0, 0, 0, 0, 0, 0},
};
constexpr RankTable PROTECTED_MG = {
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0, 0, 0, 4, 4, 0, 0, 0},
    {0, 10, 16, 20, 20, 16, 10, 0},
    {4, 16, 24, 32, 32, 24, 16, 4},
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0, 0, 0, 0, 0, 0, 0, 0},
};
constexpr RankTable DOUBLED_MG = {
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0, 0, 0, 0, 0, 0, 0, 0},
    {-35, -5, 0, -20, -20, 0, -5, -35},
    {-25, 0, -5, -5, -5, -5, 0, -25},
    {-20, -5, -5, -5, -5, -5, -5, -20},
    {-15, -5, -5, -5, -5, -5, -5, -15},
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0, 0, 0, 0, 0, 0, 0, 0},
};
constexpr RankTable DOUBLED_EG = {
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0, 0, 0, 0, 0, 0, 0, 0},
    {-35, -25, -25, -25, -25, -25, -25, -35},
    {-30, -20, -20, -20, -20, -20, -20, -30},
    {-25, -15, -15, -15, -15, -15, -15, -25},
    {-20, -10, -10, -10, -10, -10, -10, -20},
    {-25, -25, -25, -25, -25, -25, -25, -25},
    {0, 0, 0, 0, 0, 0, 0, 0},
};
constexpr RankTable PASSED_MG = {
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0, 0, 0, 0, 0, 0, 0, 0},
    {20, 18, 14, 12, 12, 14, 18, 20},
    {36, 32, 28, 28, 28, 28, 32, 36},
    {64, 48, 44, 44, 44, 44, 48, 64},
    {90, 90, 90, 90, 90, 90, 90, 90},
    {0, 0, 0, 0, 0, 0, 0, 0},
};
constexpr RankTable PASSED_EG = {
    {0, 0, 0, 0, 0, 0, 0, 0},
    {4, 2, 0, 0, 0, 0, 2, 4},
    {4, 2, 0, 0, 0, 0, 2, 4},
    {20, 18, 16, 14, 14, 16, 18, 20},
    {48, 44, 40, 36, 36, 40, 44, 48},
    {100, 100, 88, 76, 76, 88, 100, 100},
    {144, 134, 112, 110, 110, 112, 134, 144},
    {0, 0, 0, 0, 0, 0, 0, 0},
};
constexpr RankTable ISOLATED_MG = {
    {0, 0, 0, 0, 0, 0, 0, 0},
    {-10, -10, -10, -10, -10, -10, -10, -10},
    {-10, -10, -10, -10, -10, -10, -10, -10},
    {-10, -10, -10, -10, -10, -10, -10, -10},
    {-10, -10, -10, -10, -10, -10, -10, -10},
    {-10, -10, -10, -10, -10, -10, -10, -10},
    {-10, -10, -10, -10, -10, -10, -10, -10},
    {0, 0, 0, 0, 0, 0, 0, 0},
};
// clang-format on
constexpr const RankTable& ISOLATED_EG = ISOLATED_MG;
// clang-format off
constexpr RankTable BACKWARD_MG = {
    {0, 0, 0, 0, 0, 0, 0, 0},
    {-10, -10, -10, -12, -12, -10, -10, -10},
    {-10, -10, -10, -12, -12, -10, -10, -10},
    {-12, -12, -12, -12, -12, -12, -12, -12},
    {-16, -16, -16, -16, -16, -16, -16, -16},
    {-20, -20, -20, -20, -20, -20, -20, -20},
    {-10, -10, -10, -10, -10, -10, -10, -10},
    {0, 0, 0, 0, 0, 0, 0, 0},
};
constexpr RankTable BACKWARD_EG = {
    {0, 0, 0, 0, 0, 0, 0, 0},
    {-20, -20, -20, -20, -20, -20, -20, -20},
    {-20, -20, -20, -20, -20, -20, -20, -20},
    {-20, -20, -20, -20, -20, -20, -20, -20},
    {-15, -15, -15, -15, -15, -15, -15, -15},
    {-10, -10, -10, -10, -10, -10, -10, -10},
    {-10, -10, -10, -10, -10, -10, -10, -10},
    {0, 0, 0, 0, 0, 0, 0, 0},
};
// clang-format on

// By the pawn's own rank index (0 = own first rank).
constexpr int PASSED_DUO_MG[8] = {0, 0, 0, 8, 25, 35, 70, 0};  // halved when applied
constexpr int PASSED_DUO_EG[8] = {0, 0, 0, 16, 50, 110, 200, 0};
constexpr int PASSED_PROT_MG[8] = {0, 0, 0, 0, 6, 12, 24, 0};
constexpr int PASSED_PROT_EG[8] = {0, 0, 0, 0, 12, 24, 48, 0};
constexpr int PASSED_FREE[8] = {0, 0, 0, 2, 4, 16, 25, 0};
constexpr int KING_FAR_BONUS[8] = {0, 0, 0, 4, 12, 24, 40, 40};
constexpr int KING_NEAR_BONUS[8] = {0, 0, 0, 2, 6, 12, 20, 20};
constexpr int ROOK_BEHIND[8] = {0, 0, 0, 10, 15, 20, 25, 0};
// A passed pawn the enemy king cannot catch in a pawn ending (endgame only). On the seventh rank the
// king-distance terms above already decide it.
constexpr int UNCATCHABLE[8] = {0, 0, 0, 0, 45, 72, 0, 0};
// Per own pawn standing on the colour of an own bishop.
constexpr int BISHOP_OWN_PAWN = -3;

// Whether a pawn of colour stands on from + step, from + 2 step, ... up to the edge.
bool pawnOnLine(const Board& board, int colour, int from, int step) {
    for (int square = from + step; onBoard(square); square += step)
        if (pawnAt(board, colour, square)) return true;
    return false;
}

// The same for a pawn of either colour.
bool anyPawnOnLine(const Board& board, int from, int step) {
    for (int square = from + step; onBoard(square); square += step)
        if (anyPawnAt(board, square)) return true;
    return false;
}

// One instance per colour, so that the side-relative steps, ranks and slot tests fold to constants.
template <int side>
void pawnSideOf(const Board& board, PawnBlock& block, int& mg, int& eg) {
    constexpr int enemy = side ^ 1;
    constexpr int dir = pawnStep(side);
    block = PawnBlock{};
    block.pawnFreeFiles = 0xFF;
    forEachPiece(board, side, PAWN_SLOT, [&](int s) {
        block.pawnFreeFiles &= static_cast<uint8_t>(~(1 << fileOf(s)));
        if (squareColour(s))
            block.colourCounts += 0x01;  // light
        else
            block.colourCounts += 0x10;
    });
    forEachPiece(board, side, PAWN_SLOT, [&](int s) {
        const int r = ownRank(side, s);
        const int file = fileOf(s);
        auto own = [&](int square) { return pawnAt(board, side, square); };
        auto theirs = [&](int square) { return pawnAt(board, enemy, square); };

        // Flags.
        const bool isProtected = own(s - dir - 1) || own(s - dir + 1);
        const bool duo = own(s - 1) || own(s + 1);
        const bool openAhead = !anyPawnOnLine(board, s, dir);
        const bool noEnemyBeside =
            !pawnOnLine(board, enemy, s - 1, dir) && !pawnOnLine(board, enemy, s + 1, dir);

        // Placement.
        mg += lookup(PAWN_MG, side, s);
        eg += lookup(PAWN_EG, side, s);
        if (isProtected) mg += lookup(PROTECTED_MG, side, s);

        // Doubled: a protected one is done here; one with a pawn ahead is not passed.
        bool mayBePassed = openAhead && noEnemyBeside;
        if (anyPawnOnLine(board, s, -dir)) {
            mg += lookup(DOUBLED_MG, side, s);
            eg += lookup(DOUBLED_EG, side, s);
            if (isProtected) {
                mg += 20;
                eg += 20;
                return;
            }
            if (openAhead) mg -= 10;
        }

        // Passed.
        if (mayBePassed) {
            block.passedFiles |= static_cast<uint8_t>(1 << file);
            mg += lookup(PASSED_MG, side, s);
            eg += lookup(PASSED_EG, side, s);
            if (duo) {
                mg += PASSED_DUO_MG[r] / 2;
                eg += PASSED_DUO_EG[r] / 2;
            }
            if (isProtected) {
                mg += PASSED_PROT_MG[r];
                eg += PASSED_PROT_EG[r];
            }
            if (block.passedCount < 8) block.passed[block.passedCount++] = static_cast<uint8_t>(s);
        }

        // Isolated, and then not tested for backwardness.
        auto noOwnPawnOn = [&](int f) { return f < 0 || f > 7 || ((block.pawnFreeFiles >> f) & 1); };
        if (noOwnPawnOn(file - 1) && noOwnPawnOn(file + 1)) {
            mg += lookup(ISOLATED_MG, side, s) - 10;
            eg += lookup(ISOLATED_EG, side, s);
            if (openAhead) {
                mg -= 24;
                eg -= 10;
            }
            return;
        }

        // Backward, unless protected or one of the ways out below holds.
        if (isProtected) return;
        auto count = [&](bool a, bool b) { return static_cast<int>(a) + static_cast<int>(b); };
        const bool advances =
            !anyPawnAt(board, s + dir) &&
            count(own(s - 1), own(s + 1)) > count(theirs(s + 2 * dir - 1), theirs(s + 2 * dir + 1));
        const bool doubleStep = r == 1 && !anyPawnAt(board, s + dir) && !anyPawnAt(board, s + 2 * dir) &&
                                count(own(s + dir - 1), own(s + dir + 1)) >
                                    count(theirs(s + 3 * dir - 1), theirs(s + 3 * dir + 1));
        const bool supportLeft = !anyPawnAt(board, s - dir - 1) && !theirs(s - 2) && own(s - 2 * dir - 1);
        const bool supportRight = !anyPawnAt(board, s - dir + 1) && !theirs(s + 2) && own(s - 2 * dir + 1);
        if (advances || doubleStep || supportLeft || supportRight) return;
        mg += lookup(BACKWARD_MG, side, s);
        eg += lookup(BACKWARD_EG, side, s);
        if (openAhead) {
            mg -= 24;
            eg -= 4;
        }
    });
}

}  // namespace

void evalPawnSide(const Board& board, int side, PawnBlock& block, int& mg, int& eg) {
    if (side == WHITE)
        pawnSideOf<WHITE>(board, block, mg, eg);
    else
        pawnSideOf<BLACK>(board, block, mg, eg);
}

int evalPassedDynamic(Board& board, const PawnBlock& block, int side) {
    const int dir = pawnStep(side);
    const int ownKing = board.kingSquare(side);
    const int enemyKing = board.kingSquare(side ^ 1);
    int value = 0;
    for (int i = 0; i < block.passedCount; ++i) {
        const int p = block.passed[i];
        // An entry of another structure that shares the full key would list squares without our pawn.
        if (!pawnAt(board, side, p)) continue;
        const int f = p + dir;
        const int r = ownRank(side, p);

        // The square in front: blocked (twice over unless by a rook or queen), or free and safe.
        if (isOccupied(board, f)) {
            value -= PASSED_FREE[r];
            if (!(codeAt(board, f) & ROOK_BIT)) value -= PASSED_FREE[r];
        } else {
            const Move advance = makeMoveWord(p, f, 0, r == 6 ? promotionFlag(QUEEN) : 0);
            if (see(board, side, advance) >= 0) value += PASSED_FREE[r];
        }

        // The kings' distances to the square in front.
        value += distance(enemyKing, f) * KING_FAR_BONUS[r] - distance(ownKing, f) * KING_NEAR_BONUS[r];

        // A rook or queen behind the pawn on its file.
        int behind = p - dir;
        while (onBoard(behind) && isEmpty(board, behind)) behind -= dir;
        if (onBoard(behind) && (codeAt(board, behind) & ROOK_BIT)) {
            value += ownsPiece(codeAt(board, behind), side) ? ROOK_BEHIND[r] : -ROOK_BEHIND[r];
        }
    }
    return value;
}

int pawnPieceTerm(const Board& board, const PawnEntry& entry, int side, int phase) {
    const PawnBlock& block = entry.block[side];
    const uint32_t material = board.material[side];
    int value = 0;

    // Own pawns fixed on the colour of an own bishop hem it in.
    if (bishopCount(material)) {
        int bishops = 0;
        forEachPiece(board, side, BISHOP_SLOT, [&](int square) {
            const int sameColour =
                squareColour(square) ? (block.colourCounts & 15) : (block.colourCounts >> 4);
            value += BISHOP_OWN_PAWN * sameColour;
            ++bishops;
        });
        if (!bishops) {  // the material word counts a bishop that the piece list does not hold
            std::fprintf(stderr, "pawnevaluator(): not reached!\n");
            std::abort();
        }
    }

    // The rule of the square in a pawn ending of the opponent: a passed pawn the enemy king cannot
    // reach before it queens, with nothing of its own in its way.
    const int enemy = side ^ 1;
    if ((board.material[enemy] & 255) == 0) {
        const int enemyKing = board.kingSquare(enemy);
        const int tempo = board.sideToMove == static_cast<uint32_t>(enemy) ? 1 : 0;
        int endgame = 0;
        for (int i = 0; i < block.passedCount; ++i) {
            const int p = block.passed[i];
            const int r = ownRank(side, p);
            if (!UNCATCHABLE[r] || !pawnAt(board, side, p)) continue;
            const int queening = makeSquare(fileOf(p), side == WHITE ? 7 : 0);
            int path = p + pawnStep(side);
            while (path != queening && isEmpty(board, path)) path += pawnStep(side);
            if (path != queening || !isEmpty(board, queening)) continue;
            if (distance(enemyKing, queening) - tempo > 7 - r) endgame += UNCATCHABLE[r];
        }
        value += endgame * (64 - phase) / 64;
    }
    return value;
}

PawnEntry& probePawnTable(EvalContext& context, const Board& board) {
    PawnEntry& entry = context.pawnHash.slot(board.pawnHash);
    const uint32_t check = highHalf(board.pawnHash);
    if (entry.check != check) {
        entry.check = check;
        ++context.pawnStores;
        int mg[2] = {0, 0}, eg[2] = {0, 0};
        for (int side = WHITE; side <= BLACK; ++side)
            evalPawnSide(board, side, entry.block[side], mg[side], eg[side]);
        entry.middlegame = static_cast<int16_t>(mg[WHITE] - mg[BLACK]);
        entry.endgame = static_cast<int16_t>(eg[WHITE] - eg[BLACK]);
    } else {
        ++context.pawnHits;
    }
    context.pawnEntry = &entry;
    return entry;
}

int pawnevaluator(EvalContext& context, Board& board) {
    // The structure's entry.
    const PawnEntry& entry = probePawnTable(context, board);

    // Phase: 64 units are the full starting set of pieces.
    const int phase =
        std::min(static_cast<int>((board.material[WHITE] & 255) + (board.material[BLACK] & 255)), 64);

    // Passed pawns against kings and pieces.
    const int dW = evalPassedDynamic(board, entry.block[WHITE], WHITE);
    const int dB = evalPassedDynamic(board, entry.block[BLACK], BLACK);

    // Blend; the dynamic term counts half in the middlegame.
    const int blended =
        ((dW / 2 + entry.middlegame - dB / 2) * phase + (dW + entry.endgame - dB) * (64 - phase)) / 64;
    return blended + pawnPieceTerm(board, entry, WHITE, phase) - pawnPieceTerm(board, entry, BLACK, phase);
}
