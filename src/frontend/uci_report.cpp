// The search's reports as "info" lines, and the "bestmove" answer.
#include <cstdio>
#include <string>

#include "board/makemove.h"
#include "board/notation.h"
#include "frontend/info_report.h"
#include "frontend/protocol_log.h"
#include "frontend/uci.h"
#include "platform/platform.h"
#include "search/timecontrol.h"

void Uci::printInfoLine(int depth, int score) {
    const uint32_t ms = timeControl.elapsed();
    const uint64_t nodes = totalNodes();
    char field[64];
    snprintf(field, sizeof field, " time %u nodes %llu nps %llu pv ", ms, (unsigned long long)nodes,
             (unsigned long long)speed(nodes, ms));
    const std::string line = infoLineText(depth, score, field);
    std::lock_guard<std::mutex> lock(outputLock);
    fputs(line.c_str(), out);
    fflush(out);
}

void Uci::printBestmove(Move best, Move ponder) {
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
    {
        std::lock_guard<std::mutex> lock(outputLock);
        if (ponder != NO_MOVE)
            fprintf(out, "bestmove %s ponder %s\n", bestText, ponderText);
        else
            fprintf(out, "bestmove %s\n", bestText);
        fflush(out);
    }
    logBestmove(best, bestLog, ponder, ponderLog);
}

void Uci::reportLine(int depth, int score, Move best) {
    if (reported.lineDue(depth, score, best, timeControl.elapsed())) printInfoLine(depth, score);
}

void Uci::reportMove(int depth, int moveIndex, Move move) {
    const uint32_t ms = timeControl.elapsed();
    if (!reported.moveDue(moveIndex, ms)) return;
    const uint64_t nodes = totalNodes();
    char text[8];
    uciMoveText(text, move);
    std::lock_guard<std::mutex> lock(outputLock);
    if (moveIndex == 0) fprintf(out, "info depth %u\n", unsigned(depth));
    fprintf(out, "info currmove %s currmovenumber %u time %u nodes %llu nps %llu hashfull %u\n", text,
            unsigned(moveIndex + 1), ms, (unsigned long long)nodes, (unsigned long long)speed(nodes, ms),
            hashfull());
    fflush(out);
}

void Uci::finish(int depth, int score, Move best) {
    traceMessage("finished()...");
    bool heldBack;
    {
        std::lock_guard<std::mutex> lock(statusLock);
        heldBack = status == PONDER;
        status = IDLE;
        answerWithheld = heldBack;
    }
    if (heldBack) {
        // UCI allows no bestmove before "ponderhit" or "stop"; one of them sends it.
        log.info("Uci:finish() delay sending bestmove, status is still 'pondering'\n");
    } else {
        printInfoLine(depth, score);
        printBestmove(best, searchThread.ponderMove());
    }
    traceMessage("finished() ok");
}
