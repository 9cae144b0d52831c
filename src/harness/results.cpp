#include "harness/results.h"

int SuiteResults::solved() const {
    int count = 0;
    for (const PositionResult& p : positions) count += p.outcome == PositionOutcome::SOLVED;
    return count;
}

uint64_t SuiteResults::solvedMs() const {
    uint64_t sum = 0;
    for (const PositionResult& p : positions)
        if (p.outcome == PositionOutcome::SOLVED) sum += p.ms;
    return sum;
}

uint64_t SuiteResults::nodes() const {
    uint64_t sum = 0;
    for (const PositionResult& p : positions) sum += p.nodes;
    return sum;
}

const PositionResult* SuiteResults::find(const std::string& id) const {
    for (const PositionResult& p : positions)
        if (p.id == id) return &p;
    return nullptr;
}
