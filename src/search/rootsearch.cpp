// Iterative deepening and the root search of the search thread.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "board/legalmoves.h"
#include "board/notation.h"
#include "board/see.h"
#include "eval/evaluate.h"
#include "frontend/util/log.h"
#include "search/movesearch.h"
#include "search/node.h"
#include "search/parallel.h"
#include "search/report.h"
#include "search/searchthread.h"
#include "search/timecontrol.h"
#include "search/tt.h"

namespace {

bool outranks(const RootMove& a, const RootMove& b) {
    return a.key > b.key || (a.key == b.key && a.secondaryKey > b.secondaryKey);
}

// Bubble sort, descending: the list is short and nearly sorted after the first iteration.
void sortRootMoves(RootMove* first, RootMove* last) {
    for (bool swapped = true; swapped;) {
        swapped = false;
        for (RootMove* r = first; r + 1 < last; ++r) {
            if (outranks(r[1], r[0])) {
                std::swap(r[0], r[1]);
                swapped = true;
            }
        }
    }
}

bool stopRequested(SearchThread& thread) {
    if (thread.stop.load(std::memory_order_relaxed)) return true;
    if (!timeControl.outOfTime()) return false;
    thread.stop.store(1, std::memory_order_relaxed);
    return true;
}

}  // namespace

// Fills the root list with the legal moves, ordered at first by a capture-only quiescence look at each.
void SearchThread::generateRootMoves() {
    int count = 0;
    auto add = [&](Move made) {
        RootMove& root = driver->moves[count];
        root.move = made;
        root.score = -quiescence(*this, 1, -MATE, MATE, 0, made);
        root.key = root.score;
        root.secondaryKey = -count;  // generator order among equals
        ++count;
    };
    auto drop = [&](Move move) {
        char text[MOVE_TEXT_SIZE];
        moveToText(board, text, move);
        Log().info("Dropped rootmove: %s\n", text);
    };
    forEachLegalMove(board, add, drop);
    driver->count.store(count, std::memory_order_relaxed);
}

// The line below the root may end in moves taken from the table without a search of their own; it is
// cut before the first one that cannot be played, so that reports and the ponder move stay legal.
void SearchThread::trimRootLine() {
    Board line = board;
    for (Move* move = pv[0]; *move != NO_MOVE; ++move) {
        const Move plain = plainMove(*move);
        const Move made = isValidMove(line, plain) ? makeMove(line, plain) : NO_MOVE;
        if (made == NO_MOVE) {
            *move = NO_MOVE;
            return;
        }
    }
}

// The depth of the first iteration: a deep enough table entry for the root lets the search begin
// where the last one left off. Its move, when in the list, only vouches for the entry; the list keeps
// the order its keys gave it.
int SearchThread::startDepth() {
    TtEntry entry;
    if (!tt.probe(board, entry) || entry.move == NO_MOVE || entry.type == TT_UPPER) return 1;
    const int count = driver->count.load(std::memory_order_relaxed);
    for (int i = 0; i < count; ++i) {
        if (plainMove(driver->moves[i].move) != plainMove(entry.move)) continue;
        char text[MOVE_TEXT_SIZE];
        moveToText(board, text, driver->moves[i].move);
        Log().info("[tt] %s\n", text);
        const int start = entry.depth - (entry.type == TT_EXACT ? 0 : 1);
        return start < 1 ? 1 : start;
    }
    return 1;
}

