#include "search/searchthread.h"

#include <algorithm>
#include <cstring>

#include "board/gamemove.h"
#include "frontend/util/log.h"
#include "search/parallel.h"
#include "search/timecontrol.h"
#include "search/tt.h"

namespace {

// Never destroyed: the threads sleep on these records' events until the process ends, and destroying
// an event that a thread waits on would block the exit.
SearchThread (&newSlots())[MAX_THREADS] {
    SearchThread(&slots)[MAX_THREADS] = *new SearchThread[1][MAX_THREADS];
    slots[0].driver = new RootDriver;
    return slots;
}

}  // namespace

SearchThread (&searchThreads)[MAX_THREADS] = newSlots();
SearchThread& searchThread = searchThreads[0];

SearchThread::SearchThread() {
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
    if (driver->booted.exchange(true)) {
        log.info("already booted!\n");
        return;
    }
    log.info("starting main search thread...\n");
    // Back from here only once the thread sleeps: an idle event still set from construction would
    // otherwise let a stop wait return before the first search has even begun.
    driver->idle.reset();
    platform::startThread([this] { threadBody(); }, true);
    driver->idle.wait();
}

void SearchThread::threadBody() {
    Log log;
    for (;;) {
        log.debug("searchthread: sleep()\n");
        driver->idle.set();
        driver->go.wait();
        driver->go.reset();
        log.debug("searchthread: awoke()\n");
        search();
    }
}

// The deepest line a search plays on top of its root must fit in the room a game leaves in the history.
static_assert(MAX_PLY <= HISTORY_ROOM);

void SearchThread::startSearch(const SearchRequest& asked, bool synchronous) {
    stop.store(0, std::memory_order_relaxed);
    RootDriver& root = *driver;
    root.request = asked;
    board = asked.board;
    keepHistoryRoom(board);
    timeControl.infinite.store(asked.infinite);
    if (asked.clock) timeControl.allocate(*asked.clock);
    timeControl.start();
    // What ponderhit reads must not be left over from the last search.
    root.depth.store(0, std::memory_order_relaxed);
    root.count.store(0, std::memory_order_relaxed);
    root.legalCount.store(0, std::memory_order_relaxed);
    root.idle.reset();
    if (synchronous) {
        search();
        root.idle.set();
        return;
    }
    root.go.set();
}

void SearchThread::ponderhit() {
    if (driver->legalCount.load(std::memory_order_relaxed) == 1 && iterationDepth() > 2) {
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

void SearchThread::waitIdle() {
    driver->idle.wait();
}

SearchReport SearchThread::report(int depthReached, int score, Move best) const {
    return {.depth = depthReached,
            .seldepth = seldepth,
            .score = score,
            .best = best,
            .ponder = ponderMove(),
            .line = pv[0],
            .nodes = totalNodes(),
            .ms = timeControl.elapsed(),
            .hashfull = hashfull()};
}

uint64_t totalNodes() {
    uint64_t sum = 0;
    for (const SearchThread& thread : searchThreads)
        sum += thread.stats.nodes.get() + thread.stats.qnodes.get();
    return sum;
}

unsigned hashfull() {
    uint64_t taken = 0;
    for (const SearchThread& thread : searchThreads)
        taken += thread.stats.ttReplacements.get() - thread.stats.ttSameAgeReplacements.get();
    const uint32_t entries = tt.entryCount();
    return entries == 0 ? 0 : unsigned(std::min<uint64_t>(taken * 1000 / entries, 1000));
}
