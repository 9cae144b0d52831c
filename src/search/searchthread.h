// The search threads. Slot 0 is the search thread that the protocols drive: its root driver holds the
// request, the root move list and the iteration, and it runs iterative deepening and the reports. The
// other slots are the workers of the parallel search; every slot has its own Board, evaluation
// context, killers, lines and counters.
//
// Threads:
// - Fixed while a search runs: the request, and the root list outside the root search.
// - Written only by the slot's own thread: board, killers, mate killers, pv, seldepth, counters
//   (the counters are relaxed atomics so that the driver may sum them at any time).
// - Written by other threads: stop (the protocol, the driver, a sibling at a split point).
// - go and idle events: the protocol sets go and waits for idle; the thread does the opposite.
#pragma once

#include <atomic>
#include <cstdint>

#include "board/board.h"
#include "eval/evalcontext.h"
#include "platform/platform.h"
#include "search/score.h"
#include "search/searchrequest.h"
#include "search/stats.h"

constexpr int MAX_THREADS = 8;
// The most principal variations one search reports.
constexpr int MAX_LINES = 64;
// Fewer threads than this in use makes every node too shallow to split.
constexpr int NO_SPLIT_DEPTH = 128;

// What the search tells its listener, taken on the search thread at the moment of the call.
struct SearchReport {
    int depth = 0;     // the iteration
    int seldepth = 0;  // the deepest ply reached
    int score = 0;
    Move best = NO_MOVE;         // the first move of the line; the move to play at the end
    Move ponder = NO_MOVE;       // the reply the line expects, when it holds one
    const Move* line = nullptr;  // the principal variation, ended by a 0 word; kept until the next search
    int multipv = 0;        // the line's place from 1 in a search for several lines; 0 in a one-line search
    uint64_t nodes = 0;     // of all threads, interior plus quiescence
    uint32_t ms = 0;        // since the search started
    unsigned hashfull = 0;  // per mille of the table taken over in this search
};

// How a protocol hears of a running search. All calls come on the search thread.
class SearchListener {
  public:
    virtual ~SearchListener() = default;
    // The search has ended; the report's best move is the move to play.
    virtual void finish(const SearchReport& report) = 0;
    // A new principal variation; its first move is the report's best.
    virtual void reportLine(const SearchReport& report) = 0;
    // The root move with this index (from 0) is being searched.
    virtual void reportMove(const SearchReport& report, int moveIndex, Move move) = 0;
    // A line of the search's own log, ended by a newline: a principal variation, a root move being
    // searched again, why the search ended. For a listener that shows them as they are.
    virtual void reportText(const char*) {}
};

struct RootMove {
    Move move;
    int32_t key;           // primary ordering key, higher first: see recordTreeSize
    int32_t secondaryKey;  // breaks ties of the primary key
    int32_t score;         // from its last search: exact for the moves of the lines, a bound for the others
};

// A principal variation from the root, ended by a 0 word.
struct RootLine {
    Move moves[MAX_PLY];
};

// What only the search thread (slot 0) keeps to drive a search: its thread's events, the request it
// runs, the root move list and the iteration. The workers' slots have none: they sleep on the parallel
// search's events and search below the root only.
struct RootDriver {
    platform::Event go;
    platform::Event idle;
    std::atomic<bool> booted{false};
    SearchRequest request;  // of the running or the last search
    RootMove moves[MAX_MOVES];
    std::atomic<int> count{0};       // after the request's choice of moves
    std::atomic<int> legalCount{0};  // every legal move of the root
    RootLine lines[MAX_LINES];       // of the first places of the list, best first
    std::atomic<int> depth{0};       // the iteration being searched; ponderhit reads it and legalCount
    int bestScore = 0;
    const char* endingReason = "";  // why the last search ended: "stopped\n", "(optimal)\n", ...
    uint64_t previousIterationNodes = 0;

    // No search has run yet, so whoever waits for the end of one must not block.
    RootDriver() { idle.set(); }
};

struct SearchThread {
    // Per-slot search state.
    int slot = 0;
    Board board;
    EvalContext eval;
    SearchStats stats;
    std::atomic<int> stop{0};  // non-zero: unwind at once
    int seldepth = 0;
    Move killer[MAX_PLY][2];
    Move mateKiller[MAX_PLY];
    Move pv[MAX_PLY][MAX_PLY];  // pv[ply]: best move at ply and its continuation, ended by 0
    int probePlyLimit = 2;      // bitbases are probed above this ply only for the smallest endings
    int minSplitDepth = NO_SPLIT_DEPTH;
    int activeSplits = 0;

    RootDriver* driver = nullptr;  // the search thread's own; null in the workers' slots

    SearchThread();
    SearchThread(const SearchThread&) = delete;
    SearchThread& operator=(const SearchThread&) = delete;

    // Starts the thread once; it then sleeps until a search is started.
    void boot();
    // Searches what the request asks. Synchronous runs the search on the calling thread; otherwise the
    // search thread is woken and this returns at once. The time control is set on the calling thread.
    void startSearch(const SearchRequest& asked, bool synchronous);
    // The ponder move was played: the search goes on as a timed one.
    void ponderhit();
    // Asks every thread to stop and waits until the search has ended.
    void stopSearch();
    // Waits until no search runs.
    void waitIdle();
    bool isIdle() { return driver->idle.isSet(); }

    // What the running or the last search was asked, how deep it is, and why it ended.
    const SearchRequest& request() const { return driver->request; }
    int iterationDepth() const { return driver->depth.load(std::memory_order_relaxed); }
    const char* endingReason() const { return driver->endingReason; }
    // The result, valid once the search has reported it.
    Move bestMove() const {
        return driver->count.load(std::memory_order_relaxed) > 0 ? driver->moves[0].move : NO_MOVE;
    }
    Move ponderMove() const {
        return driver->count.load(std::memory_order_relaxed) > 0 && pv[0][0] == bestMove() ? pv[0][1]
                                                                                           : NO_MOVE;
    }
    // The current line, ended by a 0 word; every move in it can be played.
    const Move* principalVariation() const { return pv[0]; }
    // The figures a listener hears, for a line at depth with its score and first move.
    SearchReport report(int depthReached, int score, Move best) const;

    // Runs one search on this thread: set-up, iterative deepening, finish.
    void search();
    // Clears counters, killers and mate killers before a search.
    void clearRecord();

  private:
    void threadBody();
    void generateRootMoves();
    int startDepth();
    void searchRoot(int depth, int places);
    void takePlace(int depth, int index, int places, int score, Move made);
    void reportLines(int depth, int places);
    void recordTreeSize(RootMove& searched, uint64_t nodesBefore, int score);
    void trimRootLine();
};

extern SearchThread (&searchThreads)[MAX_THREADS];
// The search thread the protocols drive (slot 0).
extern SearchThread& searchThread;

// Nodes of all threads, interior plus quiescence.
uint64_t totalNodes();
// Per mille of the table taken over from earlier searches in this one.
unsigned hashfull();
