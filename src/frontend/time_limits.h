// The clock of a "go" as both protocols read it, handed to the search with its request.
#pragma once

#include <cstdint>

#include "search/timecontrol.h"

// The clock of the side to move on the game board. outOfBookPly is the ply of the first search out of
// book (0 while the game is in book); wtime and btime are -1 and movetime is -1 where none was given.
ClockLimits clockLimits(uint32_t outOfBookPly, int wtime, int btime, int winc, int binc, int movesToGo,
                        int movetime);
