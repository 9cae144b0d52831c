// "go", "ponderhit" and "stop": starting the search, and who answers with "bestmove".
#include <cstdio>

#include "board/makemove.h"
#include "board/notation.h"
#include "frontend/protocol_log.h"
#include "frontend/uci.h"

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
    startGo(readGoWords(args, gameBoard));
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
            sendWithheldAnswer(true);
            break;
        case POSITION:
            log.warning("uci:: ponderhit without preceeding go(): send bestmove 0000\n");
            setStatus(POSITION);
            answer(NO_MOVE, NO_MOVE);
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
            sendWithheldAnswer(false);
            break;
        case POSITION:
            log.warning("uci:: stop without preceeding go?\n");
            answer(NO_MOVE, NO_MOVE);
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

void Uci::answer(Move best, Move ponder) {
    char bestText[8], ponderText[8];
    uciMoveText(bestText, best);
    uciMoveText(ponderText, ponder);
    // The log's texts are made before the GUI hears the move and may set up the next position. The
    // ponder move is written on the position after the best move.
    char bestLog[MOVE_TEXT_SIZE], ponderLog[MOVE_TEXT_SIZE] = "";
    moveToText(gameBoard, bestLog, best);
    if (ponder != NO_MOVE) {
        Board after = gameBoard;
        if (best != NO_MOVE && makeMove(after, best) != NO_MOVE) moveToText(after, ponderLog, ponder);
    }
    if (ponder != NO_MOVE)
        send("bestmove %s ponder %s\n", bestText, ponderText);
    else
        send("bestmove %s\n", bestText);
    logBestmove(best, bestLog, ponder, ponderLog);
}
