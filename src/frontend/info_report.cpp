#include "frontend/info_report.h"

#include <algorithm>
#include <cstdio>

#include "frontend/protocol.h"

namespace {

// Lines of current moves come at most this often, apart from the first root move of an iteration.
constexpr uint32_t CURRMOVE_INTERVAL_MS = 100;
// An unchanged line is repeated only when it has held this many iterations.
constexpr int STABLE_DEPTHS = 8;

}  // namespace

uint64_t speed(uint64_t nodes, uint32_t ms) {
    return nodes / std::max<uint32_t>(ms, 1);
}

std::string infoLineText(const SearchReport& report, const char* clockFields) {
    char field[64];
    std::string line;
    snprintf(field, sizeof field, "info depth %u seldepth %u", unsigned(report.depth),
             unsigned(report.seldepth));
    line += field;
    if (report.multipv > 0) {
        snprintf(field, sizeof field, " multipv %i", report.multipv);
        line += field;
    }
    uciScoreText(field, report.score);
    line += field;
    line += clockFields;
    const Move* pv = report.line;
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
