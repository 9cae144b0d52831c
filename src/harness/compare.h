// Two runs of a suite side by side: positions solved by one run only, and the time differences.
#pragma once

#include <string>

#include "harness/results.h"

struct Comparison {
    int both = 0;
    int onlyA = 0;
    int onlyB = 0;
    int neither = 0;
    int missing = 0;       // positions that only one of the files holds
    uint64_t bothMsA = 0;  // solution times of the positions both solved
    uint64_t bothMsB = 0;
    std::string text;  // the report, one line per position solved by at least one run, then totals
};

// Positions are matched by id.
Comparison compareResults(const SuiteResults& a, const std::string& nameA, const SuiteResults& b,
                          const std::string& nameB);
