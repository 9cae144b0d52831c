// The solution time of a test position: the moment from which the search's best move was a solution
// and stayed one to the end. A solution found, dropped and found again counts from the last finding;
// switching between two moves that both solve (several bm moves) keeps the position solved.
#pragma once

#include <cstdint>

class SolutionClock {
  public:
    // The search shows a new best move at ms; solution tells whether it solves the test.
    void shown(bool solution, uint32_t ms) {
        if (solution && !solving) since = ms;
        solving = solution;
    }
    bool solved() const { return solving; }
    uint32_t solutionMs() const { return since; }

  private:
    bool solving = false;
    uint32_t since = 0;
};
