// The xboard protocol handler: the second protocol beside the UCI one, built the same way. It takes
// one input line as a command word and the rest and answers whether it took the line; it keeps the
// game on the engine's board (moves in, its own moves out), thinks when its side is to move, and turns
// the search's reports into "info" lines and a "move" line.
//
// The console loop does not offer it lines: the engine speaks UCI and its console language. A build
// that wants xboard mode hands each line to handleCommand in the same place as the UCI handler's.
//
// Threads: handleCommand runs on the main thread, the SearchListener calls on the search thread.
// - status is read and changed only under statusLock, each read-and-set as one step, so a search that
//   ends while a command calls it off has exactly one of them decide what becomes of its move;
// - every text written to the GUI is written and flushed under outputLock;
// - the reporting record is written by the search thread only (thinking clears it before the start);
// - the board and the undo stack change on the search thread only in finish, while status is
//   SEARCHING; every command that touches them first calls a running search off and waits for it.
#pragma once

#include <cstdint>
#include <cstdio>
#include <mutex>
#include <vector>

#include "board/makemove.h"
#include "board/move.h"
#include "frontend/info_report.h"
#include "frontend/uci.h"
#include "frontend/util/log.h"
#include "frontend/util/string.h"
#include "search/searchthread.h"

class Xboard : public SearchListener {
  public:
    // All protocol text goes to output.
    explicit Xboard(FILE* output = stdout) : out(output) {}

    // 1 when the line was taken. An empty command is taken exactly in xboard mode.
    int handleCommand(const char* command, const char* rest);

    void finish(int depth, int score, Move best) override;
    void reportLine(int depth, int score, Move best) override;
    void reportMove(int depth, int moveIndex, Move move) override;

    // Takes the last move of the game back; "tellusererror cannot undo" with none to take back.
    void undo();
    // Ends thinking now: a running search stops and its move is played; a move held back while
    // pondering is played at once.
    void stop();

    int currentStatus();

    String logDir;           // directory for the protocol logs; empty: no log file
    uint8_t xboardMode = 0;  // set by "xboard", never cleared
    uint8_t ownBook = 1;     // consult the book before thinking
    uint8_t trace = 0;       // echo trace messages to the GUI
    int engineSide = -1;     // 0 White, 1 Black, -1 none

  private:
    // One per ply played through this handler: what makeMove needs to be taken back.
    struct UndoEntry {
        Move move;
        SavedState state;  // holds the board's last move too: a set-up position's check comes from it
    };
    // The clock the GUI gave with "level", "st", "time" and "otim"; -1 where it gave none.
    struct Clock {
        int movesPerSession = 0;
        int incrementMs = 0;
        int moveTimeMs = -1;
        int ownMs = -1;
        int opponentMs = -1;
        int depth = 0;  // "sd"; 0: none
    };

    void handshake();
    void protover();
    void newGame();
    void force();
    void go();
    void ping();
    void ignore();
    void setboard();
    void usermove();
    [[noreturn]] void quit();
    void level();
    void st();
    void sd();
    void time();
    void otim();

    // Starts a search, or answers from the book, when the engine's side is to move.
    void think();
    bool playBookMove();
    // Stops a running search without playing its move, and drops a move held back while pondering.
    void callOffSearch();
    // Plays the engine's move on the board and sends the "move" line; the ponder move is only logged.
    void playMove(Move best, Move ponder);
    // Makes a move on the game board, remembering how to take it back; the move with its check bits,
    // or 0 when the board refused it.
    Move makeGameMove(Move move);

    int exchangeStatus(int newStatus);
    const char* statusName();
    void traceMessage(const char* message);
    void printInfoLine(int depth, int score);

    String args;                // the rest of the line being handled, consumed word by word
    uint32_t outOfBookPly = 0;  // ply of the first search out of book; 0 while the game is in book
    Reported reported;
    Clock clock;
    std::vector<UndoEntry> undoStack;
    bool positionValid = true;    // false after a FEN that setFen refused: the board is then unusable
    bool resultWithheld = false;  // under statusLock: a ponder search ended, its move waits for stop
    Log log;
    FILE* out;
    std::mutex outputLock;
    std::mutex statusLock;
    int status = IDLE;
};