void SearchThread::search() {
    Log log;
    RootDriver& root = *driver;
    // Set-up.
    const int maxDepth = root.request.maxDepth;
    const int depthLimit = maxDepth < 1 || maxDepth > MAX_DEPTH ? MAX_DEPTH : maxDepth;
    clearRecord();
    tt.newSearch();
    waitForWorkers();
    wakeWorkers(board);
    generateRootMoves();
    const int count = root.count.load(std::memory_order_relaxed);
    sortRootMoves(root.moves, root.moves + count);
    log.info("eval=%i\n", evaluate(eval, board));

    int iteration = startDepth();
    if (iteration > depthLimit) iteration = depthLimit;
    root.bestScore = count > 0 ? root.moves[0].score : board.inCheck() ? -MATE : DRAW;
    root.previousIterationNodes = 0;
    const char* reason = count > 0 ? nullptr : "no legal move\n";

    while (count > 0) {
        root.depth.store(iteration, std::memory_order_relaxed);
        timeControl.setIteration(iteration);
        probePlyLimit = std::max(2, iteration * 2 / 3);
        minSplitDepth = minimumSplitDepth();
        searchRoot(iteration);

        if (stopRequested(*this)) {
            reason = "stopped\n";
            break;
        }
        if (!timeControl.infinite.load(std::memory_order_relaxed)) {
            if (MATE - std::abs(root.bestScore) <= iteration + 1) {
                reason = "(optimal)\n";
                break;
            }
            if (iteration > 1 && count == 1) {
                reason = "single move\n";
                break;
            }
            // A zero move word never heads the list in play, so this rule stays out of normal games.
            if (iteration > 5 && root.moves[0].move == NO_MOVE &&
                timeControl.elapsed() > static_cast<uint32_t>(timeControl.phaseLimit[0])) {
                reason = "easy move\n";
                break;
            }
        }
        if (!timeControl.nextIteration(root.bestScore)) {
            reason = "ok/stop\n";
            break;
        }
        const uint64_t nodes = totalNodes();
        log.info("/%2.1f\n",
                 root.previousIterationNodes ? double(nodes) / double(root.previousIterationNodes) : 0.0);
        root.previousIterationNodes = nodes;
        if (++iteration > depthLimit) {
            reason = "depth limit\n";
            break;
        }
        sortRootMoves(root.moves + 1, root.moves + count);
    }

    root.endingReason = reason;
    printLine(*this, root.bestScore, reason);
    if (SearchListener* listener = root.request.listener)
        listener->finish(report(iterationDepth(), root.bestScore, bestMove()));
    stopAllThreads();
    waitForWorkers();
    if (root.request.statistics) logStatistics(*this);
}

// A new best move, searched with the root position back on the board: its line is checked and
// printed from the root, and the root's table entry names it.
void SearchThread::adoptBestMove(int d, int score, Move made) {
    driver->bestScore = score;
    copyLine(*this, 0, made);
    trimRootLine();
    if (SearchListener* listener = driver->request.listener) listener->reportLine(report(d, score, made));
    printLine(*this, score, nullptr);
    storeEntry(*this, 0, plainMove(made), score, d, TT_LOWER);
}

// Before the first iteration the moves are ordered by their quiescence score. After each iteration
// every move's key is the size of the tree it took, the best move's included: a move that was hard to
// refute is the likeliest to take over next, and a best move displaced by a take-over, searched with
// the full window, keeps a large tree and so the second place.
void SearchThread::recordTreeSize(RootMove& searched, uint64_t nodesBefore, int score) {
    searched.key = static_cast<int32_t>(std::min<uint64_t>(totalNodes() - nodesBefore, INT32_MAX));
    searched.score = score;
}

// One iteration: the first move with the full window, the others with a null window around the best
// score, re-searched in full when they fail high.
void SearchThread::searchRoot(int d) {
    RootDriver& root = *driver;
    const int count = root.count.load(std::memory_order_relaxed);
    const SavedState saved = saveState(board);

    // The first move sets the score to beat.
    Move made = makeMove(board, root.moves[0].move);
    SearchListener* listener = root.request.listener;
    if (listener) listener->reportMove(report(d, root.bestScore, bestMove()), 0, made);
    uint64_t before = totalNodes();
    int score = -alphaBeta(*this, 1, -MATE, MATE, d - 1, made, NODE_PV);
    takeBack(board, made, saved);
    if (stopRequested(*this)) return;
    recordTreeSize(root.moves[0], before, score);
    adoptBestMove(d, score, made);
    timeControl.checkScoreDrop(score);

    // The others must prove they are better.
    for (int i = 1; i < count; ++i) {
        if (stopRequested(*this)) return;
        made = makeMove(board, root.moves[i].move);
        if (listener) listener->reportMove(report(d, root.bestScore, bestMove()), i, made);
        before = totalNodes();
        bool confirmed = false;
        score = -alphaBeta(*this, 1, -root.bestScore - 1, -root.bestScore, d - 1, made, NODE_CUT);
        if (score > root.bestScore && !stop.load(std::memory_order_relaxed)) {
            timeControl.enterFailHighPhase();
            char mark[32];
            std::snprintf(mark, sizeof mark, "++%i/%i", i + 1, count);
            printMove(*this, score, made, mark);
            score = -alphaBeta(*this, 1, -MATE, -root.bestScore, d - 1, made, NODE_PV);
            if (!stop.load(std::memory_order_relaxed)) {
                confirmed = score > root.bestScore;
                if (!confirmed) printMove(*this, score, made, "--");
            }
            timeControl.leaveFailHighPhase();
        }
        takeBack(board, made, saved);
        if (stop.load(std::memory_order_relaxed)) return;
        recordTreeSize(root.moves[i], before, score);
        if (confirmed) {
            std::rotate(root.moves, root.moves + i, root.moves + i + 1);
            adoptBestMove(d, score, made);
        }
    }
}
