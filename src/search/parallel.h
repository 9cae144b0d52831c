// The parallel search: up to eight search threads share the tree of one search. Slot 0 is the search
// thread the protocols drive; worker threads occupy slots 1 to 7. A node that has searched its first
// move may offer the rest at a split point; idle threads join it, replay the path from the root on
// their own Board, and search its moves beside the thread that split. Workers sleep between searches
// and spin while they wait for work inside one. The lock rules are in splitpoint.h.
#pragma once

#include "search/movesearch.h"
#include "search/picker.h"
#include "search/searchthread.h"
#include "search/splitpoint.h"

// Split points one thread may have open at a time (nested, the deepest last).
constexpr int MAX_SPLITS_PER_THREAD = 8;

// Makes count search threads available (clamped to 1..8; the search thread counts as the first).
// Missing workers are started; with a lower count the surplus ones go to sleep.
void setThreads(int count);
// The number of search threads in use.
int threadCount();
// The minimum depth of a node that may split: no node is that deep with a single thread.
int minimumSplitDepth();

// Search set-up, on the search thread once every worker is idle: the workers in use wake up with a
// copy of root, the position the search starts from.
void wakeWorkers(const Board& root);

// The split test. Offers sp (prepared by the caller) to idle threads: 1 when at least one took it and
// sp became the thread's current split point, 0 otherwise.
int trySplit(SearchThread& thread, SplitPoint& sp);

// What a node had before it split, and what it has once every move is searched.
struct SplitOutcome {
    int alpha;
    int best;
    Move bestMove;  // as made
    Move cutMove;   // when best >= beta: the move that got there, as generated ...
    int cutStage;   // ... and its picker stage
};

// The split of alphaBeta's move loop: offers the node's remaining moves (the picker's, from cursor on,
// without skip) to idle threads and searches them with whoever joins. False, with nothing changed, when
// no thread joined. True once every move is searched or one failed high: outcome holds the node's
// result, and the thread's line at the node is updated when alpha rose. The result means nothing
// when the thread's stop flag is set afterwards.
bool splitNode(SearchThread& thread, const NodeState& node, int nodeType, Picker& picker, Move* cursor,
               Move skip, Move threat, SplitOutcome& outcome);

// Sets every thread's stop flag.
void stopAllThreads();
// Waits until every worker has finished its part of the search.
void waitForWorkers();

// What the threads of the last search did, for the statistics block: splits and the threads stopped
// by fail highs, and per thread in use the milliseconds spent waiting for work, replaying paths, and
// searching.
struct SplitFigures {
    struct Slot {
        int waitMs, adminMs, workMs;
    };
    uint64_t splits = 0;
    uint32_t kills = 0;
    int threads = 0;
    Slot slots[MAX_THREADS] = {};
};
SplitFigures splitFigures();
