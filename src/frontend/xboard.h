// The xboard protocol handler: the second protocol beside the UCI one, on the same protocol core. It
// keeps the game on the engine's board (moves in, its own moves out), thinks when its side is to move,
// and answers with a "move" line.
//
// The console loop does not offer it lines: the engine speaks UCI and its console language. A build
// that wants xboard mode hands each line to handleCommand in the same place as the UCI handler's.
//
// Threads: as the protocol core says; besides, the board and the undo stack change on the search
// thread only in finish, while status is SEARCHING, and every command that touches them first calls a
// running search off and waits for it.
#pragma once

#include <cstdint>
#include <cstdio>
#include <vector>

#include "board/makemove.h"
#include "board/move.h"
#include "frontend/protocol.h"

class Xboard : public Protocol {
  public:
    // All protocol text goes to output.
    explicit Xboard(FILE* output = stdout);

    // 1 when the line was taken. An empty command is taken exactly in xboard mode.
    int handleCommand(const char* command, const char* rest);

    // Takes the last move of the game back; "tellusererror cannot undo" with none to take back.
    void undo();
    // Ends thinking now: a running search stops and its move is played; a move held back while
    // pondering is played at once.
    void stop();

    using Protocol::currentStatus;

    uint8_t xboardMode = 0;  // set by "xboard", never cleared
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
    // Stops a running search without playing its move, and drops a move held back while pondering.
    void callOffSearch();
    // Plays the engine's move on the board and sends the "move" line; the ponder move is only logged.
    void answer(Move best, Move ponder) override;
    // Makes a move on the game board, remembering how to take it back; the move with its check bits,
    // or 0 when the board refused it.
    Move makeGameMove(Move move);

    Clock clock;
    std::vector<UndoEntry> undoStack;
    bool positionValid = true;  // false after a FEN that setFen refused: the board is then unusable
};
