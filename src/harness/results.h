// What a test-suite run finds out about each position, as the runner records it, the result file
// keeps it and the comparison and the Elo estimates read it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

enum class PositionOutcome { SOLVED, UNSOLVED, ERROR };

struct PositionResult {
    int number = 0;  // the position's place in the file, from 1
    std::string id;  // the EPD id, or "#<number>" when the line has none
    PositionOutcome outcome = PositionOutcome::ERROR;
    uint32_t ms = 0;  // solved: the solution time; otherwise the time searched
    uint64_t nodes = 0;
    std::string move;  // the move the search chose, "-" when none
};

struct SuiteResults {
    std::string file;    // the EPD file as it was named
    double seconds = 0;  // time per position
    std::vector<PositionResult> positions;

    int solved() const;
    // Sum of the solution times of the solved positions.
    uint64_t solvedMs() const;
    uint64_t nodes() const;
    // The position with this id, or null.
    const PositionResult* find(const std::string& id) const;
};
