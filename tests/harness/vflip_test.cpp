// The colour-flip twin of a position, and the check over the published suites.
#include "harness/vflip.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "environment.h"

namespace {

TEST(Vflip, TwinMirrorsRanksSwapsColoursAndRights) {
    EXPECT_EQ(flipFen("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1"),
              "rnbqkbnr/pppp1ppp/8/4p3/8/8/PPPPPPPP/RNBQKBNR w KQkq e6 0 1");
    EXPECT_EQ(flipFen("r3k3/8/8/8/8/8/8/4K2R w Kq -"), "4k2r/8/8/8/8/8/8/R3K3 b Qk -");
    EXPECT_EQ(flipFen("4k3/8/8/8/8/8/8/4K3 w - -"), "4k3/8/8/8/8/8/8/4K3 b - -");
    // The engine's own form with empty ranks, and a FEN with fields missing.
    EXPECT_EQ(flipFen("rnbqkbnr/pppppppp/////PPPPPPPP/RNBQKBNR w KQkq - -"),
              "rnbqkbnr/pppppppp/////PPPPPPPP/RNBQKBNR b KQkq - -");
    EXPECT_EQ(flipFen("8/8/8/8/8/8/k7/K7"), "k7/K7/8/8/8/8/8/8 b");
    // Flipping twice gives the position back.
    const std::string fen = "2r3k1/1q1nbppp/r3p3/3pP3/pPpP4/P1Q2N2/2RN1PPP/2R4K b - b3";
    EXPECT_EQ(flipFen(flipFen(fen)), fen);
}

TEST(Vflip, EveryPublishedSuiteEvaluatesItsTwinsAlike) {
    for (const char* name : {"lct2", "bt2450", "bt2630", "bs2830"}) {
        const std::string path = sharedData("suites/") + name + ".epd";
        SKIP_WITHOUT(path);
        VflipCount count;
        FILE* out = std::tmpfile();
        ASSERT_TRUE(vflipFile(path, count, out));
        std::fclose(out);
        EXPECT_GE(count.positions, 27) << name;
        EXPECT_EQ(count.differences, 0) << name;
        EXPECT_EQ(count.errors, 0) << name;
    }
}

}  // namespace
