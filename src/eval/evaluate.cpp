#include "eval/evaluate.h"

#include <cstdlib>

#include "eval/evalboard.h"
#include "eval/evalcache.h"
#include "eval/imbalance.h"
#include "eval/king.h"
#include "eval/pawns.h"
#include "eval/pieces.h"

using namespace eval;

EvalCache evalCache;

namespace {

constexpr int TEMPO = 4;

// The position key ORs the keys of the castling rights together, so positions that differ only in
// their rights can share a key. The king term reads the rights, so they are folded into the key the
// cache compares; without rights (most positions) it is the position key itself.
uint64_t cacheKey(const Board& board) {
    return board.hash ^ (board.castling * 0x9E3779B97F4A7C15ull);
}

// Draws by material alone, for S from White's view.
const char* materialDraw(const Board& board, int s) {
    const uint32_t w = board.material[WHITE], b = board.material[BLACK];
    const int wu = static_cast<int>(w & 255), bu = static_cast<int>(b & 255);
    const int wn = pieceCount(w), bn = pieceCount(b);
    const bool queensAlike = (queenCount(w) > 0) == (queenCount(b) > 0);
    const bool whitePawns = pawnCount(w) > 0, blackPawns = pawnCount(b) > 0;
    if (whitePawns && !blackPawns)
        return s < 0 && bn < 3 && queensAlike && wn < 3 && bu - wu < 4 ? "pawns cannot win against the pieces"
                                                                       : nullptr;
    if (blackPawns && !whitePawns)
        return s > 0 && wn < 3 && queensAlike && bn < 3 && wu - bu < 4 ? "pawns cannot win against the pieces"
                                                                       : nullptr;
    if (whitePawns) return nullptr;
    if (wn < 3 && bn < 3 && queensAlike && std::abs(wu - bu) < 4) return "too little material to win";
    // Two minor pieces against a bare king: two knights, or two bishops of one colour.
    for (int side = WHITE; side <= BLACK; ++side) {
        const uint32_t own = board.material[side];
        if (board.material[side ^ 1] != 0 || (own & 255) != 6) continue;
        if (!bishopCount(own)) return "two knights cannot mate";
        if (!knightCount(own)) {
            int colours = 0;
            forEachPiece(board, side, BISHOP_SLOT, [&](int square) { colours |= 1 << squareColour(square); });
            if (colours != 3) return "bishops of one colour cannot mate";
        }
    }
    return nullptr;
}

// Rook pawns the defending king stops, for the stronger side: its pawns all on one rook file, at most
// a bishop beside them that does not cover the promotion corner, and the defending king in front of the
// pawns near the corner.
bool wrongRookPawn(const Board& board, const PawnEntry& entry, int strong) {
    const uint32_t material = board.material[strong];
    const int pieces = pieceCount(material);
    if (pieces > 1 || (pieces == 1 && bishopCount(material) != 1)) return false;
    const PawnBlock& block = entry.block[strong];
    const int corner = block.pawnFreeFiles == 0xFE ? 0 : block.pawnFreeFiles == 0x7F ? 7 : -1;
    // The defending king is measured against the first passed pawn, which with pawns on one rook file
    // is the front pawn. When that pawn is not passed, an enemy pawn stands ahead of it or beside it:
    // a capture may take the pawn off the rook file, so there is no draw to recognise.
    if (corner < 0 || block.passedCount == 0) return false;
    const int defender = board.kingSquare(strong ^ 1);
    if (std::abs(fileOf(defender) - corner) > 1 ||
        ownRank(strong, defender) < ownRank(strong, block.passed[0]))
        return false;
    if (pieces == 0) return true;
    int bishop = 0;
    forEachPiece(board, strong, BISHOP_SLOT, [&](int square) { bishop = square; });
    const int promotionCorner = makeSquare(corner, strong == WHITE ? 7 : 0);
    return squareColour(bishop) != squareColour(promotionCorner);
}

// The score for the side to move, uncached. storable is false for the rule draws, which are
// cheap to find again and are not cached.
int scorePosition(EvalContext& context, Board& board, EvalBreakdown* parts, bool& storable) {
    storable = false;
    const uint32_t w = board.material[WHITE], b = board.material[BLACK];

    // Material, imbalance and pawns.
    const int material =
        (pawnCount(w) + static_cast<int>(w & 255)) * 100 - (pawnCount(b) + static_cast<int>(b & 255)) * 100;
    const int imbalance = evalImbalance(board);
    const int pawns = pawnevaluator(context, board);
    const int s = material + imbalance + pawns;
    if (parts) {
        parts->material = material;
        parts->imbalance = imbalance;
        parts->pawns = pawns;
        parts->beforeDraws = s;
    }

    // Draws by material.
    if (const char* rule = materialDraw(board, s)) {
        if (parts) parts->rule = rule;
        return 0;
    }

    // Kings and pieces.
    const PawnEntry& entry = *context.pawnEntry;
    const int kingW = evalKing(board, entry, WHITE), kingB = evalKing(board, entry, BLACK);
    const int piecesW = evalPieces(board, entry, WHITE, context.pieceTerms[WHITE]);
    const int piecesB = evalPieces(board, entry, BLACK, context.pieceTerms[BLACK]);
    int t = s + kingW + piecesW - piecesB - kingB;
    if (parts) {
        parts->king[WHITE] = kingW;
        parts->king[BLACK] = kingB;
        parts->pieces[WHITE] = context.pieceTerms[WHITE];
        parts->pieces[BLACK] = context.pieceTerms[BLACK];
        parts->beforeEnding = t;
    }

    // Rook pawns the defending king stops.
    if ((t < 0 && wrongRookPawn(board, entry, BLACK)) || (t > 0 && wrongRookPawn(board, entry, WHITE))) {
        if (parts) parts->rule = "rook pawns with the defending king in front";
        return 0;
    }

    // Opposite bishops alone halve the score; the odd unit stays with the stronger side.
    if ((w & 255) == 3 && (b & 255) == 3 && bishopCount(w) && bishopCount(b)) {
        int whiteBishop = 0, blackBishop = 0;
        forEachPiece(board, WHITE, BISHOP_SLOT, [&](int square) { whiteBishop = square; });
        forEachPiece(board, BLACK, BISHOP_SLOT, [&](int square) { blackBishop = square; });
        if (squareColour(whiteBishop) != squareColour(blackBishop)) {
            t -= t / 2;
            if (parts) parts->rule = "bishops of opposite colour";
        }
    }

    // The side to move's view, with the tempo.
    storable = true;
    return (board.sideToMove == BLACK ? -t : t) + TEMPO;
}

}  // namespace

int evaluate(EvalContext& context, Board& board) {
    // Count the node and look in the cache; a hit still sets the pawn entry.
    ++context.nodes;
    int score;
    if (context.useCache && evalCache.probe(cacheKey(board), static_cast<int>(board.sideToMove), score)) {
        ++context.cacheHits;
        probePawnTable(context, board);
        return score;
    }
    bool storable;
    score = scorePosition(context, board, nullptr, storable);
    if (storable && context.useCache)
        evalCache.store(cacheKey(board), static_cast<int>(board.sideToMove), score);
    return score;
}

int explainEvaluation(EvalContext& context, Board& board, EvalBreakdown& parts) {
    parts = EvalBreakdown{};
    bool storable;
    parts.score = scorePosition(context, board, &parts, storable);
    return parts.score;
}
