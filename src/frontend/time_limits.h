// The clock of a search handed to the time control, the same for both protocols.
#pragma once

#include <cstdint>

// Starts the time control for a search on the game board. outOfBookPly is the ply of the first search
// out of book (0 while the game is in book); wtime and btime are -1 and movetime is -1 where none was
// given.
void setTimeLimits(uint32_t outOfBookPly, int wtime, int btime, int winc, int binc, int movesToGo,
                   int movetime, bool infinite);
