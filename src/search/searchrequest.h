// What a protocol asks of one search, handed whole to startSearch: the position, the limits, who
// hears the reports and what the search writes on the way. The search thread keeps its own copy while
// the search runs, so the protocol may set up the next position meanwhile, and nothing one starter
// asked for is left behind for the next.
#pragma once

#include <optional>
#include <vector>

#include "board/board.h"
#include "search/timecontrol.h"

class SearchListener;

struct SearchRequest {
    Board board{};                     // the position to search
    int maxDepth = 0;                  // 0: no limit
    int lines = 1;                     // best root moves each iteration finds with exact scores
    std::vector<Move> searchMoves;     // the root moves to search; empty: every legal move
    int mateMoves = 0;                 // a mate in this many moves or fewer ends the search; 0: none
    bool infinite = false;             // analysis and pondering: no time limit until ponderhit
    std::optional<ClockLimits> clock;  // none: the limits of the last search stand
    SearchListener* listener = nullptr;
    bool statistics = true;  // the statistics block in the log at the end
};
