#include "frontend/startup.h"

#include <cstdio>

#include "board/board.h"
#include "search/searchthread.h"
#include "search/tt.h"

void initTables() {
    tt.alloc(64 * 1024);
}

void bootSearchThread() {
    searchThread.boot();
}

void setStartPosition() {
    gameBoard.setFen(START_FEN);
    gameBoard.print(stdout, 0);
}
