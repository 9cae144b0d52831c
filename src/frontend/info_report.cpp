#include "frontend/info_report.h"

#include <algorithm>
#include <cstdio>

#include "frontend/uci.h"
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

std::string infoLineText(int depth, int score, const char* clockFields) {
    char field[64];
    std::string line;
    snprintf(field, sizeof field, "info depth %u seldepth %u", unsigned(depth),
             unsigned(searchThread.seldepth));
    line += field;
    uciScoreText(field, score);
    line += field;
    line += clockFields;
    const Move* pv = searchThread.principalVariation();
    for (int i = 0; i < MAX_PLY && pv[i] != NO_MOVE; i++) {
        uciMoveText(field, pv[i]);
        line += field;
        line += ' ';
    }
    line += '\n';
    return line;
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
