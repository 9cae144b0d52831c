// Self tests of the machinery the engine takes on trust: threads and their events, the reference
// counting of String, and the millisecond clock.
#pragma once

#include <cstdio>
#include <string>

// Each fills detail with what it measured or what went wrong, and tells whether it passed.
bool threadSelfTest(std::string& detail);
bool stringSelfTest(std::string& detail);
bool timerSelfTest(std::string& detail);

// Runs all three, printing "selftest <name>: pass|FAIL (<detail>)" for each and a last line with the
// counts; returns the number that failed.
int runSelfTests(FILE* out);
