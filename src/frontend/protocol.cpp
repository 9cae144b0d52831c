#include "frontend/protocol.h"

#include <cstdarg>
#include <cstdlib>

#include "board/board.h"
#include "book/book.h"
#include "frontend/uci.h"

namespace {

const char* const STATUS_NAMES[] = {"_idle_", "pos", "search", "ponder"};

// The clock of the side to move on the game board. The first moves after the book get more time:
// the table holds nothing yet to build on.
ClockLimits clockLimits(const GoLimits& limits, uint32_t outOfBookPly, int overheadMs) {
    const bool white = gameBoard.sideToMove == 0;
    ClockLimits clock{.clockMs = white ? limits.wtime : limits.btime,
                      .incMs = white ? limits.winc : limits.binc,
                      .movesToGo = limits.movesToGo,
                      .moveTimeMs = limits.movetime,
                      .overheadMs = overheadMs};
    const uint32_t p = outOfBookPly;
    if (p != 0 && gameBoard.gamePly() + 1 >= p) clock.outOfBook = int((gameBoard.gamePly() + 1 - p) >> 1) + 1;
    return clock;
}

}  // namespace

String Protocol::nextArg() {
    return String::nextWord(args, " \t");
}

int Protocol::nextNumber() {
    return atoi(nextArg().c_str());
}

int Protocol::exchangeStatus(int newStatus, bool* withheldNote) {
    std::lock_guard<std::mutex> lock(statusLock);
    const int old = status;
    status = newStatus;
    if (withheldNote) {
        *withheldNote = answerWithheld;
        answerWithheld = false;
    }
    return old;
}

void Protocol::setStatus(int newStatus) {
    std::lock_guard<std::mutex> lock(statusLock);
    status = newStatus;
}

int Protocol::currentStatus() {
    std::lock_guard<std::mutex> lock(statusLock);
    return status;
}

void Protocol::traceMessage(const char* message) {
    const uint32_t tick = platform::getTickCount();
    log.info("%010u:%s%s\n", tick, message, "");
    if (!trace) return;
    const char* name = STATUS_NAMES[currentStatus()];
    std::lock_guard<std::mutex> lock(outputLock);
    fprintf(out, "trace %010u[%s]: %s\n", tick, name, message);
    fflush(out);
}

void Protocol::send(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::lock_guard<std::mutex> lock(outputLock);
    vfprintf(out, format, arguments);
    fflush(out);
    va_end(arguments);
}

void Protocol::quitAtOnce(const char* logLine) {
    fflush(out);
    if (logLine) log.info("%s", logLine);
    fflush(nullptr);
    std::_Exit(0);
}

bool Protocol::playBookMove() {
    if (outOfBookPly != 0) return false;
    const Move move = ownBook ? book.pick(gameBoard) : NO_MOVE;
    if (move != NO_MOVE) {
        answer(move, NO_MOVE);
        traceMessage("go()...ok [book]");
        return true;
    }
    // The first search out of book: from here on the book stays shut until a new game.
    outOfBookPly = gameBoard.gamePly() + 1;
    outOfBookKey = gameBoard.hash;
    log.info("Uci:First search out of book is at %u ply\n", outOfBookPly);
    return false;
}

void Protocol::startGo(const GoLimits& limits) {
    if (limits.ponder) log.info("START pondering\n");

    // The book. A ponder search must not answer before the engine is to move, so it searches even on
    // a book position; the book is asked again when the engine itself is to move.
    if (!limits.ponder && limits.searchMoves.empty() && playBookMove()) return;

    // The status; a search out of turn still runs.
    const int old = exchangeStatus(limits.ponder ? PONDER : SEARCHING);
    if (old != dialect.goStatus)
        log.warning("Expected current status==%s, got %i\n", dialect.goStatus == IDLE ? "IDLE" : "POSITION",
                    old);

    // The search runs on its own thread; input goes on being read meanwhile.
    SearchRequest request;
    request.board = gameBoard;
    request.maxDepth = limits.depth;
    request.infinite = limits.infinite;
    request.lines = lines;
    request.searchMoves = limits.searchMoves;
    request.mateMoves = limits.mate;
    request.clock = clockLimits(limits, outOfBookPly, overheadMs);
    request.listener = this;
    reported = Reported();
    searchThread.startSearch(request, false);
    traceMessage("go() ok");
}

void Protocol::printInfoLine(const SearchReport& report) {
    const uint64_t nps = speed(report.nodes, report.ms);
    char field[64];
    if (dialect.signedFigures)
        snprintf(field, sizeof field, " time %i nodes %i nps %i pv ", int(report.ms), int(report.nodes),
                 int(nps));
    else
        snprintf(field, sizeof field, " time %u nodes %llu nps %llu pv ", report.ms,
                 (unsigned long long)report.nodes, (unsigned long long)nps);
    const std::string line = infoLineText(report, field);
    std::lock_guard<std::mutex> lock(outputLock);
    fputs(line.c_str(), out);
    fflush(out);
}

// The lines of a search for several come all together once per iteration, and each is printed.
void Protocol::reportLine(const SearchReport& report) {
    const bool due =
        report.multipv > 1 || reported.lineDue(report.depth, report.score, report.best, report.ms);
    if (due || report.multipv > 0) printInfoLine(report);
}

void Protocol::reportMove(const SearchReport& report, int moveIndex, Move move) {
    if (!reported.moveDue(moveIndex, report.ms)) return;
    char text[8], time[16];
    uciMoveText(text, move);
    if (dialect.signedFigures)
        snprintf(time, sizeof time, "%i", int(report.ms));
    else
        snprintf(time, sizeof time, "%u", report.ms);
    std::lock_guard<std::mutex> lock(outputLock);
    if (moveIndex == 0) fprintf(out, "info depth %u\n", unsigned(report.depth));
    fprintf(out, "info currmove %s currmovenumber %u time %s nodes %llu nps %llu hashfull %u\n", text,
            unsigned(moveIndex + 1), time, (unsigned long long)report.nodes,
            (unsigned long long)speed(report.nodes, report.ms), report.hashfull);
    fflush(out);
}

void Protocol::finish(const SearchReport& report) {
    traceMessage("finished()...");
    int old;
    {
        std::lock_guard<std::mutex> lock(statusLock);
        old = status;
        status = IDLE;
        answerWithheld = old == PONDER;
        if (answerWithheld) withheldReport = report;
    }
    if (old == PONDER) {
        // No answer before the opponent's move is known: a later command sends it.
        log.info("Uci:finish() delay sending bestmove, status is still 'pondering'\n");
    } else if (old == IDLE && dialect.idleDropsAnswer) {
        // Called off by a command that changed the game: its move belongs to no position any more.
        log.info("xboard: finish() after the search was called off, move dropped\n");
    } else {
        printInfoLine(report);
        answer(report.best, report.ponder);
    }
    traceMessage("finished() ok");
}

void Protocol::sendWithheldAnswer(bool withPonder) {
    printInfoLine(withheldReport);
    answer(withheldReport.best, withPonder ? withheldReport.ponder : NO_MOVE);
}
