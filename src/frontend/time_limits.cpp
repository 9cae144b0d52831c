#include "frontend/time_limits.h"

#include "board/board.h"

ClockLimits clockLimits(uint32_t outOfBookPly, int wtime, int btime, int winc, int binc, int movesToGo,
                        int movetime) {
    const bool white = gameBoard.sideToMove == 0;
    ClockLimits clock{white ? wtime : btime, white ? winc : binc, movesToGo, movetime, 0};
    // The first moves after the book get more time: the table holds nothing yet to build on.
    const uint32_t p = outOfBookPly;
    if (p != 0 && gameBoard.gamePly() + 1 >= p) clock.outOfBook = int((gameBoard.gamePly() + 1 - p) >> 1) + 1;
    return clock;
}
