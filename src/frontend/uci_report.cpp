// The search's reports as "info" lines, and the "bestmove" answer.
#include <algorithm>
#include <cstdio>
#include <string>

#include "board/makemove.h"
#include "board/notation.h"
#include "frontend/protocol_log.h"
#include "frontend/uci.h"
#include "platform/platform.h"
#include "search/timecontrol.h"
#include "search/tt.h"

namespace {

// Lines of current moves come at most this often, apart from the first root move of an iteration.
constexpr uint32_t CURRMOVE_INTERVAL_MS = 100;
// An unchanged line is repeated only when it has held this many iterations.
constexpr int STABLE_DEPTHS = 8;

// Speed as nodes per millisecond: the figure GUIs have always been shown by this engine.
uint64_t speed(uint64_t nodes, uint32_t ms) {
    return nodes / std::max<uint32_t>(ms, 1);
}

// Per mille of the table taken over from earlier searches in this one.
unsigned hashfull() {
    uint64_t taken = 0;
    for (const SearchThread& thread : searchThreads)
        taken += thread.stats.ttReplacements.get() - thread.stats.ttSameAgeReplacements.get();
    uint32_t entries = tt.entryCount();
    return entries == 0 ? 0 : unsigned(std::min<uint64_t>(taken * 1000 / entries, 1000));
}

}  // namespace

void Uci::printInfoLine(int depth, int score) {
    const uint32_t ms = timeControl.elapsed();
    const uint64_t nodes = totalNodes();
    char field[64];
    std::string line;
    snprintf(field, sizeof field, "info depth %u seldepth %u", unsigned(depth),
             unsigned(searchThread.seldepth));
    line += field;
    uciScoreText(field, score);
    line += field;
    snprintf(field, sizeof field, " time %u nodes %llu nps %llu pv ", ms, (unsigned long long)nodes,
             (unsigned long long)speed(nodes, ms));
    line += field;
    const Move* pv = searchThread.principalVariation();
    for (int i = 0; i < MAX_PLY && pv[i] != NO_MOVE; i++) {
        uciMoveText(field, pv[i]);
        line += field;
        line += ' ';
    }
    line += '\n';
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
    logAnswer("<--bestmove ", bestLog);
    if (ponder != NO_MOVE) logAnswer("<--ponder ", ponderLog);
    if (best == NO_MOVE) log.warning("No move generated! bm=%x\n", best);
}

void Uci::reportLine(int depth, int score, Move best) {
    const uint32_t ms = timeControl.elapsed();
    const bool same = score == reported.score && best == reported.move;
    reported.stable = same && depth - reported.depth > STABLE_DEPTHS;
    if (reported.stable && ms < reported.nextReportMs) return;
    printInfoLine(depth, score);
    if (!same) {
        reported.depth = depth;
        reported.score = score;
        reported.move = best;
    }
}

void Uci::reportMove(int depth, int moveIndex, Move move) {
    const uint32_t ms = timeControl.elapsed();
    if ((moveIndex > 0 || reported.stable) && ms < reported.nextReportMs) return;
    reported.nextReportMs = ms + CURRMOVE_INTERVAL_MS;
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
