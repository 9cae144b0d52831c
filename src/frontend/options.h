// Applies the configuration read from the ini file at start-up.
#pragma once

#include "frontend/inifile.h"

// Processor clock in MHz ("machine.mhz"), only for the ticks-per-operation figure of perft.
extern unsigned machineMhz;

// Opens the book file, or closes the book when path is empty; prints what it found.
void openBookFile(const String& path);
// Loads and initialises the bitbase library from directory with a cache of cacheMb megabytes (empty:
// 16), or turns the bitbases off when directory is empty; prints what it found.
void openBitbases(const String& directory, const String& cacheMb);

// Reads the keys in a fixed order: book.file, uci.trace, uci.logdir, egbb.dir (with egbb.cachemb),
// tt.cachemb, machine.mhz, search.nthreads. False when the engine cannot run with them.
bool setOptions(const IniFile& ini);
