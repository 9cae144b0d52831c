#include "search/parallel.h"

#include <algorithm>
#include <cassert>

#include "board/makemove.h"
#include "frontend/util/log.h"
#include "platform/platform.h"
#include "search/node.h"
#include "search/timecontrol.h"

namespace {

// What the parallel search keeps per thread slot beside the slot's SearchThread.
struct WorkerSlot {
    platform::Event idle;  // set while the worker sleeps between searches
    platform::Event wake;
    bool running = false;                       // the worker thread exists (main thread only)
    std::atomic<bool> waiting{false};           // the idle flag: free to be taken by a split point
    std::atomic<SplitPoint*> current{nullptr};  // the split point the slot works under
    std::atomic<uint32_t> wokenAt{0};           // tick of the wake-up
    std::atomic<uint32_t> activeMs{0};          // wake-up to sleep, for the statistics
    std::atomic<uint32_t> adminMs{0};           // replaying and taking back paths
    std::atomic<uint32_t> kills{0};             // threads this slot stopped on a fail high

    WorkerSlot() { idle.set(); }
};

// The global split state. Never destroyed: workers sleep on its events until the process ends.
struct SplitState {
    SpinLock lock;
    std::atomic<int> idleCount{0};
    std::atomic<int> threadsInUse{1};
    std::atomic<bool> oversubscribed{false};  // more search threads than processors
    std::atomic<bool> searchDone{true};       // sends the workers back to sleep
    // The position the search starts from, written only while every worker sleeps.
    Board root;
    uint32_t rootPly = 0;
    WorkerSlot slots[MAX_THREADS];
    SplitPoint splitPoints[MAX_THREADS * MAX_SPLITS_PER_THREAD];
};

SplitState& smp = *new SplitState;

void addMs(std::atomic<uint32_t>& counter, uint32_t ms) {
    counter.fetch_add(ms, std::memory_order_relaxed);
}

// Whether `target` is `from` or lies on its parent chain. Chains are at most eight split points per
// thread deep; the bound only guards against a chain that is being rebuilt.
bool onChain(const SplitPoint* from, const SplitPoint* target) {
    for (int links = 0; from && links < 32; ++links, from = from->parent.load(std::memory_order_relaxed))
        if (from == target) return true;
    return false;
}

bool cutoffOnChain(const SplitPoint* from) {
    for (int links = 0; from && links < 32; ++links, from = from->parent.load(std::memory_order_relaxed))
        if (from->cutoff.load(std::memory_order_relaxed)) return true;
    return false;
}

// Under the split lock: the thread leaves `left` (null for the owner, which is not counted as a
// helper) and works under `back` again. A stop raised by a fail high below back is over for it.
void leave(SearchThread& thread, SplitPoint* left, SplitPoint* back) {
    smp.lock.lock();
    if (left) left->working.fetch_sub(1, std::memory_order_relaxed);
    smp.slots[thread.slot].current.store(back);
    if (!cutoffOnChain(back)) thread.stop.fetch_and(~STOP_CUTOFF);
    smp.lock.unlock();
}

// A move at sp reached beta: every other thread working at or below sp stops. Under sp's lock.
void stopHelpers(SearchThread& finder, SplitPoint& sp) {
    smp.lock.lock();
    sp.cutoff.store(true);
    uint32_t stopped = 0;
    for (int i = 0; i < MAX_THREADS; ++i) {
        if (i == finder.slot || !onChain(smp.slots[i].current.load(), &sp)) continue;
        searchThreads[i].stop.fetch_or(STOP_CUTOFF);
        ++stopped;
    }
    smp.lock.unlock();
    smp.slots[finder.slot].kills.fetch_add(stopped, std::memory_order_relaxed);
}

// The search below a split point: moves are taken one at a time under the split point's lock, searched
// with the alpha of that moment, and their results written back under the lock again.
void searchSplitPoint(SearchThread& thread, SplitPoint& sp) {
    const NodeState& node = sp.node;
    while (!thread.stop.load(std::memory_order_relaxed)) {
        Move move;
        int stage, alpha, nodeType;
        {
            std::lock_guard<SpinLock> guard(sp.lock);
            if (sp.cutoff.load(std::memory_order_relaxed) || sp.next >= sp.moveCount) return;
            move = sp.moves[sp.next];
            stage = sp.stages[sp.next];
            ++sp.next;
            alpha = sp.alpha;
            nodeType = sp.nodeType;
        }
        int v;
        Move made;
        if (searchMove(thread, node, nodeType, alpha, false, move, stage, v, made, &sp.alpha) !=
                MoveOutcome::SEARCHED ||
            thread.stop.load(std::memory_order_relaxed))
            continue;

        std::lock_guard<SpinLock> guard(sp.lock);
        if (sp.nodeType == NODE_CUT) sp.nodeType = NODE_ALL;
        if (v <= sp.best || sp.cutoff.load(std::memory_order_relaxed)) continue;
        sp.best = v;
        sp.bestMove = made;
        if (v >= node.beta) {
            sp.cutMove = move;
            sp.cutStage = stage;
            stopHelpers(thread, sp);
        } else if (v > sp.alpha) {
            sp.alpha = v;
            copyLine(thread, node.ply, made);
            std::copy(thread.pv[node.ply], thread.pv[node.ply] + MAX_PLY, sp.line);
            sp.lineChanged = true;
            thread.stats.alphaRaises.add();
        }
    }
}

template <typename Done>
void spinUntil(Done done) {
    for (int round = 0; !done();) spinPause(round, smp.oversubscribed.load(std::memory_order_relaxed));
}

// Joins sp: replays the moves from the position the thread stands on to the split node (a thread
// that joins from its own split point stands on a prefix of the path already), searches there, and
// takes the moves back. The thread then works under `back` again.
void join(SearchThread& thread, SplitPoint& sp, SplitPoint* back) {
    WorkerSlot& self = smp.slots[thread.slot];
    uint32_t start = platform::getTickCount();
    spinUntil([&] { return sp.state.load() > SPLIT_LINKED; });
    thread.probePlyLimit = sp.probePlyLimit;
    Board& board = thread.board;
    const int from = static_cast<int>(board.ply - smp.rootPly);
    Move made[MAX_PLY];
    SavedState saved[MAX_PLY];
    for (int i = from; i < sp.pathLength; ++i) {
        saved[i] = saveState(board);
        if (sp.path[i] == NO_MOVE) {
            made[i] = NO_MOVE;
            makeNullMove(board);
        } else {
            made[i] = makeMove(board, sp.path[i]);
        }
    }
    // The helper stood on a prefix of the path and now stands on the split node.
    assert(static_cast<int>(board.ply - smp.rootPly) == sp.pathLength);
    spinUntil([&] { return sp.state.load() == SPLIT_OPEN; });
    uint32_t now = platform::getTickCount();
    addMs(self.adminMs, now - start);

    searchSplitPoint(thread, sp);

    start = platform::getTickCount();
    for (int i = sp.pathLength - 1; i >= from; --i) {
        if (made[i] == NO_MOVE)
            takeBackNullMove(board, saved[i]);
        else
            takeBack(board, made[i], saved[i]);
    }
    addMs(self.adminMs, platform::getTickCount() - start);
    leave(thread, &sp, back);
}

// The owner of sp, out of moves, waits for its helpers. Meanwhile it is idle: a helper that splits
// below sp may take it, and it joins there (the helpful master).
void waitForHelpers(SearchThread& thread, SplitPoint& sp) {
    WorkerSlot& self = smp.slots[thread.slot];
    for (;;) {
        smp.lock.lock();
        SplitPoint* current = self.current.load();
        if (current != &sp) {
            smp.lock.unlock();
            join(thread, *current, &sp);
            continue;
        }
        if (sp.working.load() == 1) {
            if (self.waiting.exchange(false)) smp.idleCount.fetch_sub(1);
            smp.lock.unlock();
            return;
        }
        if (!self.waiting.exchange(true)) smp.idleCount.fetch_add(1);
        smp.lock.unlock();
        const uint32_t start = platform::getTickCount();
        spinUntil([&] { return sp.working.load() == 1 || self.current.load() != &sp; });
        thread.stats.splitWaitMs.add(platform::getTickCount() - start);
    }
}

// The owner lists the moves its picker has left: the current batch from cursor on, then the rest.
int listRemainingMoves(SplitPoint& sp, Picker& picker, Move* cursor, Move skip, Move threat) {
    int count = 0;
    for (Move* batch = cursor; batch; batch = picker.next()) {
        if (batch != cursor && picker.stage == PICK_QUIET && threat != NO_MOVE)
            picker.orderThreatEvasions(threat);
        for (Move* move = batch; move < picker.end && count < SPLIT_MOVES; ++move) {
            if (*move == NO_MOVE || *move == skip) continue;
            sp.moves[count] = *move;
            sp.stages[count] = static_cast<uint8_t>(picker.stage);
            ++count;
        }
    }
    return count;
}

// The routine of worker slot i.
void workerLoop(int i) {
    SearchThread& thread = searchThreads[i];
    WorkerSlot& self = smp.slots[i];
    Log log;
    for (;;) {
        // Sleep until a search starts.
        log.debug("thread %i: sleep()\n", i);
        self.activeMs.store(platform::getTickCount() - self.wokenAt.load());
        self.idle.set();
        self.wake.wait();
        self.wake.reset();
        log.debug("thread %i: awoke()\n", i);

        // Awake: start the clocks afresh and take the root position.
        self.wokenAt.store(platform::getTickCount());
        self.adminMs.store(0);
        self.kills.store(0);
        thread.board = smp.root;
        thread.clearRecord();
        thread.minSplitDepth = minimumSplitDepth();

        for (;;) {
            // Surplus threads sleep too once the count has been lowered.
            thread.stop.store(0);
            if (smp.searchDone.load() || i >= smp.threadsInUse.load()) break;

            // Offer the slot as idle.
            const uint32_t start = platform::getTickCount();
            smp.lock.lock();
            self.waiting.store(true);
            smp.idleCount.fetch_add(1);
            smp.lock.unlock();

            // Wait for a split point to join, or for the search to end.
            spinUntil([&] {
                return self.current.load() || thread.stop.load() || smp.searchDone.load() ||
                       i >= smp.threadsInUse.load();
            });
            thread.stats.splitWaitMs.add(platform::getTickCount() - start);

            // A slot taken at the moment it was stopped still joins: its split point counts
            // on it to leave.
            smp.lock.lock();
            SplitPoint* sp = self.current.load();
            if (!sp && self.waiting.exchange(false)) smp.idleCount.fetch_sub(1);
            smp.lock.unlock();
            if (sp) join(thread, *sp, nullptr);
        }
    }
}

}  // namespace

