// "go", "ponderhit" and "stop": starting the search with its limits, and who answers with "bestmove".
#include <cstdlib>

#include "book/book.h"
#include "frontend/time_limits.h"
#include "frontend/uci.h"
#include "search/timecontrol.h"

bool Uci::playBookMove() {
    if (outOfBook.ply != 0) return false;
    Move move = ownBook ? book.pick(gameBoard) : NO_MOVE;
    if (move != NO_MOVE) {
        printBestmove(move, NO_MOVE);
        traceMessage("go()...ok [book]");
        return true;
    }
    // The first search out of book: from here on the book stays shut until a new game.
    outOfBook.ply = gameBoard.gamePly() + 1;
    outOfBook.keyHigh = highHalf(gameBoard.hash);
    outOfBook.keyLow = lowHalf(gameBoard.hash);
    log.info("Uci:First search out of book is at %u ply\n", outOfBook.ply);
    return false;
}

void Uci::go() {
    traceMessage("go()...");
    // A "go" on top of a running search: that search answers its own "go" first.
    int current;
    {
        std::lock_guard<std::mutex> lock(statusLock);
        current = status;
        answerWithheld = false;  // an answer the GUI never asked for is dropped
    }
    if (current == SEARCHING || current == PONDER) stopSearch();
    searchThread.waitIdle();

    // The limits.
    int wtime = -1, btime = -1, winc = 0, binc = 0, depth = 0, movesToGo = 0, movetime = -1;
    int nodes = 0;  // read and left unused: the search knows no node limit
    bool infinite = false;
    int newStatus = SEARCHING;
    const struct {
        const char* word;
        int* value;
    } numbers[] = {{"wtime", &wtime}, {"btime", &btime}, {"winc", &winc},         {"binc", &binc},
                   {"depth", &depth}, {"nodes", &nodes}, {"movetime", &movetime}, {"movestogo", &movesToGo}};
    for (String word = nextArg(); !word.empty() || !args.empty(); word = nextArg()) {
        if (word == "infinite") {
            infinite = true;
        } else if (word == "ponder") {
            log.info("START pondering\n");
            infinite = true;
            newStatus = PONDER;
        } else {
            for (const auto& number : numbers)
                if (word == number.word) *number.value = atoi(nextArg().c_str());
        }
    }

    // The book. A ponder search must not answer before "ponderhit" or "stop", so it searches
    // even on a book position; the book is asked again when the engine itself is to move.
    if (newStatus != PONDER && playBookMove()) return;

    // The status; a "go" out of turn still searches.
    int old = exchangeStatus(newStatus);
    if (old != POSITION) log.warning("Expected current status==POSITION, got %i\n", old);

    // Depth and clock.
    searchThread.maxDepth = depth;
    setTimeLimits(outOfBook.ply, wtime, btime, winc, binc, movesToGo, movetime, infinite);

    // The search runs on its own thread; input goes on being read meanwhile.
    reported = Reported();
    searchThread.listener = this;
    searchThread.echoLines = false;
    searchThread.startSearch(false);
    traceMessage("go() ok");
}

void Uci::ponderhit() {
    traceMessage("ponderhit()...");
    bool withheld;
    switch (exchangeStatus(SEARCHING, &withheld)) {
        case IDLE:
            setStatus(IDLE);
            if (!withheld) {
                log.warning("uci::ponderhit after the bestmove was sent, ignored\n");
                break;
            }
            // The ponder search ended before the opponent moved; its answer was held back until now.
            log.info("Uci:ponderhit(): already finished\n");
            printInfoLine(searchThread.depth, searchThread.bestScore);
            printBestmove(searchThread.bestMove(), searchThread.ponderMove());
            break;
        case POSITION:
            log.warning("uci:: ponderhit without preceeding go(): send bestmove 0000\n");
            setStatus(POSITION);
            printBestmove(NO_MOVE, NO_MOVE);
            break;
        case PONDER:
            searchThread.ponderhit();
            break;
        case SEARCHING:
            log.warning("uci::ponderhit status==SEARCHING, ponderhit ignored\n");
            break;
    }
    traceMessage("ponderhit() ok");
}

void Uci::stop() {
    traceMessage("stop()...");
    bool withheld;
    const int old = exchangeStatus(IDLE, &withheld);
    // A console search runs outside the protocol status: "stop" typed at the console ends it.
    if (old != SEARCHING && old != PONDER && !searchThread.isIdle()) stopSearch();
    switch (old) {
        case IDLE:
            if (!withheld) {
                log.warning("uci::stop after the bestmove was sent, ignored\n");
                break;
            }
            // The ponder search ended before the opponent moved: its withheld answer, without ponder move.
            printInfoLine(searchThread.depth, searchThread.bestScore);
            printBestmove(searchThread.bestMove(), NO_MOVE);
            break;
        case POSITION:
            log.warning("uci:: stop without preceeding go?\n");
            printBestmove(NO_MOVE, NO_MOVE);
            break;
        case SEARCHING:
        case PONDER:
            // The status is no longer PONDER, so the search's finish prints the bestmove.
            log.info("uci:stop() START\n");
            stopSearch();
            log.info("uci:stop() END\n");
            break;
    }
    traceMessage("stop() ok");
}
