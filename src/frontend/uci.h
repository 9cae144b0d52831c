// The UCI protocol handler. The console loop offers it every input line first; it takes the
// protocol's commands in every mode and leaves the rest to the console. It starts and stops the
// search thread, turns the search's reports into "info" and "bestmove" lines, and keeps the protocol
// log file.
//
// Threads: handleCommand runs on the main thread, the SearchListener calls on the search thread.
// - status is read and changed only under statusLock, each read-and-set as one step, so when a search
//   ends while "stop" or "ponderhit" arrives, whoever sees the status first prints the bestmove;
// - a ponder search that ends by itself leaves answerWithheld set with the status: only then does a
//   "stop" or "ponderhit" on an idle engine print the bestmove. A "stop" that crosses a bestmove already
//   sent (the GUI's flag fell just as the engine answered) must not answer that "go" a second time;
// - every text written to the GUI is written and flushed under outputLock, so lines never interleave;
// - the reporting record is written by the search thread only (go clears it before the search runs);
// - everything else belongs to the main thread. Waiting for the search happens outside both locks.
#pragma once

#include <cstdint>
#include <cstdio>
#include <mutex>

#include "board/move.h"
#include "frontend/info_report.h"
#include "frontend/util/log.h"
#include "frontend/util/string.h"
#include "search/searchthread.h"

// The protocol status; names in trace lines "_idle_", "pos", "search", "ponder".
enum UciStatus { IDLE = 0, POSITION = 1, SEARCHING = 2, PONDER = 3 };

class Uci : public SearchListener {
  public:
    // 1 when the line was taken. An empty command is taken exactly in UCI mode.
    int handleCommand(const char* command, const char* rest);

    void finish(int depth, int score, Move best) override;
    void reportLine(int depth, int score, Move best) override;
    void reportMove(int depth, int moveIndex, Move move) override;

    String logDir;        // directory for the protocol logs; empty: no log file
    uint8_t uciMode = 0;  // set by "uci", never cleared; the console then prints no prompt
    uint8_t ownBook = 1;  // consult the book on "go"
    uint8_t trace = 0;    // echo trace messages to the GUI

  private:
    // The first search out of book: ply 0 while the game is still in book.
    struct OutOfBook {
        uint32_t ply = 0;
        uint32_t keyHigh = 0;
        uint32_t keyLow = 0;
    };

    void handshake();
    void isready();
    void setoption();
    void ucinewgame();
    void position();
    void go();
    void ponderhit();
    void stop();
    [[noreturn]] void quit();

    // Step of "go": answers from the book while the game is in it; true when it did.
    bool playBookMove();
    // Stops a running search and waits for the search thread to be idle again.
    void stopSearch();

    // The next word of the argument text, and the word after the next "value".
    String nextArg();
    String valueArg();

    // withheld, when given, takes the note of an answer held back by the ponder search.
    int exchangeStatus(int newStatus, bool* withheld = nullptr);
    void setStatus(int newStatus);
    const char* statusName();

    // Writes the message to the log and, with trace set, to the GUI.
    void traceMessage(const char* message);

    void printInfoLine(int depth, int score);
    void printBestmove(Move best, Move ponder);

    String args;  // the rest of the line being handled, consumed word by word
    OutOfBook outOfBook;
    Reported reported;
    Log log;
    FILE* out = stdout;
    std::mutex outputLock;
    std::mutex statusLock;
    int status = IDLE;
    bool answerWithheld = false;
};

extern Uci uci;

// Move text of the protocol: from-square, to-square and a small promotion letter (e7e8q); "0000" for
// no move. text holds at least 6 characters.
void uciMoveText(char* text, Move move);

// The score of an "info" line: " score mate n" at or beyond the mate bounds (n < 0 when the side to
// move is mated), else " score cp n". The constants differ by one on purpose: mating in n moves scores
// 30000 - (2n - 1), being mated in n moves -(30000 - 2n). text holds at least 24 characters.
void uciScoreText(char* text, int score);
