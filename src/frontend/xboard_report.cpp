// The search's reports under xboard: "info" lines as the UCI handler writes them, and the "move" line
// that plays the engine's answer.
#include <cstdio>
#include <string>

#include "board/notation.h"
#include "frontend/info_report.h"
#include "frontend/protocol_log.h"
#include "frontend/xboard.h"
#include "platform/platform.h"
#include "search/timecontrol.h"

void Xboard::printInfoLine(int depth, int score) {
    const uint32_t ms = timeControl.elapsed();
    const uint64_t nodes = totalNodes();
    char field[64];
    // Signed here, unlike the UCI line: counts past 2^31 show negative, as they always have.
    snprintf(field, sizeof field, " time %i nodes %i nps %i pv ", int(ms), int(nodes), int(speed(nodes, ms)));
    const std::string line = infoLineText(depth, score, field);
    std::lock_guard<std::mutex> lock(outputLock);
    fputs(line.c_str(), out);
    fflush(out);
}

void Xboard::playMove(Move best, Move ponder) {
    char text[8];
    uciMoveText(text, best);
    // The log names the moves in the board's own form, on the position before the move.
    char bestLog[MOVE_TEXT_SIZE], ponderLog[MOVE_TEXT_SIZE] = "";
    moveToText(gameBoard, bestLog, best);
    if (best != NO_MOVE && makeGameMove(best) == NO_MOVE)
        log.warning("move not played: %s\n", bestLog);
    else if (ponder != NO_MOVE)
        moveToText(gameBoard, ponderLog, ponder);
    {
        std::lock_guard<std::mutex> lock(outputLock);
        fprintf(out, "move %s\n", text);
        fflush(out);
    }
    logBestmove(best, bestLog, ponder, ponderLog);
}

void Xboard::reportLine(int depth, int score, Move best) {
    if (reported.lineDue(depth, score, best, timeControl.elapsed())) printInfoLine(depth, score);
}

void Xboard::reportMove(int depth, int moveIndex, Move move) {
    const uint32_t ms = timeControl.elapsed();
    if (!reported.moveDue(moveIndex, ms)) return;
    const uint64_t nodes = totalNodes();
    char text[8];
    uciMoveText(text, move);
    std::lock_guard<std::mutex> lock(outputLock);
    if (moveIndex == 0) fprintf(out, "info depth %u\n", unsigned(depth));
    fprintf(out, "info currmove %s currmovenumber %u time %i nodes %llu nps %llu hashfull %u\n", text,
            unsigned(moveIndex + 1), int(ms), (unsigned long long)nodes, (unsigned long long)speed(nodes, ms),
            hashfull());
    fflush(out);
}

void Xboard::finish(int depth, int score, Move best) {
    traceMessage("finished()...");
    int old;
    {
        std::lock_guard<std::mutex> lock(statusLock);
        old = status;
        status = IDLE;
        if (old == PONDER) resultWithheld = true;
    }
    if (old == PONDER) {
        // A ponder search must not answer on its own; stop sends its move.
        log.info("Uci:finish() delay sending bestmove, status is still 'pondering'\n");
    } else if (old == IDLE) {
        // Called off by a command that changed the game: its move belongs to no position any more.
        log.info("xboard: finish() after the search was called off, move dropped\n");
    } else {
        printInfoLine(depth, score);
        playMove(best, searchThread.ponderMove());
    }
    traceMessage("finished() ok");
}
