// Result files (".tsr") of test-suite runs: written after each run, read back by tsrcompare.
#pragma once

#include <string>

#include "harness/results.h"

// The result file's name for an EPD file: its name without folder, with ".tsr" for its extension.
std::string tsrName(const std::string& epdPath);

bool writeTsr(const std::string& path, const SuiteResults& results);
// False with the reason in error when the file cannot be opened or a line cannot be read.
bool readTsr(const std::string& path, SuiteResults& results, std::string& error);
