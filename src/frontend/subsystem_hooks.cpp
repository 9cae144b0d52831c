#include "frontend/subsystem_hooks.h"

#include <cstdio>

#include "board/board.h"
#include "book/book.h"
#include "eval/egbb.h"
#include "search/tt.h"

// The board and evaluation tables are built by the compiler; the pawn tables come with the thread
// slots. What remains is the transposition table at its start-up size.
void initTables() { tt.alloc(64 * 1024); }

void setStartPosition() {
    gameBoard.setFen(START_FEN);
    gameBoard.print(stdout, 0);
}

bool openBookFile(const char* path, unsigned& positions) {
    if (!book.open(path)) return false;
    positions = book.records();
    return true;
}

void loadBitbases(const char* directory, int cacheMb) {
    if (egbb.load(directory)) egbb.init(cacheMb);
}

void resizeTt(int) {}
