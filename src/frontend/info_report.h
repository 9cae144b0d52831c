// What the "info" lines of both protocol handlers share: their figures, and when a line is due.
#pragma once

#include <cstdint>
#include <string>

#include "board/move.h"
#include "search/searchthread.h"

// Speed as nodes per millisecond: the figure GUIs have always been shown by this engine.
uint64_t speed(uint64_t nodes, uint32_t ms);

// The "info" line of a report, its newline included. clockFields is the " time .. nodes .. nps .. pv "
// part: the protocols write its numbers differently.
std::string infoLineText(const SearchReport& report, const char* clockFields);

// What the last "info" line said, to hold back repeats of an unchanged line. ms counts from the start
// of the search.
struct Reported {
    int depth = 0;
    int score = 0;
    Move move = NO_MOVE;
    bool stable = false;
    uint32_t nextReportMs = 0;  // throttled lines wait until then

    // Whether the line an iteration ended with is printed; notes it as the last one said.
    bool lineDue(int lineDepth, int lineScore, Move best, uint32_t ms);
    // Whether the current-move line of the root move at moveIndex is printed; starts the next wait.
    bool moveDue(int moveIndex, uint32_t ms);
};