void setThreads(int count) {
    Log log;
    if (count < 1) {
        log.info("started %i new worker threads\n", 0);
        count = 1;
    }
    count = std::min(count, MAX_THREADS);
    smp.threadsInUse.store(count);
    smp.oversubscribed.store(count > static_cast<int>(platform::processorCount()));
    if (count == 1) {
        log.info("started %i new worker threads\n", 0);
        return;
    }
    int started = 0;
    for (int i = 1; i < count; ++i) {
        WorkerSlot& slot = smp.slots[i];
        if (slot.running) continue;
        slot.running = true;
        log.info("starting worker%i...\n", i);
        searchThreads[i].slot = i;
        // A new worker marks itself idle before it first waits for work. Until it has, a search woken
        // now would see that late mark as the end of the worker's part and go on without it.
        slot.idle.reset();
        platform::startThread([i] { workerLoop(i); }, true);
        slot.idle.wait();
        ++started;
    }
    log.info("started %i new worker threads\n", started);
}

int threadCount() {
    return smp.threadsInUse.load();
}

int minimumSplitDepth() {
    return smp.threadsInUse.load() < 2 ? NO_SPLIT_DEPTH : 1;
}

void waitForWorkers() {
    for (int i = 1; i < MAX_THREADS; ++i) smp.slots[i].idle.wait();
}

