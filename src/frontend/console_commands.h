#pragma once

#include <span>

#include "frontend/console.h"

// The command that word calls (exact, case-sensitive), or null.
const ConsoleCommand* findConsoleCommand(const char* word);

// A line that no command took: read as a bare FEN, else as moves (line_fallback.cpp).
void readUncommandedLine(const char* command, const char* rest);
