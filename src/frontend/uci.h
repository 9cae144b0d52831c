// The UCI protocol handler. The console loop offers it every input line first; it takes the
// protocol's commands in every mode and leaves the rest to the console.
#pragma once

#include <cstdint>

#include "frontend/util/string.h"

class Uci {
  public:
    // 1 when the line was taken. An empty command is taken exactly in UCI mode.
    int handleCommand(const char* command, const char* rest);

    String logDir;        // directory for the protocol logs; empty: no log file
    uint8_t uciMode = 0;  // set by "uci", never cleared; the console then prints no prompt
    uint8_t trace = 0;    // echo trace messages to the GUI
};

extern Uci uci;
