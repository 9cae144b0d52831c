// The published test suites the harness knows, with the time per position each prescribes and the
// rule that turns solution times into an Elo estimate.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "harness/results.h"

enum class EloRule {
    NONE,        // no published rule is known: solved counts only
    LCT_POINTS,  // base + points per position by whole-second bands
    BT_TIME,     // base - (sum of times in seconds, unsolved = the limit) / 30
    BS_TIME,     // base - T / 1.5 - T^2 / 484, T = sum of times in minutes (unsolved = the limit)
};

struct Suite {
    const char* name;
    // File names without folder and extension, in lower case without '-', '_' and blanks.
    const char* fileNames[2];
    const char* idPrefix;  // ids of its positions begin with this; null when the ids do not tell
    int positions;         // 0: not known
    double seconds;        // time per position the suite prescribes; 0: not known
    EloRule rule;
    int base;
};

std::span<const Suite> suites();

// The suite the file is, by its name, else by the ids of its positions; null when none.
const Suite* findSuite(const std::string& path, std::span<const std::string> ids);

// The suite's Elo estimate from the results: null when the suite has no rule or the results do not
// cover exactly its positions. Positions in error count as unsolved.
std::optional<double> calcElo(const Suite& suite, const SuiteResults& results);

// The lines printed after a run of the suite: the estimate with the formula it came from, or why
// there is none, and a note when the run did not use the prescribed time.
std::string eloReport(const Suite& suite, const SuiteResults& results);
