// The words of a "go", read into a value of their own before any search starts.
#pragma once

#include <vector>

#include "board/board.h"
#include "board/move.h"
#include "frontend/util/string.h"

// The limits of a "go" as its words give them; -1 where a time was not given.
struct GoLimits {
    int wtime = -1;
    int btime = -1;
    int winc = 0;
    int binc = 0;
    int depth = 0;
    int movesToGo = 0;
    int movetime = -1;
    int mate = 0;  // a mate in this many moves or fewer ends the search; 0: none
    bool infinite = false;
    bool ponder = false;
    std::vector<Move> searchMoves;  // the root moves to search; empty: all
};

// Reads the words in order; unknown words are skipped, and "nodes" is read and ignored (the search
// knows no node limit). The moves after "searchmoves" are read on board, up to the first word that is
// no legal move there, which is then read as a word of its own. A mate search without a clock runs
// until it finds the mate.
GoLimits readGoWords(String words, Board& board);
