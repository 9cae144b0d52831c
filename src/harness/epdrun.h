// Runs an EPD test suite with the engine's own search, a fixed time per position.
#pragma once

#include <cstdio>
#include <string>

#include "harness/results.h"
#include "harness/suites.h"

struct EpdRun {
    SuiteResults results;
    const Suite* suite = nullptr;  // the published suite the file is, if any
};

// Time per position when the suite prescribes none and the user gives none.
constexpr double DEFAULT_SECONDS = 10;

// Searches every position of the file for seconds each (0: the suite's prescribed time, else
// DEFAULT_SECONDS), printing a line per position to out, and fills run. Lines that cannot be used are
// reported and counted as errors; the run goes on. False when the file cannot be opened. The game board
// is left as it is; the transposition table is cleared.
bool runEpdFile(const std::string& path, double seconds, EpdRun& run, FILE* out);

// The summary printed after a run: solved count, solution times, nodes.
std::string summaryText(const SuiteResults& results);
