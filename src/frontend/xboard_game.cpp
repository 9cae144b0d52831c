// The game under xboard: moves from the GUI, taking them back, the clock, and thinking on the engine's
// turn. The board's piece lists are never compacted, so every move played here can be taken back, as
// far as the history holds it: a long game drops the plies before its last capture or pawn move.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "board/gamemove.h"
#include "board/notation.h"
#include "book/book.h"
#include "frontend/time_limits.h"
#include "frontend/xboard.h"
#include "search/timecontrol.h"

namespace {

String nextWord(String& source) {
    return String::nextWord(source, " \t");
}

int nextNumber(String& source) {
    return atoi(nextWord(source).c_str());
}

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
    const String text = nextWord(args);
    const Move move = positionValid ? isMove(gameBoard, text.c_str()) : NO_MOVE;
    if (move == NO_MOVE || makeGameMove(move) == NO_MOVE) {
        std::lock_guard<std::mutex> lock(outputLock);
        fprintf(out, "Illegal Move: %s\n", text.c_str());
        fflush(out);
        return;
    }
    think();
}

void Xboard::undo() {
    callOffSearch();
    if (undoStack.empty()) {
        std::lock_guard<std::mutex> lock(outputLock);
        fputs("tellusererror cannot undo\n", out);
        fflush(out);
        return;
    }
    const UndoEntry last = undoStack.back();
    undoStack.pop_back();
    takeBack(gameBoard, last.move, last.state);
}

// "level MPS BASE INC": moves per session (0: the whole game), base minutes[:seconds], increment in
// seconds.
void Xboard::level() {
    clock.movesPerSession = nextNumber(args);
    const String base = nextWord(args);
    clock.ownMs = clock.opponentMs = baseTimeMs(base.c_str());
    clock.incrementMs = nextNumber(args) * 1000;
    clock.moveTimeMs = -1;
}

// "st N": N seconds for every move.
void Xboard::st() {
    clock.moveTimeMs = nextNumber(args) * 1000;
}

// "sd N": think no deeper than N plies.
void Xboard::sd() {
    clock.depth = nextNumber(args);
}

// "time N" and "otim N": the clocks in centiseconds, sent before each move.
void Xboard::time() {
    clock.ownMs = nextNumber(args) * 10;
}

void Xboard::otim() {
    clock.opponentMs = nextNumber(args) * 10;
}

bool Xboard::playBookMove() {
    if (outOfBookPly != 0) return false;
    const Move move = ownBook ? book.pick(gameBoard) : NO_MOVE;
    if (move != NO_MOVE) {
        playMove(move, NO_MOVE);
        traceMessage("go()...ok [book]");
        return true;
    }
    // The first search out of book: from here on the book stays shut until a new game.
    outOfBookPly = gameBoard.gamePly() + 1;
    log.info("Uci:First search out of book is at %u ply\n", outOfBookPly);
    return false;
}

void Xboard::think() {
    if (!positionValid || (engineSide != 0 && engineSide != 1) || engineSide != int(gameBoard.sideToMove))
        return;
    traceMessage("go()...");

    // The limits: the clock the GUI set, unless the argument text names others.
    const bool white = gameBoard.sideToMove == 0;
    int wtime = white ? clock.ownMs : clock.opponentMs;
    int btime = white ? clock.opponentMs : clock.ownMs;
    int winc = clock.incrementMs, binc = clock.incrementMs, depth = clock.depth, movetime = clock.moveTimeMs;
    int movesToGo = 0;
    if (clock.movesPerSession > 0)
        movesToGo = clock.movesPerSession - int(gameBoard.gamePly() / 2) % clock.movesPerSession;
    bool infinite = false;
    int newStatus = SEARCHING;
    for (String word = nextWord(args); !word.empty() || !args.empty(); word = nextWord(args)) {
        if (word == "wtime")
            wtime = nextNumber(args);
        else if (word == "btime")
            btime = nextNumber(args);
        else if (word == "winc")
            winc = nextNumber(args);
        else if (word == "binc")
            binc = nextNumber(args);
        else if (word == "depth")
            depth = nextNumber(args);
        else if (word == "nodes")
            nextNumber(args);
        else if (word == "movetime")
            movetime = nextNumber(args);
        else if (word == "movestogo")
            movesToGo = nextNumber(args);
        else if (word == "infinite")
            infinite = true;
        else if (word == "ponder") {
            log.info("START pondering\n");
            infinite = true;
            newStatus = PONDER;
        }
    }

    // The book; a ponder search must not answer early, so it searches even a book position.
    if (newStatus != PONDER && playBookMove()) return;

    // The status; thinking out of turn still searches.
    const int old = exchangeStatus(newStatus);
    if (old != IDLE) log.warning("Expected current status==IDLE, got %i\n", old);

    // Depth and clock.
    searchThread.maxDepth = depth;
    setTimeLimits(outOfBookPly, wtime, btime, winc, binc, movesToGo, movetime, infinite);

    // The search runs on its own thread; input goes on being read meanwhile.
    reported = Reported();
    searchThread.listener = this;
    searchThread.echoLines = false;
    searchThread.startSearch(false);
    traceMessage("go() ok");
}

void Xboard::callOffSearch() {
    int old;
    {
        std::lock_guard<std::mutex> lock(statusLock);
        old = status;
        status = IDLE;
        resultWithheld = false;
    }
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
        withheld = resultWithheld;
        resultWithheld = false;
    }
    if (old == IDLE) {
        if (withheld) {
            printInfoLine(searchThread.depth, searchThread.bestScore);
            playMove(searchThread.bestMove(), NO_MOVE);
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
