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
    // All unsolved: T = 405 min.
    EXPECT_NEAR(*calcElo(suite("BS2830"), results({}, 27, 900)), 2830 - 270 - 405.0 * 405 / 484, 1e-9);
    // Not truncated to whole minutes: 27 x 30.5 s = 13.725 min.
    EXPECT_NEAR(*calcElo(suite("BS2830"), results({{30.5, 27}}, 27, 900)),
                2830 - 13.725 / 1.5 - 13.725 * 13.725 / 484, 1e-9);
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
    EXPECT_NE(
        eloReport(suite("BT2450"), results({}, 29, 900)).find("the suite has 30 positions, the file 29"),
        std::string::npos);
}

TEST(Elo, ReportNamesTheFormulaAndATimeOtherThanPrescribed) {
    const SuiteResults lct = results({{5, 10}, {20, 5}, {60, 3}, {120, 2}, {300, 2}, {450, 1}}, 35, 600);
    EXPECT_EQ(eloReport(suite("LCT II"), lct), "LCT II: Elo 2440 = 1900 + 540 points\n");
    EXPECT_EQ(eloReport(suite("BT2450"), results({{150, 20}}, 30, 900)),
              "BT2450: Elo 2050 = 2450 - 12000.0 s / 30\n");
    const std::string bs = eloReport(suite("BS2830"), results({{120, 15}}, 27, 900));
    EXPECT_EQ(bs.find("BS2830: Elo 2598.9 = 2830 - T/1.5 - T^2/484 with T = 210.0 min"), 0u) << bs;
    EXPECT_NE(bs.find("primary source is unknown"), std::string::npos);
    const std::string quick = eloReport(suite("BT2630"), results({}, 30, 0.5));
    EXPECT_NE(quick.find("note: run at 0.5 s per position; the rule assumes 900 s"), std::string::npos)
        << quick;
}

TEST(Suites, RecognisedByFileNameElseByIds) {
    const std::vector<std::string> none;
    EXPECT_STREQ(findSuite("/data/suites/lct2.epd", none)->name, "LCT II");
    EXPECT_STREQ(findSuite("C:\\suites\\LCT-II.EPD", none)->name, "LCT II");
    EXPECT_STREQ(findSuite("bt_2450.epd", none)->name, "BT2450");
    EXPECT_STREQ(findSuite("suites/BT2630", none)->name, "BT2630");
    EXPECT_STREQ(findSuite("bs2830.epd", none)->name, "BS2830");
    EXPECT_STREQ(findSuite("gs2930.epd", none)->name, "GS2930");
    EXPECT_STREQ(findSuite("IQ5.epd", none)->name, "IQ5");
    EXPECT_EQ(findSuite("bt2450x.epd", none), nullptr);
    EXPECT_EQ(findSuite("lct2.epd/other.epd", none), nullptr);

    const std::vector<std::string> bt = {"BT2450.01", "BT2450.02"};
    const std::vector<std::string> mixed = {"BT2450.01", "LCTII.POS.01"};
    EXPECT_STREQ(findSuite("mine.epd", bt)->name, "BT2450");
    EXPECT_STREQ(findSuite("x.epd", std::vector<std::string>{"LCTII.FIN.09"})->name, "LCT II");
    EXPECT_STREQ(findSuite("x.epd", std::vector<std::string>{"BS2830-27"})->name, "BS2830");
    EXPECT_EQ(findSuite("x.epd", mixed), nullptr);
    EXPECT_EQ(findSuite("x.epd", std::vector<std::string>{"test 1"}), nullptr);
    // The prescribed times.
    EXPECT_EQ(findSuite("lct2.epd", none)->seconds, 600);
    EXPECT_EQ(findSuite("bs2830.epd", none)->seconds, 900);
}

}  // namespace
