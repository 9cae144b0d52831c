// Where start-up, the options and the console call into the board, evaluation, search and book.
// Each function is a placeholder until its subsystem lands; the subsystem's developer replaces the
// body in subsystem_hooks.cpp (or moves the definition into the subsystem and deletes it there).
#pragma once

// setThreads and threadCount.
#include "search/parallel.h"

// Start-up: the board's move and attack tables, the evaluation tables, the remaining board tables,
// in that order; then the transposition table (64 MB) and the per-thread pawn hash tables.
void initTables();

// Starts the search thread, which then sleeps until a search is requested.
void bootSearchThread();

// Sets the board to the start position and prints it.
void setStartPosition();

// "book.file": opens the book and gives its number of positions; false when it cannot be read.
bool openBookFile(const char* path, unsigned& positions);

// "egbb.dir" and "egbb.cachemb": loads the bitbase library from directory, then initialises the
// bitbases with a cache of cacheMb megabytes.
void loadBitbases(const char* directory, int cacheMb);

// "tt.cachemb": resizes the transposition table.
void resizeTt(int kilobytes);
