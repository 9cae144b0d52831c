// The tree search below the root: alpha-beta, quiescence, and one move of an interior node, with the
// pruning, reduction and re-search rules that alphaBeta applies to every move of its loop and that the
// helpers of a split point apply to the moves they take from it.
#pragma once

#include <atomic>

#include "board/move.h"
#include "search/searchthread.h"

// What a node knows of itself: filled in by the steps before its move loop, then kept for all its moves.
struct NodeState {
    int ply;
    int beta;
    int depth;
    int newDepth;   // depth of the children before per-move extensions
    Move lastMove;  // the move that led to the node, with its check bits
    int threatSquare;
    bool inCheck;
    bool extended;   // the node is extended already: no per-move extensions
    bool mayReduce;  // depth and check allow late-move reductions; each move also asks alpha
    // The futility value: while it lies below the alpha of the moment, the moves after the hash move
    // are skipped without a search, captures as well as quiet moves. MATE at nodes that never skip.
    int futility;

    bool futile(int alpha) const { return futility < alpha; }
};

// The score of the node at ply, reached by lastMove (with its check bits; 0 after a null move), searched
// depth plies deep with the window (alpha, beta); leaves its best move and line in the thread's pv[ply].
int alphaBeta(SearchThread& thread, int ply, int alpha, int beta, int depth, Move lastMove, int nodeType);
// The same below the horizon: captures, and checks for the first levels while qdepth is above 0.
int quiescence(SearchThread& thread, int ply, int alpha, int beta, int qdepth, Move lastMove);

enum class MoveOutcome {
    ILLEGAL,   // pinned or leaving the king in check: not a move of this node
    PRUNED,    // skipped by futility, counts as searched
    SEARCHED,  // score and made are set
};

// Searches move (drawn from picker stage `stage`) against the window (alpha, node.beta) at a node of
// type nodeType; first tells whether it is the first move the node searches. The score is from the
// node's side; it means nothing when the thread's stop flag is set afterwards. Threads sharing a split
// point pass its alpha as liveAlpha: another thread may have raised it while this move was searched, and
// a re-search with the full window starts from the higher value.
MoveOutcome searchMove(SearchThread& thread, const NodeState& node, int nodeType, int alpha, bool first,
                       Move move, int stage, int& score, Move& made,
                       const std::atomic<int>* liveAlpha = nullptr);
