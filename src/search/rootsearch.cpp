// Iterative deepening and the root search of the search thread.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

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

// A mate in mateMoves moves or fewer for the side to move; never without a mate limit.
bool mateFound(int score, int mateMoves) {
    return mateMoves > 0 && score >= MATE_BOUND && MATE - score <= 2 * mateMoves - 1;
}

bool stopRequested(SearchThread& thread) {
    if (thread.stop.load(std::memory_order_relaxed)) return true;
    if (!timeControl.outOfTime()) return false;
    thread.stop.store(1, std::memory_order_relaxed);
    return true;
}

}  // namespace

// Fills the root list with the legal moves the request names (all without a choice), ordered at first
// by a capture-only quiescence look at each.
void SearchThread::generateRootMoves() {
    const std::vector<Move>& chosen = driver->request.searchMoves;
    int count = 0, legal = 0;
    auto add = [&](Move made) {
        ++legal;
        const auto same = [&](Move named) { return plainMove(named) == plainMove(made); };
        if (!chosen.empty() && std::none_of(chosen.begin(), chosen.end(), same)) return;
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
    driver->legalCount.store(legal, std::memory_order_relaxed);
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
// where the last one left off. Its move, when in the list, goes first: searched later, it would have to
// fail high and be searched again before the iteration could end.
int SearchThread::startDepth() {
    TtEntry entry;
    if (!tt.probe(board, entry) || entry.move == NO_MOVE || entry.type == TT_UPPER) return 1;
    const int count = driver->count.load(std::memory_order_relaxed);
    for (int i = 0; i < count; ++i) {
        if (plainMove(driver->moves[i].move) != plainMove(entry.move)) continue;
        char text[MOVE_TEXT_SIZE];
        moveToText(board, text, driver->moves[i].move);
        Log().info("[tt] %s\n", text);
        std::rotate(driver->moves, driver->moves + i, driver->moves + i + 1);
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
    const int places = std::max(1, std::min({root.request.lines, count, MAX_LINES}));
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
        searchRoot(iteration, places);

        if (stopRequested(*this)) {
            reason = "stopped\n";
            break;
        }
        if (places > 1) reportLines(iteration, places);
        if (mateFound(root.bestScore, root.request.mateMoves)) {
            reason = "mate found\n";
            break;
        }
        if (!timeControl.infinite.load(std::memory_order_relaxed)) {
            if (MATE - std::abs(root.bestScore) <= iteration + 1) {
                reason = "(optimal)\n";
                break;
            }
            // A search among chosen moves goes on with a single one: the GUI asked for its score.
            if (iteration > 1 && root.legalCount.load(std::memory_order_relaxed) == 1) {
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
        // The lines keep their order; the moves after them are ordered by their trees.
        sortRootMoves(root.moves + places, root.moves + count);
    }

    root.endingReason = reason;
    printLine(*this, root.bestScore, reason);
    if (SearchListener* listener = root.request.listener) {
        SearchReport last = report(iterationDepth(), root.bestScore, bestMove());
        if (places > 1) last.multipv = 1;
        listener->finish(last);
    }
    stopAllThreads();
    waitForWorkers();
    if (root.request.statistics) logStatistics(*this);
}

// A searched root move with an exact score takes its place among the first places of the list: the
// place below every move that scores at least as much. The move at index was searched with the root
// position back on the board; its line is checked, and it moves in front of the place it takes, the
// last place (when the list already holds them all) dropping out. A new best move is reported at once
// in a one-line search, printed, and named by the root's table entry.
void SearchThread::takePlace(int d, int index, int places, int score, Move made) {
    RootDriver& root = *driver;
    const int last = std::min(index, places - 1);
    int place = 0;
    while (place < last && root.moves[place].score >= score) ++place;
    std::rotate(root.moves + place, root.moves + index, root.moves + index + 1);
    copyLine(*this, 0, made);
    trimRootLine();
    std::copy(pv[0], pv[0] + MAX_PLY, root.lines[last].moves);
    std::rotate(root.lines + place, root.lines + last, root.lines + last + 1);
    if (place > 0) {
        std::copy(root.lines[0].moves, root.lines[0].moves + MAX_PLY, pv[0]);
        return;
    }
    root.bestScore = score;
    SearchListener* listener = root.request.listener;
    if (listener && places == 1) listener->reportLine(report(d, score, made));
    printLine(*this, score, nullptr);
    storeEntry(*this, 0, plainMove(made), score, d, TT_LOWER);
}

// The lines of a search for several, best first, once the iteration has found them all.
void SearchThread::reportLines(int d, int places) {
    SearchListener* listener = driver->request.listener;
    if (!listener) return;
    for (int i = 0; i < places; ++i) {
        const RootMove& root = driver->moves[i];
        SearchReport line = report(d, root.score, root.move);
        line.line = driver->lines[i].moves;
        line.multipv = i + 1;
        listener->reportLine(line);
    }
}

// Before the first iteration the moves are ordered by their quiescence score. After each iteration
// every move's key is the size of the tree it took, the best move's included: a move that was hard to
// refute is the likeliest to take over next, and a best move displaced by a take-over, searched with
// the full window, keeps a large tree and so the second place.
void SearchThread::recordTreeSize(RootMove& searched, uint64_t nodesBefore, int score) {
    searched.key = static_cast<int32_t>(std::min<uint64_t>(totalNodes() - nodesBefore, INT32_MAX));
    searched.score = score;
}

// One iteration: the moves of the first places each with the full window, for their exact scores; the
// others with a null window around the score of the last place, re-searched in full when they fail
// high. With one place this is a principal variation search of the root.
void SearchThread::searchRoot(int d, int places) {
    RootDriver& root = *driver;
    const int count = root.count.load(std::memory_order_relaxed);
    const SavedState saved = saveState(board);
    SearchListener* listener = root.request.listener;

    // The first places: the first move sets the score to beat.
    for (int i = 0; i < places; ++i) {
        if (i > 0 && stopRequested(*this)) return;
        const Move made = makeMove(board, root.moves[i].move);
        if (listener) listener->reportMove(report(d, root.bestScore, bestMove()), i, made);
        const uint64_t before = totalNodes();
        const int score = -alphaBeta(*this, 1, -MATE, MATE, d - 1, made, NODE_PV);
        takeBack(board, made, saved);
        if (i == 0 ? stopRequested(*this) : stop.load(std::memory_order_relaxed)) return;
        recordTreeSize(root.moves[i], before, score);
        takePlace(d, i, places, score, made);
        if (i == 0) timeControl.checkScoreDrop(score);
    }

    // The others must prove they are better than the last place.
    for (int i = places; i < count; ++i) {
        if (stopRequested(*this)) return;
        const int bound = root.moves[places - 1].score;
        const Move made = makeMove(board, root.moves[i].move);
        if (listener) listener->reportMove(report(d, root.bestScore, bestMove()), i, made);
        const uint64_t before = totalNodes();
        bool confirmed = false;
        int score = -alphaBeta(*this, 1, -bound - 1, -bound, d - 1, made, NODE_CUT);
        if (score > bound && !stop.load(std::memory_order_relaxed)) {
            timeControl.enterFailHighPhase();
            char mark[32];
            std::snprintf(mark, sizeof mark, "++%i/%i", i + 1, count);
            printMove(*this, score, made, mark);
            score = -alphaBeta(*this, 1, -MATE, -bound, d - 1, made, NODE_PV);
            if (!stop.load(std::memory_order_relaxed)) {
                confirmed = score > bound;
                if (!confirmed) printMove(*this, score, made, "--");
            }
            timeControl.leaveFailHighPhase();
        }
        takeBack(board, made, saved);
        if (stop.load(std::memory_order_relaxed)) return;
        recordTreeSize(root.moves[i], before, score);
        if (confirmed) takePlace(d, i, places, score, made);
    }
}
