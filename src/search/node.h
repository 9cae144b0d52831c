// What every node of the tree search and of the quiescence search does alike: store to and cut off
// from the table, bound by mate distance, watch the clock, keep the killers and the line arrays, and
// ask the pawn table about passed pawns.
#pragma once

#include <algorithm>

#include "eval/evaluate.h"
#include "search/searchthread.h"
#include "search/timecontrol.h"
#include "search/tt.h"

// An off-board square: no null-move threat known.
constexpr int NO_THREAT = 8;

// Stores the node's result; a mate score goes in as a distance from this position, not from the root.
inline void storeEntry(SearchThread& thread, int ply, Move move, int score, int depth, int type) {
    TtEntry entry{};
    entry.move = move;
    entry.score = static_cast<int16_t>(scoreToTt(score, ply));
    entry.depth = static_cast<int16_t>(depth);
    entry.type = static_cast<uint8_t>(type);
    tt.store(thread.stats, thread.board, entry);
}

// Whether a table entry (its score already relative to the node) settles the node without a search:
// deep enough, with a bound on the side of the window it claims; or shallower, but knowing that the
// game is won or lost.
inline bool settlesNode(const TtEntry& entry, int score, int depth, int alpha, int beta) {
    if (entry.depth >= depth)
        return entry.type == TT_EXACT || (entry.type == TT_LOWER && score >= beta) ||
               (entry.type == TT_UPPER && score <= alpha);
    return (score >= WON_BOUND && entry.type != TT_UPPER && score >= beta) ||
           (score <= -WON_BOUND && entry.type != TT_LOWER && score < alpha);
}

// Mate-distance pruning: no line from here can end in a mate nearer than one already found. Returns
// the score that settles the node, or 0 when the search goes on (with alpha perhaps raised).
inline int mateDistanceBound(int ply, int& alpha, int beta, bool inCheck) {
    if (beta < -(MATE_BOUND - 1)) {
        int v = ply - (MATE - 2);
        if (inCheck && alpha < v) v = ply - MATE;
        if (v >= beta) return v;
        alpha = std::max(alpha, v);
    }
    if (alpha >= MATE_BOUND) {
        const int v = MATE - 1 - ply;
        if (alpha >= v) return v;
    }
    return 0;
}

// The clock is read every 1024 nodes of each kind, interior and quiescence alike: in an endgame full of
// checks the quiescence search takes most of the nodes, and with a few milliseconds left on the clock
// the search cannot wait for thousands of interior nodes before it notices that its time is up.
inline bool clockRanOut(uint64_t count) {
    return (count & 1023) == 0 && timeControl.outOfTime();
}

inline bool isQuiet(Move move) {
    return !isCapture(move) && promotionKind(move) == 0;
}

// A quiet move that cut off goes to the front of the ply's two killers. A move already in front stays
// where it is, so the two slots never hold the same move.
inline void updateKillers(SearchThread& thread, int ply, Move move) {
    move = plainMove(move);
    Move* slot = thread.killer[ply];
    if (slot[0] == move) return;
    slot[1] = slot[0];
    slot[0] = move;
}

// The line at ply becomes the move alone.
inline void setLine(SearchThread& thread, int ply, Move move) {
    thread.pv[ply][0] = move;
    thread.pv[ply][1] = NO_MOVE;
}

// The line at ply becomes the move followed by the child's line.
inline void copyLine(SearchThread& thread, int ply, Move move) {
    Move* line = thread.pv[ply];
    const Move* child = thread.pv[ply + 1];
    line[0] = move;
    int i = 0;
    while (child[i] != NO_MOVE && i + 2 < MAX_PLY) {
        line[i + 1] = child[i];
        ++i;
    }
    line[i + 1] = NO_MOVE;
}

// A searched move's score v at the node: the best so far when above it, and alpha with the move's line
// when above alpha too. Returns whether alpha rose.
inline bool raiseBest(SearchThread& thread, int ply, Move made, int v, int& best, int& alpha) {
    if (v <= best) return false;
    best = v;
    if (v <= alpha) return false;
    alpha = v;
    copyLine(thread, ply, made);
    return true;
}

// Files holding a passed pawn of side in the thread's current position, from its pawn table.
inline unsigned passedPawnFiles(SearchThread& thread, int side) {
    const uint64_t key = thread.board.pawnHash;
    const PawnEntry& entry = thread.eval.pawnHash.slot(key);
    if (entry.check != highHalf(key)) evaluate(thread.eval, thread.board);
    return entry.block[side].passedFiles;
}
