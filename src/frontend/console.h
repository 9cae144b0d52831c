// The console: one command loop on standard input for the whole life of the program. Every line
// goes to the UCI handler first; what it leaves is a console command, else a bare FEN or moves.
#pragma once

#include <cstdint>

// Options of the console's own search: "set" shows and changes the switches, "maxdepth" the depth.
struct ConsoleOptions {
    uint8_t async = 0;    // "g" returns to the prompt at once instead of waiting for the search
    uint8_t book = 1;     // "g" plays from the book first
    uint8_t cleartt = 1;  // "g" clears the transposition table first
    int maxDepth = 0;     // "maxdepth": the depth limit of "g"; 0 none
};

extern ConsoleOptions consoleOptions;

enum class AfterCommand { READ_NEXT, LEAVE_LOOP };

// A console command: the words that call it (unused places null) and its handler, which gets the
// rest of the line. Each group of commands keeps its records next to its handlers in a file of its
// own; console_commands.cpp lists the groups.
struct ConsoleCommand {
    const char* words[3];
    AfterCommand (*run)(const char* rest);
};

// Reads and runs lines until end of input or "q"; returns the exit code.
int commandLoop();

// Ends a console search that still runs, once its move is played. Every console command reads or
// changes what an asynchronous search works with (the board, the table, the limits, the threads),
// so the loop calls this before each of them.
void stopConsoleSearch();