void wakeWorkers(const Board& root) {
    smp.root = root;
    smp.rootPly = root.ply;
    smp.slots[0].adminMs.store(0);
    smp.slots[0].kills.store(0);
    smp.searchDone.store(false);
    const int count = smp.threadsInUse.load();
    for (int i = 1; i < count; ++i) {
        WorkerSlot& slot = smp.slots[i];
        slot.idle.reset();
        slot.wake.set();
    }
}

void stopAllThreads() {
    // Before the stop flags: a worker that clears its flag to wait for work must find the search over.
    smp.searchDone.store(true);
    for (SearchThread& thread : searchThreads) thread.stop.fetch_or(STOP_SEARCH);
}

int trySplit(SearchThread& thread, SplitPoint& sp) {
    // Nobody idle, or the lock busy: search alone.
    if (smp.idleCount.load(std::memory_order_relaxed) == 0) return 0;
    if (!smp.lock.try_lock()) return 0;

    // Nor when this thread has been stopped meanwhile.
    if (thread.stop.load()) {
        smp.lock.unlock();
        return 0;
    }

    // Link the split point under the one this slot already works at.
    WorkerSlot& self = smp.slots[thread.slot];
    SplitPoint* current = self.current.load();
    sp.parent.store(current);
    sp.cutoff.store(false);
    sp.state.store(SPLIT_LINKED);
    sp.working.store(1);
    thread.stats.splitNodes.add();

    // A slot waiting at a split point of its own may only help below it, where its helpers are.
    const int inUse = smp.threadsInUse.load();
    int taken = 0;
    for (int i = 0; i < inUse; ++i) {
        WorkerSlot& other = smp.slots[i];
        if (i == thread.slot || searchThreads[i].stop.load()) continue;
        SplitPoint* own = other.current.load();
        if (own && own->working.load() < 2) continue;
        if (!other.waiting.load()) continue;
        if (inUse > 2 && own && own != current && !onChain(current, own)) continue;
        other.waiting.store(false);
        other.current.store(&sp);
        ++taken;
    }

    // No helper came: search alone.
    if (taken == 0) {
        smp.lock.unlock();
        return 0;
    }
    smp.idleCount.fetch_sub(taken);
    self.current.store(&sp);
    sp.working.store(taken + 1);
    smp.lock.unlock();
    return 1;
}

