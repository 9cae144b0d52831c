// What the search writes about itself: principal-variation lines while it runs and the statistics
// block at its end. Lines go to the log and to the search's listener.
#pragma once

#include <string>

#include "board/move.h"
#include "search/searchthread.h"

// A count shortened to at most five digits: divided by 1024 per step of the unit " ", "k", "m", "g".
std::string formatCount(uint64_t count);
// The score as people read it: pawns with three decimals, "+3#" for a mate in three, raw centipawns
// for decided scores.
std::string formatScore(int score);

// The principal variation of the thread with its score; note (may be null) follows the line.
void printLine(SearchThread& thread, int score, const char* note);
// A root move that is being re-searched or failed to confirm, with its mark ("++2/20", "--").
void printMove(SearchThread& thread, int score, Move move, const char* mark);
// The statistics block of the finished search, summed over all threads.
void logStatistics(SearchThread& master);
