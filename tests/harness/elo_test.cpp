// The Elo rules of the published suites on hand-computed examples.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "harness/suites.h"

namespace {

const Suite& suite(const char* name) {
    for (const Suite& s : suites())
        if (std::string(s.name) == name) return s;
    ADD_FAILURE() << "no suite " << name;
    return suites()[0];
}

struct Times {
    double seconds;
    int count;
};

// Positions solved in the given times, then unsolved ones up to total.
SuiteResults results(std::vector<Times> solved, int total, double runSeconds) {
    SuiteResults r;
    r.seconds = runSeconds;
    for (const Times& t : solved)
        for (int i = 0; i < t.count; ++i) {
            PositionResult p;
            p.outcome = PositionOutcome::SOLVED;
            p.ms = static_cast<uint32_t>(t.seconds * 1000);
            r.positions.push_back(p);
        }
    while (static_cast<int>(r.positions.size()) < total) {
        PositionResult p;
        p.outcome = r.positions.size() % 2 ? PositionOutcome::UNSOLVED : PositionOutcome::ERROR;
        p.ms = 1000;  // unsolved positions count by the rule's limit, never by their time
        r.positions.push_back(p);
    }
    return r;
}

TEST(Elo, WorkedExamplesOfEachRule) {
    const struct {
        const char* suite;
        std::vector<Times> solved;
        int total;
        double runSeconds;
        double elo;
    } cases[] = {
        // 10x30 + 5x25 + 3x20 + 2x15 + 2x10 + 1x5 = 540 points.
        {"LCT II", {{5, 10}, {20, 5}, {60, 3}, {120, 2}, {300, 2}, {450, 1}}, 35, 600, 2440},
        // 20 solved in 3,000 s and 10 unsolved at 900 s: 12,000 s / 30 = 400 below the suite's figure.
        {"BT2450", {{150, 20}}, 30, 900, 2050},
        {"BT2630", {{150, 20}}, 30, 900, 2230},
        {"BT2450", {{1200, 30}}, 30, 1200, 1550},  // a solution kept after the limit counts as the limit
        // 15 solved in 1,800 s, 12 unsolved: T = 210 min, 2830 - 140 - 44,100 / 484.
        {"BS2830", {{120, 15}}, 27, 900, 2598.884},
        // Minutes are not truncated: 27 x 30.5 s = 13.725 min, 2830 - 9.15 - 0.389.
        {"BS2830", {{30.5, 27}}, 27, 900, 2820.461},
    };
    for (const auto& c : cases)
        EXPECT_NEAR(*calcElo(suite(c.suite), results(c.solved, c.total, c.runSeconds)), c.elo, 0.001)
            << c.suite << " " << c.elo;

    // The LCT band edges, in whole seconds: a fraction stays in the band of its whole seconds.
    const std::pair<double, double> edges[] = {{9.999, 1930}, {10, 1925},    {179.9, 1915},
                                               {180, 1910},   {600.9, 1905}, {601, 1900}};
    for (auto [seconds, elo] : edges)
        EXPECT_DOUBLE_EQ(*calcElo(suite("LCT II"), results({{seconds, 1}}, 35, 600)), elo) << seconds << " s";
}

}  // namespace
