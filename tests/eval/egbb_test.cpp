// The bitbase connection, through the real loading path, against stand-in libraries built with the
// tests: one that knows king and pawn against king (and records what it is asked), one without the
// probe entry point and one without either.
#include "eval/egbb.h"

#include <gtest/gtest.h>

#include <string>

#include "eval_support.h"
#include "platform/platform.h"

using namespace evaltest;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

namespace {

const std::string LIBRARIES = KELVRA_TEST_EGBB_DIR;

// The stand-in's test controls, found in the library the engine loaded.
struct Controls {
    void (*setClaim)(int men, int answer);
    const char* (*lastLoad)(int* cacheBytes, int* loadOptions, int* loads);
    int (*lastProbe)(int* args);

    Controls() {
        void* library = platform::loadLibrary(LIBRARIES + "/kpk/egbbso64.so");
        setClaim = reinterpret_cast<decltype(setClaim)>(platform::findSymbol(library, "kpk_set_claim"));
        lastLoad = reinterpret_cast<decltype(lastLoad)>(platform::findSymbol(library, "kpk_last_load"));
        lastProbe = reinterpret_cast<decltype(lastProbe)>(platform::findSymbol(library, "kpk_last_probe"));
    }
    int probes() {
        int args[9];
        return lastProbe(args);
    }
};

// A connection to the king-and-pawn library claiming men (giving answer for all but KPK), loaded
// and initialised; the printed lines go to output.
std::unique_ptr<EGBB> connect(Controls& controls, int men, int answer, int cacheMb, std::string& output) {
    controls.setClaim(men, answer);
    auto bitbases = std::make_unique<EGBB>();
    CaptureStdout();
    EXPECT_TRUE(bitbases->load((LIBRARIES + "/kpk").c_str()));
    EXPECT_TRUE(bitbases->init(cacheMb));
    output = GetCapturedStdout();
    return bitbases;
}

class Bitbases : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_NE(controls.setClaim, nullptr) << "stand-in library not built"; }
    void TearDown() override { controls.setClaim(3, EGBB_NOT_AVAILABLE); }
    Controls controls;
};

}  // namespace

TEST(BitbaseLoading, MissingLibraryOrEntryPoints) {
    struct Case {
        std::string directory, printed;
    };
    const Case cases[] = {
        {"/nonexistent/egbb", "egbb dll not found: /nonexistent/egbb/egbbso64.so\n"},
        {LIBRARIES + "/loadonly/", "EGBB: 5men probe not supported\n"},
        {LIBRARIES + "/empty", "EGBB: 5men load not supported\nEGBB: 5men probe not supported\n"},
    };
    for (const Case& c : cases) {
        EGBB bitbases;
        CaptureStdout();
        EXPECT_FALSE(bitbases.load(c.directory.c_str()));
        EXPECT_FALSE(bitbases.init(64));  // silent: nothing to initialise
        EXPECT_EQ(GetCapturedStdout(), c.printed) << c.directory;
        EXPECT_EQ(bitbases.maxMen(), 0);
        int score = 12345;
        EXPECT_FALSE(bitbases.probe(*boardFrom("4k3/8/4K3/4P3/8/8/8/8 w - -"), score));
        EXPECT_EQ(score, 12345);
    }
}

TEST_F(Bitbases, InitRaisesTheCacheAndFindsTheSets) {
    std::string output;
    auto three = connect(controls, 3, EGBB_NOT_AVAILABLE, 4, output);
    EXPECT_EQ(output, "egbb.3men=1\negbb.4men=0\negbb.5men=0\nEGBB: loaded, maxmen=3, ram=16\n");
    EXPECT_EQ(three->maxMen(), 3);
    int cacheBytes, options, loads;
    EXPECT_EQ(std::string(controls.lastLoad(&cacheBytes, &options, &loads)), LIBRARIES + "/kpk/");
    EXPECT_EQ(cacheBytes, 16 * 1048576);
    EXPECT_EQ(options, 1);
    // Only once.
    CaptureStdout();
    EXPECT_TRUE(three->init(64));
    EXPECT_EQ(GetCapturedStdout(), "");
    int again;
    controls.lastLoad(&cacheBytes, &options, &again);
    EXPECT_EQ(again, loads);

    auto four = connect(controls, 4, 0, 32, output);
    EXPECT_EQ(output, "egbb.3men=1\negbb.4men=1\negbb.5men=0\nEGBB: loaded, maxmen=4, ram=32\n");
    controls.lastLoad(&cacheBytes, &options, &loads);
    EXPECT_EQ(cacheBytes, 32 * 1048576);
    auto five = connect(controls, 5, 0, 16, output);
    EXPECT_EQ(output, "egbb.3men=1\negbb.4men=1\negbb.5men=1\nEGBB: loaded, maxmen=5, ram=16\n");
    EXPECT_EQ(five->maxMen(), 5);

    // A directory written with Windows separators.
    EGBB windows;
    CaptureStdout();
    EXPECT_TRUE(windows.load((LIBRARIES + "\\kpk\\").c_str()));
    EXPECT_EQ(GetCapturedStdout(), "");
}

