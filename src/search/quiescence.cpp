// The quiescence search: captures (and at its first two levels quiet checks) until the position is
// quiet, so that the static evaluation is only ever asked about quiet positions.
#include <algorithm>

#include "board/makemove.h"
#include "board/movegen.h"
#include "board/tables.h"
#include "eval/egbb.h"
#include "eval/evaluate.h"
#include "search/drawrules.h"
#include "search/movesearch.h"
#include "search/node.h"
#include "search/parallel.h"
#include "search/picker.h"
#include "search/searchthread.h"
#include "search/tt.h"

namespace {

constexpr int QUIESCENCE_PLY_LIMIT = 119;
// Margin of the delta pruning of captures at null-window nodes.
constexpr int DELTA_MARGIN = 250;

// A side with only king and pawns may have no move at all: stalemate, which the captures-only search
// below would never notice.
bool pawnSideCanMove(const Board& board, int side) {
    const int base = colourBase(side);
    const int step = pawnStep(side);
    for (int slot = base + PAWN_SLOT; board.pieceSquare[slot] != NO_SQUARE; ++slot) {
        const int square = board.pieceSquare[slot];
        if (!onBoard(square)) continue;
        if (board.at(square + step) == EMPTY) return true;
        for (int target : {square + step - 1, square + step + 1}) {
            const uint8_t victim = board.at(target);
            if (victim != EMPTY && victim != OFF_BOARD && colourOfSlot(victim) != side) return true;
        }
    }
    const int king = board.kingSquare(side);
    for (int step2 : KING_STEPS) {
        const int target = king + step2;
        if (!onBoard(target)) continue;
        const uint8_t occupant = board.at(target);
        if (occupant != EMPTY && colourOfSlot(occupant) == side) continue;
        if (!isAttacked(board, side ^ 1, target)) return true;
    }
    return false;
}

}  // namespace

