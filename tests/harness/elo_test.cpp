// The Elo rules of the published suites on hand-computed examples, and how a suite is recognised.
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

double lctElo(double solvedAt) {
    return *calcElo(suite("LCT II"), results({{solvedAt, 1}}, 35, 600));
}

TEST(Elo, LctPointsByWholeSecondBands) {
    // 10x30 + 5x25 + 3x20 + 2x15 + 2x10 + 1x5 = 540 points.
    const SuiteResults r = results({{5, 10}, {20, 5}, {60, 3}, {120, 2}, {300, 2}, {450, 1}}, 35, 600);
    EXPECT_DOUBLE_EQ(*calcElo(suite("LCT II"), r), 2440);
    EXPECT_DOUBLE_EQ(*calcElo(suite("LCT II"), results({}, 35, 600)), 1900);
    EXPECT_DOUBLE_EQ(*calcElo(suite("LCT II"), results({{0, 35}}, 35, 600)), 2950);

    // Each band edge, in whole seconds: a fraction stays in the band of its whole seconds.
    const std::pair<double, double> edges[] = {{9.999, 1930}, {10, 1925},  {29.9, 1925},  {30, 1920},
                                               {89.9, 1920},  {90, 1915},  {179.9, 1915}, {180, 1910},
                                               {389.9, 1910}, {390, 1905}, {600.9, 1905}, {601, 1900}};
    for (auto [seconds, elo] : edges) EXPECT_DOUBLE_EQ(lctElo(seconds), elo) << seconds << " s";
}

TEST(Elo, BtTotalsTimesWithUnsolvedAtTheLimit) {
    // 20 solved in 3,000 s and 10 unsolved at 900 s: GZ = 12,000 s, 12,000 / 30 = 400.
    const SuiteResults r = results({{150, 20}}, 30, 900);
    EXPECT_DOUBLE_EQ(*calcElo(suite("BT2450"), r), 2050);
    EXPECT_DOUBLE_EQ(*calcElo(suite("BT2630"), r), 2230);
    EXPECT_DOUBLE_EQ(*calcElo(suite("BT2450"), results({}, 30, 900)), 1550);
    EXPECT_DOUBLE_EQ(*calcElo(suite("BT2630"), results({{0, 30}}, 30, 900)), 2630);
    // A solution kept only after the limit counts as the limit, never more.
    EXPECT_DOUBLE_EQ(*calcElo(suite("BT2450"), results({{1200, 30}}, 30, 1200)), 1550);
}

TEST(Elo, BsUsesMinutesAsARealNumber) {
    // 15 solved in 1,800 s, 12 unsolved: T = 210 min, 2830 - 140 - 44,100 / 484.
    EXPECT_NEAR(*calcElo(suite("BS2830"), results({{120, 15}}, 27, 900)), 2598.884, 0.001);
    // Not truncated to whole minutes: 27 x 30.5 s = 13.725 min, 2830 - 9.15 - 0.389.
    EXPECT_NEAR(*calcElo(suite("BS2830"), results({{30.5, 27}}, 27, 900)), 2820.461, 0.001);
}

TEST(Elo, NoFigureWithoutARuleOrForAnotherNumberOfPositions) {
    for (const char* name : {"GS2930", "IQ5"}) {
        EXPECT_FALSE(calcElo(suite(name), results({{1, 10}}, 10, 10)));
        EXPECT_EQ(eloReport(suite(name), results({{1, 10}}, 10, 10)),
                  std::string(name) +
                      ": no published scoring rule is available for this suite, so no Elo estimate\n");
    }
    EXPECT_FALSE(calcElo(suite("LCT II"), results({{1, 10}}, 34, 600)));
    EXPECT_FALSE(calcElo(suite("BT2450"), results({}, 31, 900)));
}

TEST(Elo, ReportNamesTheFormulaAndATimeOtherThanPrescribed) {
    const std::string bs = eloReport(suite("BS2830"), results({{120, 15}}, 27, 900));
    EXPECT_EQ(bs.find("BS2830: Elo 2598.9 = 2830 - T/1.5 - T^2/484 with T = 210.0 min"), 0u) << bs;
    EXPECT_NE(bs.find("primary source is unknown"), std::string::npos) << bs;
    const std::string quick = eloReport(suite("BT2630"), results({}, 30, 0.5));
    EXPECT_NE(quick.find("note: run at 0.5 s per position; the rule assumes 900 s"), std::string::npos)
        << quick;
}

TEST(Suites, RecognisedByFileNameElseByIds) {
    const struct {
        const char* file;
        std::vector<std::string> ids;
        const char* suite;  // nullptr: none
    } cases[] = {
        {"C:\\suites\\LCT-II.EPD", {}, "LCT II"},
        {"bt_2450.epd", {}, "BT2450"},
        {"suites/BT2630", {}, "BT2630"},
        {"IQ5.epd", {}, "IQ5"},
        {"bt2450x.epd", {}, nullptr},
        {"lct2.epd/other.epd", {}, nullptr},
        {"mine.epd", {"BT2450.01", "BT2450.02"}, "BT2450"},
        {"x.epd", {"BS2830-27"}, "BS2830"},
        {"x.epd", {"BT2450.01", "LCTII.POS.01"}, nullptr},
    };
    for (const auto& c : cases) {
        const Suite* found = findSuite(c.file, c.ids);
        EXPECT_EQ(found ? std::string(found->name) : "none", c.suite ? c.suite : "none") << c.file;
    }
}

}  // namespace