TEST_F(Bitbases, ProbeConvertsSquaresAndPiecesAndKeepsToTheSet) {
    std::string output;
    auto five = connect(controls, 5, 7, 16, output);
    int score = 0;
    // Queens, rooks, bishops, knights, pawns; White before Black within a kind. Squares a1 = 0.
    ASSERT_TRUE(five->probe(*boardFrom("r3k3/7p/8/8/8/8/8/3QK3 b - -"), score));
    int args[9];
    controls.lastProbe(args);
    const int expected[9] = {1, 4, 60, 2, 3, 3 + 6, 56, 6 + 6, 55};
    for (int i = 0; i < 9; ++i) EXPECT_EQ(args[i], expected[i]) << "argument " << i;
    EXPECT_EQ(score, 7);  // pawns on the board: the library's answer stands
    ASSERT_TRUE(five->probe(*boardFrom("4k3/8/8/8/8/8/8/1NB1K3 w - -"), score));
    controls.lastProbe(args);
    const int minors[9] = {0, 4, 60, 4, 2, 5, 1, 0, 0};
    for (int i = 0; i < 9; ++i) EXPECT_EQ(args[i], minors[i]) << "argument " << i;

    // Four men besides the kings are beyond a five-men set: not asked at all.
    const int probes = controls.probes();
    EXPECT_FALSE(five->probe(*boardFrom("r3k3/7p/8/8/8/8/7P/3QK3 w - -"), score));
    EXPECT_EQ(controls.probes(), probes);

    auto three = connect(controls, 3, 7, 16, output);
    EXPECT_FALSE(three->probe(*boardFrom("4k3/7p/8/8/8/8/7P/4K3 w - -"), score));
    EXPECT_EQ(controls.probes(), probes + 3);  // only the three detection probes of init
    EXPECT_TRUE(three->probe(*boardFrom("4k3/8/8/8/8/8/7P/4K3 w - -"), score));
}

TEST_F(Bitbases, KingAndPawnAgainstKingIsAnsweredTruly) {
    std::string output;
    auto bitbases = connect(controls, 3, EGBB_NOT_AVAILABLE, 16, output);
    struct Case {
        const char* fen;
        int score;  // the library's own answer: winScore gives 0 with a pawn on the board
    };
    const Case cases[] = {
        {"4k3/8/4K3/4P3/8/8/8/8 w - -", 2400},   // king on the sixth in front of the pawn: won
        {"4k3/8/4K3/4P3/8/8/8/8 b - -", -2400},  // whoever moves
        {"4k3/8/8/4K3/4P3/8/8/8 w - -", 2300},   // White reaches the sixth rank first: won
        {"4k3/8/8/4K3/4P3/8/8/8 b - -", 0},      // Black takes the opposition with Ke7: drawn
        {"7k/8/7K/7P/8/8/8/8 w - -", 0},         // rook pawn
        {"7k/8/8/8/8/8/P7/K7 w - -", 2100},      // the king cannot catch the pawn
        {"8/8/8/8/4p3/4k3/8/4K3 b - -", 2400},   // Black's pawn
        {"8/8/8/8/4p3/4k3/8/4K3 w - -", -2400},
    };
    for (const Case& c : cases) {
        int score = 99;
        EXPECT_TRUE(bitbases->probe(*boardFrom(c.fen), score)) << c.fen;
        EXPECT_EQ(score, c.score) << c.fen;
    }
}

TEST_F(Bitbases, WonPawnlessEndingsScoreProgress) {
    std::string output;
    auto bitbases = connect(controls, 3, 500, 16, output);
    // King and queen: 100 x 10 + 5000, the losing king in the a8 corner +75, kings 2 apart -20.
    auto queen = boardFrom("k7/8/2K5/8/8/8/8/1Q6 w - -");
    EXPECT_EQ(winScore(*queen, WHITE), 6055);
    int score = 0;
    ASSERT_TRUE(bitbases->probe(*queen, score));
    EXPECT_EQ(score, 6055);
    controls.setClaim(3, -500);  // Black to move loses
    ASSERT_TRUE(bitbases->probe(*boardFrom("k7/8/2K5/8/8/8/8/1Q6 b - -"), score));
    EXPECT_EQ(score, -6055);
    controls.setClaim(3, 0);
    ASSERT_TRUE(bitbases->probe(*queen, score));
    EXPECT_EQ(score, 0);

    // Bishop and knight: the corner of the bishop's colour. Base 5600; kings e1-h8 and e1-a8 are 7 apart.
    EXPECT_EQ(winScore(*boardFrom("7k/8/8/8/8/8/8/2B1KN2 w - -"), WHITE), 5600 + 70 - 70);  // dark, h8
    EXPECT_EQ(winScore(*boardFrom("k7/8/8/8/8/8/8/2B1KN2 w - -"), WHITE), 5600 + 0 - 70);   // dark, a8
    EXPECT_EQ(winScore(*boardFrom("k7/8/8/8/8/8/8/3BKN2 w - -"), WHITE), 5600 + 70 - 70);   // light, a8
    // The loser's material counts against: 1000 + 5000 - 500 - 200; king d5 in the centre -10,
    // kings 4 apart.
    EXPECT_EQ(winScore(*boardFrom("8/8/8/3k4/8/8/r7/RR2K3 w - -"), WHITE), 5300 - 10 - 40);
    EXPECT_EQ(winScore(*boardFrom("8/8/8/3k4/8/8/r6P/RR2K3 w - -"), WHITE), 0);  // a pawn: no score
}
