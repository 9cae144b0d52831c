#include "search/searchthread.h"

#include <algorithm>
#include <cstring>

#include "frontend/util/log.h"
#include "search/timecontrol.h"

// Never destroyed: the threads sleep on these records' events until the process ends, and destroying
// an event that a thread waits on would block the exit.
SearchThread (&searchThreads)[MAX_THREADS] = *new SearchThread[1][MAX_THREADS];
SearchThread& searchThread = searchThreads[0];

SearchThread::SearchThread() {
    // No search has run yet, so whoever waits for the end of one must not block.
    idle.set();
    clearRecord();
}

void SearchThread::clearRecord() {
    stats.clear();
    seldepth = 0;
    std::memset(killer, 0, sizeof killer);
    std::memset(mateKiller, 0, sizeof mateKiller);
    pv[0][0] = NO_MOVE;
}

void SearchThread::boot() {
    Log log;
    if (booted.exchange(true)) {
        log.info("already booted!\n");
        return;
    }
    log.info("starting main search thread...\n");
    // Back from here only once the thread sleeps: an idle event still set from construction would
    // otherwise let a stop wait return before the first search has even begun.
    idle.reset();
    platform::startThread([this] { threadBody(); }, true);
    idle.wait();
}

void SearchThread::threadBody() {
    Log log;
    for (;;) {
        log.debug("searchthread: sleep()\n");
        idle.set();
        go.wait();
        go.reset();
        log.debug("searchthread: awoke()\n");
        search();
    }
}

namespace {

// A game too long for the history to hold a search on top of it keeps only its recent plies: all that
// the draw rules read lies after the last capture or pawn move, and the fifty-move rule ends at 100.
void makeRoomInHistory(Board& board) {
    constexpr int KEEP = 128;
    if (static_cast<int>(board.ply) + MAX_PLY + 8 <= MAX_PLY_HISTORY) return;
    const int shift = static_cast<int>(board.ply) - KEEP;
    std::memmove(board.hashHistory, board.hashHistory + shift, KEEP * sizeof board.hashHistory[0]);
    std::memmove(board.moves, board.moves + shift, KEEP * sizeof board.moves[0]);
    board.ply = KEEP;
    board.lastIrreversible = static_cast<uint16_t>(std::max(0, board.lastIrreversible - shift));
}

}  // namespace

void SearchThread::startSearch(bool synchronous) {
    stop.store(0, std::memory_order_relaxed);
    // The search works on its own copy: the protocol may set up the next position meanwhile.
    board = gameBoard;
    makeRoomInHistory(board);
    // What ponderhit reads must not be left over from the last search.
    depth.store(0, std::memory_order_relaxed);
    rootCount.store(0, std::memory_order_relaxed);
    idle.reset();
    if (synchronous) {
        search();
        idle.set();
        return;
    }
    go.set();
}

void SearchThread::ponderhit() {
    if (rootCount.load(std::memory_order_relaxed) == 1 && depth.load(std::memory_order_relaxed) > 2) {
        Log().info("ponderhit & single move!\n");
        stopSearch();
        return;
    }
    timeControl.ponderhit();
}

void SearchThread::stopSearch() {
    stopAllThreads();
    waitIdle();
}

void SearchThread::waitIdle() { idle.wait(); }

uint64_t totalNodes() {
    uint64_t sum = 0;
    for (const SearchThread& thread : searchThreads) sum += thread.stats.nodes.get() + thread.stats.qnodes.get();
    return sum;
}

