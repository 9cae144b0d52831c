// The game under xboard: moves from the GUI, taking them back, the clock, thinking on the engine's
// turn, and playing its move. The board's piece lists are never compacted, so every move played here
// can be taken back, as far as the history holds it: a long game drops the plies before its last
// capture or pawn move.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "board/gamemove.h"
#include "board/notation.h"
#include "frontend/protocol_log.h"
#include "frontend/xboard.h"

namespace {

// "level" gives the base time as minutes or minutes:seconds.
int baseTimeMs(const char* text) {
    const int minutes = atoi(text);
    const char* colon = strchr(text, ':');
    return (minutes * 60 + (colon ? atoi(colon + 1) : 0)) * 1000;
}

}  // namespace

Move Xboard::makeGameMove(Move move) {
    const uint32_t dropped = gameBoard.droppedPlies;
    SavedState saved;
    const Move made = playGameMove(gameBoard, move, &saved);
    if (gameBoard.droppedPlies != dropped) {
        // The board dropped the plies before its last capture or pawn move: those moves cannot be taken
        // back any more, and the ones it kept, all reversible, now count from its new start.
        const size_t held = gameBoard.ply - (made != NO_MOVE ? 1 : 0);
        const size_t kept = std::min(held, undoStack.size());
        undoStack.erase(undoStack.begin(), undoStack.end() - static_cast<std::ptrdiff_t>(kept));
        for (UndoEntry& entry : undoStack) entry.state.lastIrreversible = 0;
    }
    if (made == NO_MOVE) return NO_MOVE;
    undoStack.push_back({made, saved});
    return made;
}

void Xboard::usermove() {
    callOffSearch();
    const String text = nextArg();
    const Move move = positionValid ? isMove(gameBoard, text.c_str()) : NO_MOVE;
    if (move == NO_MOVE || makeGameMove(move) == NO_MOVE) {
        send("Illegal Move: %s\n", text.c_str());
        return;
    }
    think();
}

void Xboard::undo() {
    callOffSearch();
    if (undoStack.empty()) {
        send("tellusererror cannot undo\n");
        return;
    }
    const UndoEntry last = undoStack.back();
    undoStack.pop_back();
    takeBack(gameBoard, last.move, last.state);
}

// "level MPS BASE INC": moves per session (0: the whole game), base minutes[:seconds], increment in
// seconds.
void Xboard::level() {
    clock.movesPerSession = nextNumber();
    const String base = nextArg();
    clock.ownMs = clock.opponentMs = baseTimeMs(base.c_str());
    clock.incrementMs = nextNumber() * 1000;
    clock.moveTimeMs = -1;
}

// "st N": N seconds for every move.
void Xboard::st() {
    clock.moveTimeMs = nextNumber() * 1000;
}

// "sd N": think no deeper than N plies.
void Xboard::sd() {
    clock.depth = nextNumber();
}

// "time N" and "otim N": the clocks in centiseconds, sent before each move.
void Xboard::time() {
    clock.ownMs = nextNumber() * 10;
}

void Xboard::otim() {
    clock.opponentMs = nextNumber() * 10;
}

void Xboard::think() {
    if (!positionValid || (engineSide != 0 && engineSide != 1) || engineSide != int(gameBoard.sideToMove))
        return;
    traceMessage("go()...");
    // The clock the GUI set; words after "go" may name others.
    const bool white = gameBoard.sideToMove == 0;
    GoLimits limits;
    limits.wtime = white ? clock.ownMs : clock.opponentMs;
    limits.btime = white ? clock.opponentMs : clock.ownMs;
    limits.winc = limits.binc = clock.incrementMs;
    limits.depth = clock.depth;
    limits.movetime = clock.moveTimeMs;
    if (clock.movesPerSession > 0)
        limits.movesToGo = clock.movesPerSession - int(gameBoard.gamePly() / 2) % clock.movesPerSession;
    startGo(limits);
}

void Xboard::callOffSearch() {
    bool dropped;
    const int old = exchangeStatus(IDLE, &dropped);
    if (old == SEARCHING || old == PONDER) {
        // The status is already IDLE, so finish drops the move: it belongs to a game that has moved on.
        log.info("xboard: search called off\n");
        searchThread.stopSearch();
    }
    // A search that has just reported its end may still be winding down; the board is its input.
    searchThread.waitIdle();
}

void Xboard::stop() {
    traceMessage("stop()...");
    int old;
    bool withheld;
    {
        // A ponder search stopped here answers like a normal one.
        std::lock_guard<std::mutex> lock(statusLock);
        old = status;
        if (old == PONDER) status = SEARCHING;
        withheld = answerWithheld;
        answerWithheld = false;
    }
    if (old == IDLE) {
        if (withheld) {
            sendWithheldAnswer(false);
        } else {
            log.warning("xboard:: stop without preceeding go?\n");
        }
    } else {
        log.info("uci:stop() START\n");
        searchThread.stopSearch();
        log.info("uci:stop() END\n");
    }
    traceMessage("stop() ok");
}

void Xboard::answer(Move best, Move ponder) {
    char text[8];
    uciMoveText(text, best);
    // The log names the moves in the board's own form, on the position before the move.
    char bestLog[MOVE_TEXT_SIZE], ponderLog[MOVE_TEXT_SIZE] = "";
    moveToText(gameBoard, bestLog, best);
    if (best != NO_MOVE && makeGameMove(best) == NO_MOVE)
        log.warning("move not played: %s\n", bestLog);
    else if (ponder != NO_MOVE)
        moveToText(gameBoard, ponderLog, ponder);
    send("move %s\n", text);
    logBestmove(best, bestLog, ponder, ponderLog);
}
