#include "frontend/time_limits.h"

#include "board/board.h"
#include "frontend/uci.h"
#include "frontend/util/log.h"
#include "search/timecontrol.h"

void setTimeLimits(uint32_t outOfBookPly, int wtime, int btime, int winc, int binc, int movesToGo,
                   int movetime, bool infinite) {
    Log log;
    timeControl.start();
    timeControl.infinite = infinite;
    // The first moves after the book get more time: the table holds nothing yet to build on.
    timeControl.outOfBook = 0;
    const uint32_t p = outOfBookPly;
    if (p != 0 && gameBoard.gamePly() + 1 >= p) {
        timeControl.outOfBook = int((gameBoard.gamePly() + 1 - p) >> 1) + 1;
        log.info("out of book=%i\n", timeControl.outOfBook);
    }

    if (movetime >= 0) {
        log.info("got hard moves/millis=%i/%i\n", movesToGo, movetime);
        timeControl.setMoveTime(movetime);
    } else {
        const bool white = gameBoard.sideToMove == 0;
        const int clock = white ? wtime : btime;
        if (clock >= 0) {
            log.info("got wb moves/millis=%i/%i\n", movesToGo, clock);
            timeControl.setClock(movesToGo, usableClock(clock), white ? winc : binc);
        } else {
            // Depth, an infinite search or the last limits end this one.
            log.warning("NO TIME CALCULATED\n");
        }
    }
    log.info("Nominal search time is %3.2f seconds, infinite=%i\n", timeControl.phaseLimit[2] / 1000.0,
             int(timeControl.infinite.load()));
}
