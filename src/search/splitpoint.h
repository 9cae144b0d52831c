// A split point: a node of alphaBeta whose remaining moves several threads search side by side.
//
// Lock rules of the parallel search (they hold for these records, the thread slots of parallel.cpp
// and the shared counters there):
// 1. The split lock (a word taken by atomic exchange) guards the links between threads and split
//    points: a slot's current split point and idle flag, the idle count, a split point's parent,
//    working count and cutoff flag. These are atomics, so a thread may spin on them without the lock;
//    it changes them only while holding it. A splitting thread tries the lock once and gives up when
//    it is held; everyone else spins for it.
// 2. A split point's own lock guards what its threads share while they search it: the next move to
//    hand out, alpha, the best score and move, the node type and the line. A thread holding it may
//    take the split lock (to stop the others on a fail high); the reverse order is never used.
// 3. Fixed from the moment trySplit offers the split point until its last helper has left: the node
//    (window, depths, flags), the path from the root and the bitbase ply limit. The move list is
//    written once before the state reaches 3 and is read-only after that.
// 4. Per thread, written only by the slot's own thread: its Board, search record, evaluation context,
//    active split count and time counters. Others write a slot's stop flag only, and only by setting
//    bits: STOP_SEARCH ends the whole search, STOP_CUTOFF a split point on the slot's chain failed high.
#pragma once

#include <atomic>
#include <cstdint>

#include "board/move.h"
#include "search/movesearch.h"
#include "search/score.h"
#include "search/spinlock.h"

constexpr int STOP_SEARCH = 1;
constexpr int STOP_CUTOFF = 2;

// The states a split point passes through; helpers replay the path once it is above LINKED and take
// moves once it is OPEN.
enum SplitState : int {
    SPLIT_FREE = 0,
    SPLIT_LINKED = 1,      // trySplit is choosing helpers
    SPLIT_PATH_READY = 2,  // helpers taken: they replay the path while the owner lists the moves
    SPLIT_OPEN = 3,        // the move list is complete
};

// Room for every move a picker can hand out.
constexpr int SPLIT_MOVES = 2 * MAX_MOVES;

struct SplitPoint {
    // Rule 1.
    std::atomic<SplitPoint*> parent{nullptr};  // the split point the owner was working under
    std::atomic<int> working{0};               // threads at this split point, the owner included
    std::atomic<bool> cutoff{false};
    std::atomic<int> state{SPLIT_FREE};

    // Rule 3.
    NodeState node{};
    int probePlyLimit = 0;
    int pathLength = 0;
    Move path[MAX_PLY];  // the moves from the root to the node; 0 is a null move
    int moveCount = 0;
    Move moves[SPLIT_MOVES];
    uint8_t stages[SPLIT_MOVES];  // the picker stage each move came from

    // Rule 2.
    SpinLock lock;
    int next = 0;  // moves handed out
    int nodeType = NODE_PV;
    std::atomic<int> alpha{0};  // also read without the lock, by a re-search that wants the latest value
    int best = 0;
    Move bestMove = NO_MOVE;  // as made, with its check bits
    Move cutMove = NO_MOVE;   // the move that reached beta, as generated
    int cutStage = 0;
    bool lineChanged = false;  // alpha rose: line replaces the owner's line at the node
    Move line[MAX_PLY];
};
