// What the UCI and the xboard handler share: the command-table loop, the protocol status with its
// lock, the output lock, the trace, the book at "go", starting the search with its request, and the
// search's reports as "info" lines. Each protocol keeps its command table, its commands and its texts.
//
// Threads: handleCommand runs on the main thread, the SearchListener calls on the search thread.
// - status is read and changed only under statusLock, each read-and-set as one step, so when a search
//   ends while a command stops it or calls it off, whoever sees the status first decides what becomes
//   of its answer;
// - a ponder search that ends by itself leaves answerWithheld set with the status, and its final
//   report in withheld: only then does a later command send that answer;
// - every text written to the GUI is written and flushed under outputLock, so lines never interleave;
// - the reporting record is written by the search thread only (the start of a search clears it);
// - everything else belongs to the main thread. Waiting for the search happens outside both locks.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <span>
#include <string>

#include "board/move.h"
#include "frontend/go_limits.h"
#include "frontend/info_report.h"
#include "frontend/util/log.h"
#include "frontend/util/string.h"
#include "platform/platform.h"
#include "search/searchthread.h"

// The protocol status; names in trace lines "_idle_", "pos", "search", "ponder".
enum ProtocolStatus { IDLE = 0, POSITION = 1, SEARCHING = 2, PONDER = 3 };

// Where the two protocols differ in the shared parts.
struct ProtocolDialect {
    const char* unknownCommand;  // traced before an unknown command word in protocol mode
    int goStatus;                // the status a search is started from in turn
    bool signedFigures;          // the info line writes time, nodes and speed as signed numbers
    bool idleDropsAnswer;        // a search that ends with the status IDLE was called off: no answer
};

class Protocol : public SearchListener {
  public:
    Protocol(FILE* output, const ProtocolDialect& texts) : out(output), dialect(texts) {}

    void finish(const SearchReport& report) override;
    void reportLine(const SearchReport& report) override;
    void reportMove(const SearchReport& report, int moveIndex, Move move) override;

    String logDir;                         // directory for the protocol logs; empty: no log file
    uint8_t ownBook = 1;                   // consult the book before searching
    uint8_t trace = 0;                     // echo trace messages to the GUI
    int lines = 1;                         // principal variations a search reports (MultiPV)
    int overheadMs = DEFAULT_OVERHEAD_MS;  // held back from the clock (Move Overhead)

  protected:
    template <class Handler>
    struct Command {
        const char* word;
        void (Handler::*run)();
    };

    // One input line: logged in protocol mode, the rest kept as the argument text, and the command of
    // the table run; 1 when it was. An empty command is taken exactly in protocol mode.
    template <class Handler>
    int runCommand(std::span<const Command<Handler>> table, uint8_t mode, const char* command,
                   const char* rest);

    // Answers with the engine's move: "bestmove" or "move".
    virtual void answer(Move best, Move ponder) = 0;

    // The next word of the argument text, and that word read as a number (as atoi reads it).
    String nextArg();
    int nextNumber();
    // Answers a "go" with these limits from the book, or starts the search on its own thread. The book
    // is not asked for a ponder search nor for one among chosen moves.
    void startGo(const GoLimits& limits);
    // The book is consulted again at the next "go": a new game.
    void reopenBook() {
        outOfBookPly = 0;
        outOfBookKey = 0;
    }
    // Sends the answer of a ponder search that ended before the opponent moved.
    void sendWithheldAnswer(bool withPonder);

    // withheld, when given, takes the note of an answer held back by the ponder search.
    int exchangeStatus(int newStatus, bool* withheld = nullptr);
    void setStatus(int newStatus);
    int currentStatus();
    // Writes the message to the log and, with trace set, to the GUI.
    void traceMessage(const char* message);
    // Writes text to the GUI under the output lock and flushes it.
    void send(const char* format, ...) __attribute__((format(printf, 2, 3)));
    // Ends the process at once, without stopping a running search: exit handlers and destructors would
    // run while the search still reads the tables. logLine (may be null) goes to the log first.
    [[noreturn]] void quitAtOnce(const char* logLine);

    // The first search out of book: ply 0 while the game is still in book, and that position's key.
    uint32_t outOfBookPly = 0;
    uint64_t outOfBookKey = 0;
    String args;  // the rest of the line being handled, consumed word by word
    Log log;
    FILE* out;
    std::mutex outputLock;
    std::mutex statusLock;
    int status = IDLE;
    bool answerWithheld = false;

  private:
    bool playBookMove();
    void printInfoLine(const SearchReport& report);

    const ProtocolDialect& dialect;
    Reported reported;
    SearchReport withheldReport;  // the final report of a ponder search that ended by itself
};

// Move text of the protocol: from-square, to-square and a small promotion letter (e7e8q); "0000" for
// no move. text holds at least 6 characters.
void uciMoveText(char* text, Move move);

// The score of an "info" line: " score mate n" at or beyond the mate bounds (n < 0 when the side to
// move is mated), else " score cp n". The constants differ by one on purpose: mating in n moves scores
// 30000 - (2n - 1), being mated in n moves -(30000 - 2n). text holds at least 24 characters.
void uciScoreText(char* text, int score);

template <class Handler>
int Protocol::runCommand(std::span<const Command<Handler>> table, uint8_t mode, const char* command,
                         const char* rest) {
    if (command[0] == 0) return mode;
    if (mode) log.info("%010u:%s%s\n", platform::getTickCount(), command, rest);
    while (*rest == ' ') rest++;
    args = String(rest);
    for (const Command<Handler>& entry : table) {
        if (strcmp(command, entry.word) != 0) continue;
        (static_cast<Handler*>(this)->*entry.run)();
        fflush(out);
        if (FILE* logFile = Log::stream()) fflush(logFile);
        return 1;
    }
    if (mode) {
        const std::string message = std::string(dialect.unknownCommand) + command;
        traceMessage(message.c_str());
    }
    return 0;
}
