#include "frontend/info_report.h"

#include <algorithm>

#include "search/searchthread.h"
#include "search/tt.h"

namespace {

// Lines of current moves come at most this often, apart from the first root move of an iteration.
constexpr uint32_t CURRMOVE_INTERVAL_MS = 100;
// An unchanged line is repeated only when it has held this many iterations.
constexpr int STABLE_DEPTHS = 8;

}  // namespace

uint64_t speed(uint64_t nodes, uint32_t ms) {
    return nodes / std::max<uint32_t>(ms, 1);
}

unsigned hashfull() {
    uint64_t taken = 0;
    for (const SearchThread& thread : searchThreads)
        taken += thread.stats.ttReplacements.get() - thread.stats.ttSameAgeReplacements.get();
    uint32_t entries = tt.entryCount();
    return entries == 0 ? 0 : unsigned(std::min<uint64_t>(taken * 1000 / entries, 1000));
}

bool Reported::lineDue(int lineDepth, int lineScore, Move best, uint32_t ms) {
    const bool same = lineScore == score && best == move;
    stable = same && lineDepth - depth > STABLE_DEPTHS;
    if (stable && ms < nextReportMs) return false;
    if (!same) {
        depth = lineDepth;
        score = lineScore;
        move = best;
    }
    return true;
}

bool Reported::moveDue(int moveIndex, uint32_t ms) {
    if ((moveIndex > 0 || stable) && ms < nextReportMs) return false;
    nextReportMs = ms + CURRMOVE_INTERVAL_MS;
    return true;
}
