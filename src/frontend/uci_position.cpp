// "position": sets up the game board from "startpos" or a FEN and plays the moves after "moves".
#include <string>

#include "board/gamemove.h"
#include "board/notation.h"
#include "frontend/uci.h"

void Uci::position() {
    traceMessage("position()...");

    // The new status, and a search that the GUI forgot to stop.
    int old = exchangeStatus(POSITION);
    if (old == POSITION) log.info("uci: 2x position?\n");
    if (old == SEARCHING || old == PONDER) {
        log.warning("position(): search still running? status=\n");
        traceMessage("position: not stopped? stopping!...");
        stopSearch();
        traceMessage("position: stopped.");
        // The stopped search has answered its "go" and left the status idle; the new position stands.
        setStatus(POSITION);
    }
    // A search that has just reported its end may still be winding down; the board is its input.
    searchThread.waitIdle();

    // The position itself; any other first word leaves the board as it is.
    String word = nextArg();
    if (word == "startpos") {
        gameBoard.setFen(START_FEN);
        word = nextArg();
    } else if (word == "fen") {
        std::string fen;
        for (word = nextArg(); !word.empty() && !(word == "moves"); word = nextArg()) {
            if (!fen.empty()) fen += ' ';
            fen += word.c_str();
        }
        if (!gameBoard.setFen(fen.c_str())) {
            // An unreadable FEN leaves no usable position; the start position is the safe fallback.
            log.warning("WARNING invalid FEN from GUI: %s\n", fen.c_str());
            gameBoard.setFen(START_FEN);
            word = String();
        }
    } else {
        traceMessage("position() ok");
        return;
    }

    // The moves; the first one that is no move or not legal ends the list.
    bool reachedOutOfBook = false;
    if (word == "moves") {
        for (word = nextArg(); !word.empty(); word = nextArg()) {
            if (word.c_str()[0] == '.') {
                log.info("SKIP continuation move: %s\n", word.c_str());
                continue;
            }
            const Move move = isMove(gameBoard, word.c_str());
            if (move == NO_MOVE) {
                log.warning("WARNING invalid move from GUI: %s\n", word.c_str());
                break;
            }
            if (playGameMove(gameBoard, move) == NO_MOVE) {
                log.warning("illegal move: %s\n", word.c_str());
                break;
            }
            if (gameBoard.hash == outOfBookKey) reachedOutOfBook = true;
        }
    }

    // A GUI that starts a new game without "ucinewgame" never passes the position where the
    // last game left the book: that game is over, and the book is open again.
    if (!reachedOutOfBook && outOfBookPly != 0) {
        traceMessage("newgame!");
        reopenBook();
    }

    // The history is not taken back from here, so the piece lists can be closed up.
    gameBoard.compactPieceLists();
    if (FILE* logFile = Log::stream()) gameBoard.print(logFile, 0);
    traceMessage("position() ok");
}