int quiescence(SearchThread& thread, int ply, int alpha, int beta, int qdepth, Move lastMove) {
    Board& board = thread.board;
    SearchStats& stats = thread.stats;

    // Stop, count the node, watch the clock and end the line here.
    if (thread.stop.load(std::memory_order_relaxed)) return 0;
    thread.seldepth = std::max(thread.seldepth, ply);
    stats.qnodes.add();
    if (clockRanOut(stats.qnodes.get())) {
        stopAllThreads();
        return 0;
    }
    thread.pv[ply][0] = NO_MOVE;

    // The draw rules.
    if (!isCapture(lastMove)) {
        if (const Move back = reversalDraw(board, ply, beta, lastMove)) {
            setLine(thread, ply, back);
            return DRAW;
        }
    }
    if (fiftyMoveDraw(board) || insufficientMaterial(board) || repetitionDraw(board, ply)) return DRAW;

    const bool inCheck = givesCheck(lastMove);
    const int side = static_cast<int>(board.sideToMove);
    const uint32_t ownMaterial = board.material[side];

    // Stalemate of a side with king and pawns only.
    if (!inCheck && pieceCount(ownMaterial) == 0 && !pawnSideCanMove(board, side)) return DRAW;

    // Mate-distance pruning at null-window nodes.
    const bool nullWindow = beta == alpha + 1;
    if (nullWindow) {
        if (const int bound = mateDistanceBound(ply, alpha, beta, inCheck)) return bound;
    }

    // The line arrays end here.
    if (ply > QUIESCENCE_PLY_LIMIT) return evaluate(thread.eval, board);

    // Transposition table, at the depth this level stores with.
    const int depth = qdepth - 4;
    Move hashMove = NO_MOVE;
    stats.ttProbes.add();
    TtEntry entry;
    if (tt.probe(board, entry)) {
        stats.ttHits.add();
        const int score = scoreFromTt(entry.score, ply);
        if (nullWindow && settlesNode(entry, score, depth, alpha, beta)) {
            stats.ttCuts.add();
            setLine(thread, ply, entry.move);
            return score;
        }
        hashMove = plainMove(entry.move);
        // The hash move sorts first: its child's entry loads during the evaluation below.
        if (hashMove != NO_MOVE) tt.prefetchAfter(board, hashMove);
    }

    int best = -MATE;
    int childQdepth;
    const int alphaOnEntry = alpha;
    int delta = 0;
    bool withChecks = false;

    if (inCheck) {
        // In check every evasion is searched; there is no standing pat. The replies keep this
        // level's depth: a check met at the horizon leaves the position as unsettled as it found it.
        childQdepth = qdepth;
    } else {
        // Stand pat, or the bitbases' verdict.
        if (beta <= -(MATE - 1000)) return -(MATE - 1000);
        int e = 0;
        if (alpha < MATE - 1000) {
            const int men = pieceCount(board.material[WHITE]) + pieceCount(board.material[BLACK]) +
                            pawnCount(board.material[WHITE]) + pawnCount(board.material[BLACK]);
            int s;
            if (men <= egbb.maxMen() - 3 && board.epSquare == 0 && egbb.probe(board, s)) return s;
            e = evaluate(thread.eval, board);
            if (e >= beta) return e;
            best = e;
            alpha = std::max(alpha, e);
        } else {
            best = MATE - 1000;
        }
        const bool piecesBothSides =
            pieceCount(board.material[WHITE]) > 0 && pieceCount(board.material[BLACK]) > 0;
        delta = nullWindow && piecesBothSides ? alpha - e - DELTA_MARGIN : 0;
        childQdepth = qdepth / 4;
        withChecks = qdepth > 0;
    }
    Picker picker =
        inCheck ? Picker::evasions(board) : Picker::quiescence(board, hashMove, delta, withChecks);
    // Below the first level, a forced reply keeps the checking sequence alive; a wide choice of
    // replies ends it.
    if (inCheck && qdepth < 4) {
        if (picker.evasionCount() == 1 && qdepth == 0) childQdepth = 1;
        if (picker.evasionCount() > 3) childQdepth = 0;
    }

    // The moves.
    const int kingSquare = board.kingSquare(side);
    int searched = 0;
    while (Move* batch = picker.next()) {
        for (Move* cursor = batch; cursor < picker.end; ++cursor) {
            const Move move = *cursor;
            if (move == NO_MOVE) continue;
            // The next move's table entry loads while this one is searched; the picker asked for the
            // captures' entries already.
            if (picker.stage != PICK_QUIESCENCE_CAPTURES && cursor + 1 < picker.end && cursor[1] != NO_MOVE)
                tt.prefetchAfter(board, cursor[1]);
            if (exposesKing(board, kingSquare, moveFrom(move), moveTo(move))) continue;
            thread.eval.pawnHash.prefetchAfter(board, move);
            const SavedState saved = saveState(board);
            const Move made = makeMove(board, move);
            if (made == NO_MOVE) continue;
            tt.prefetch(board);
            int v;
            if ((inCheck && searched == 0) || beta <= alpha + 1) {
                v = -quiescence(thread, ply + 1, -beta, -alpha, childQdepth, made);
            } else {
                v = -quiescence(thread, ply + 1, -alpha - 1, -alpha, childQdepth, made);
                if (v > alpha && !thread.stop.load(std::memory_order_relaxed))
                    v = -quiescence(thread, ply + 1, -beta, -alpha, childQdepth, made);
            }
            takeBack(board, made, saved);
            if (thread.stop.load(std::memory_order_relaxed)) return 0;
            ++searched;
            if (v >= beta) {
                storeEntry(thread, ply, move, v, depth, TT_LOWER);
                if (v >= MATE_BOUND) thread.mateKiller[ply] = plainMove(move);
                if (isQuiet(move) && !inCheck) updateKillers(thread, ply, move);
                setLine(thread, ply, made);
                return v;
            }
            raiseBest(thread, ply, made, v, best, alpha);
        }
    }

    // Mate when in check without an evasion; else the best score, exact when it rose above alpha.
    if (inCheck && searched == 0) return ply - MATE;
    storeEntry(thread, ply, plainMove(thread.pv[ply][0]), best, depth,
               best > alphaOnEntry ? TT_EXACT : TT_UPPER);
    return best;
}