bool splitNode(SearchThread& thread, const NodeState& node, int nodeType, Picker& picker, Move* cursor,
               Move skip, Move threat, SplitOutcome& outcome) {
    if (smp.idleCount.load(std::memory_order_relaxed) == 0) return false;
    SplitPoint& sp = smp.splitPoints[thread.slot * MAX_SPLITS_PER_THREAD + thread.activeSplits];
    // Each depth of the thread's splits has its own record, so none is in use here; a split that found
    // no helper leaves its record linked but unused.
    assert(sp.state.load() <= SPLIT_LINKED);
    sp.node = node;
    sp.probePlyLimit = thread.probePlyLimit;
    sp.pathLength = node.ply;
    std::copy(thread.board.moves + smp.rootPly, thread.board.moves + smp.rootPly + node.ply, sp.path);
    {
        std::lock_guard<SpinLock> guard(sp.lock);
        sp.next = 0;
        sp.moveCount = 0;
        sp.nodeType = nodeType;
        sp.alpha = outcome.alpha;
        sp.best = outcome.best;
        sp.bestMove = outcome.bestMove;
        sp.cutMove = NO_MOVE;
        sp.cutStage = 0;
        sp.lineChanged = false;
    }
    if (!trySplit(thread, sp)) return false;

    ++thread.activeSplits;
    sp.state.store(SPLIT_PATH_READY);
    sp.moveCount = listRemainingMoves(sp, picker, cursor, skip, threat);
    sp.state.store(SPLIT_OPEN);
    searchSplitPoint(thread, sp);
    waitForHelpers(thread, sp);
    --thread.activeSplits;
    leave(thread, nullptr, sp.parent.load());

    std::lock_guard<SpinLock> guard(sp.lock);
    outcome = {sp.alpha, sp.best, sp.bestMove, sp.cutMove, sp.cutStage};
    if (sp.lineChanged) std::copy(sp.line, sp.line + MAX_PLY, thread.pv[node.ply]);
    assert(sp.working.load() == 1);  // every helper has left
    sp.state.store(SPLIT_FREE);
    return true;
}

SplitFigures splitFigures() {
    SplitFigures figures;
    figures.threads = smp.threadsInUse.load();
    for (int i = 0; i < figures.threads; ++i) {
        const WorkerSlot& slot = smp.slots[i];
        figures.splits += searchThreads[i].stats.splitNodes.get();
        figures.kills += slot.kills.load();
        const int active = static_cast<int>(i == 0 ? timeControl.elapsed() : slot.activeMs.load());
        const int wait = static_cast<int>(searchThreads[i].stats.splitWaitMs.get());
        const int admin = static_cast<int>(slot.adminMs.load());
        figures.slots[i] = {wait, admin, std::max(0, active - wait - admin)};
    }
    return figures;
}
