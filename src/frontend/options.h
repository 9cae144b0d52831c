// Applies the configuration read from the ini file at start-up.
#pragma once

#include "frontend/inifile.h"

// Processor clock in MHz ("machine.mhz"), only for the ticks-per-operation figure of perft.
extern unsigned machineMhz;

// Reads the keys in a fixed order: book.file, uci.trace, uci.logdir, egbb.dir (with egbb.cachemb),
// tt.cachemb, machine.mhz, search.nthreads. False when the engine cannot run with them.
bool setOptions(const IniFile& ini);
