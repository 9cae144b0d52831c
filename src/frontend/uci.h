// The UCI protocol handler. The console loop offers it every input line first; it takes the
// protocol's commands in every mode and leaves the rest to the console. Its commands set up the
// position, start, stop and ponderhit the search through the shared protocol core, and answer with
// "bestmove".
//
// Threads: as the protocol core says. A ponder search that ends by itself holds its answer back: only
// then does a "stop" or "ponderhit" on an idle engine print the bestmove. A "stop" that crosses a
// bestmove already sent (the GUI's flag fell just as the engine answered) must not answer that "go" a
// second time.
#pragma once

#include <cstdint>

#include "board/move.h"
#include "frontend/protocol.h"

class Uci : public Protocol {
  public:
    Uci();

    // 1 when the line was taken. An empty command is taken exactly in UCI mode.
    int handleCommand(const char* command, const char* rest);

    uint8_t uciMode = 0;  // set by "uci", never cleared; the console then prints no prompt

  private:
    void handshake();
    void isready();
    void setoption();
    void ucinewgame();
    void position();
    void go();
    void ponderhit();
    void stop();
    [[noreturn]] void quit();

    // The option lines of the handshake.
    void writeOptionLines();
    // Stops a running search and waits for the search thread to be idle again.
    void stopSearch();

    void answer(Move best, Move ponder) override;
};

extern Uci uci;
