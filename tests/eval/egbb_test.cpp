// The bitbase connection through the real loading path: against the library built beside the engine
// with the Debian tables, and against stand-ins for what those cannot show (a missing entry point,
// larger sets, the exact arguments passed).
#include "eval/egbb.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "board/makemove.h"
#include "board/movegen.h"
#include "eval_support.h"
#include "platform/platform.h"

using namespace evaltest;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

namespace {

const std::string LIBRARIES = KELVRA_TEST_EGBB_DIR;

// The stand-in's test controls, found in the library the engine loaded.
struct Controls {
    void (*claim)(int men, int answer);
    int (*lastProbe)(int* args);

    Controls() {
        void* library = platform::loadLibrary(LIBRARIES + "/standin/egbbso64.so");
        claim = reinterpret_cast<decltype(claim)>(platform::findSymbol(library, "stand_in_claim"));
        lastProbe =
            reinterpret_cast<decltype(lastProbe)>(platform::findSymbol(library, "stand_in_last_probe"));
    }
    int probes() {
        int args[9];
        return lastProbe(args);
    }
};

// A connection to directory, loaded and initialised, without its messages.
std::unique_ptr<EGBB> connect(const std::string& directory) {
    auto bitbases = std::make_unique<EGBB>();
    CaptureStdout();
    EXPECT_TRUE(bitbases->load(directory.c_str()));
    EXPECT_TRUE(bitbases->init(16));
    GetCapturedStdout();
    return bitbases;
}

// A connection to the stand-in claiming men and giving answer for all of them.
std::unique_ptr<EGBB> connect(Controls& controls, int men, int answer) {
    controls.claim(men, answer);
    return connect(LIBRARIES + "/standin");
}

class StandIn : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_NE(controls.claim, nullptr) << "stand-in library not built"; }
    void TearDown() override { controls.claim(3, 0); }
    Controls controls;
};

class RealTables : public ::testing::Test {
  protected:
    void SetUp() override {
        SKIP_WITHOUT_BITBASES();
        bitbases = connect(KELVRA_EGBB_DIR);
        ASSERT_EQ(bitbases->maxMen(), 3);
    }
    int score(const std::string& fen) {
        int s = 12345;
        EXPECT_TRUE(bitbases->probe(*boardFrom(fen), s)) << fen;
        return s;
    }
    std::unique_ptr<EGBB> bitbases;
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

TEST(BitbaseLoading, DirectoryWithWindowsSeparators) {
    EGBB windows;
    CaptureStdout();
    EXPECT_TRUE(windows.load((LIBRARIES + "\\standin\\").c_str()));
    EXPECT_EQ(GetCapturedStdout(), "");
}

TEST_F(StandIn, ProbeConvertsSquaresAndPiecesAndKeepsToTheSet) {
    auto five = connect(controls, 5, 7);
    int score = 0;
    // Queens, rooks, bishops, knights, pawns; White before Black within a kind. Squares a1 = 0.
    ASSERT_TRUE(five->probe(*boardFrom("r3k3/7p/8/8/8/8/8/3QK3 b - -"), score));
    int args[9];
    controls.lastProbe(args);
    const int expected[9] = {1, 4, 60, 2, 3, 3 + 6, 56, 6 + 6, 55};
    for (int i = 0; i < 9; ++i) EXPECT_EQ(args[i], expected[i]) << "argument " << i;
    EXPECT_EQ(score, 7);  // pawns on the board: the library's answer stands

    // Four men besides the kings are beyond a five-men set: not asked at all.
    const int probes = controls.probes();
    EXPECT_FALSE(five->probe(*boardFrom("r3k3/7p/8/8/8/8/7P/3QK3 w - -"), score));
    EXPECT_EQ(controls.probes(), probes);

    auto three = connect(controls, 3, 7);
    EXPECT_FALSE(three->probe(*boardFrom("4k3/7p/8/8/8/8/7P/4K3 w - -"), score));
    EXPECT_EQ(controls.probes(), probes + 3);  // only the three detection probes of init
    EXPECT_TRUE(three->probe(*boardFrom("4k3/8/8/8/8/8/7P/4K3 w - -"), score));
}

TEST(WinScore, PawnlessWinsScoreProgress) {
    // King and queen: 100 x 10 + 5000, the losing king in the a8 corner +75, kings 2 apart -20.
    EXPECT_EQ(winScore(*boardFrom("k7/8/2K5/8/8/8/8/1Q6 w - -"), WHITE), 6055);
    // Bishop and knight: the corner of the bishop's colour. Base 5600; kings e1-h8 and e1-a8 are 7 apart.
    EXPECT_EQ(winScore(*boardFrom("7k/8/8/8/8/8/8/2B1KN2 w - -"), WHITE), 5600 + 70 - 70);  // dark, h8
    EXPECT_EQ(winScore(*boardFrom("k7/8/8/8/8/8/8/2B1KN2 w - -"), WHITE), 5600 + 0 - 70);   // dark, a8
    EXPECT_EQ(winScore(*boardFrom("k7/8/8/8/8/8/8/3BKN2 w - -"), WHITE), 5600 + 70 - 70);   // light, a8
    // The loser's material counts against: 1000 + 5000 - 500 - 200; king d5 in the centre -10,
    // kings 4 apart.
    EXPECT_EQ(winScore(*boardFrom("8/8/8/3k4/8/8/r7/RR2K3 w - -"), WHITE), 5300 - 10 - 40);
    EXPECT_EQ(winScore(*boardFrom("8/8/8/3k4/8/8/r6P/RR2K3 w - -"), WHITE), 0);  // a pawn: no score
}

TEST_F(RealTables, WinsDrawsAndLossesForEitherSideToMove) {
    enum Outcome { LOST = -1, DRAWN = 0, WON = 1 };
    struct Case {
        const char* fen;
        Outcome outcome;  // for the side to move
    };
    const Case cases[] = {
        {"4k3/8/4K3/4P3/8/8/8/8 w - -", WON},    // king on the sixth in front of the pawn
        {"4k3/8/4K3/4P3/8/8/8/8 b - -", LOST},   // whoever moves
        {"4k3/8/8/4K3/4P3/8/8/8 w - -", WON},    // White reaches the sixth rank first
        {"4k3/8/8/4K3/4P3/8/8/8 b - -", DRAWN},  // Black takes the opposition with Ke7
        {"7k/8/7K/7P/8/8/8/8 w - -", DRAWN},     // rook pawn, the defending king in front
        {"8/8/8/8/4p3/4k3/8/4K3 b - -", WON},    // Black's pawn
        {"8/8/8/4k3/8/8/8/R3K3 w - -", WON},     // king and rook
        {"7r/8/8/8/8/8/8/K6k w - -", LOST},      // Black's rook, both kings on the first rank
        {"k7/8/2K5/8/8/8/8/1Q6 w - -", WON},     // king and queen
        {"k7/1Q6/8/8/8/8/8/7K b - -", DRAWN},    // the undefended queen is taken
        {"k7/8/1QK5/8/8/8/8/8 b - -", DRAWN},    // stalemate in the corner
        {"7k/8/8/8/8/8/8/N6K b - -", DRAWN},     // a lone knight
    };
    for (const Case& c : cases) {
        const int s = score(c.fen);
        const auto board = boardFrom(c.fen);
        const int side = static_cast<int>(board->sideToMove);
        const int pawnless = winScore(*board, c.outcome == LOST ? side ^ 1 : side);
        if (c.outcome == DRAWN) {
            EXPECT_EQ(s, 0) << c.fen;
        } else if (pawnless) {  // the engine's own score replaces the library's answer
            EXPECT_EQ(s, c.outcome * pawnless) << c.fen;
        } else {  // the library's answer stands: a decided result, short of the pawnless wins
            EXPECT_GE(s * c.outcome, 3000) << c.fen;
            EXPECT_LT(s * c.outcome, 4700) << c.fen;
        }
    }
}

// With pawns the library's answer is the engine's score, so it must show the way: along the best
// line the winner's score rises by one each ply, and no move does better.
TEST_F(RealTables, PawnWinsRiseAlongTheBestLine) {
    // No pawn is one step from promoting: a promotion would leave the pawn endings' scale.
    for (const char* fen :
         {"4k3/8/8/4K3/4P3/8/8/8 w - -", "8/8/8/8/4p3/4k3/8/4K3 b - -", "7k/8/8/8/8/8/P7/K7 w - -"}) {
        auto board = boardFrom(fen);
        const int here = score(fen);
        MoveList list;
        Move* end = generateMoves(*board, list);
        int best = -EGBB_NOT_AVAILABLE;
        for (Move* m = list; m < end; ++m) {
            const SavedState saved = saveState(*board);
            const Move made = makeMove(*board, *m);
            if (made == NO_MOVE) continue;
            int after = 0;
            if (bitbases->probe(*board, after)) best = std::max(best, -after);
            takeBack(*board, made, saved);
        }
        EXPECT_EQ(best, here + 1) << fen;
    }
}

// The library answers "not available" to what is not a position its tables hold, without crashing.
TEST_F(RealTables, LibraryRefusesWhatIsNoPosition) {
    using Probe = int (*)(int, int, int, int, int, int, int, int, int);
    const auto probe = reinterpret_cast<Probe>(
        platform::findSymbol(platform::loadLibrary(KELVRA_EGBB_DIR "/egbbso64.so"), "probe_egbb_5men"));
    ASSERT_NE(probe, nullptr);
    const int a1 = 0, c3 = 18, e4 = 28, c8 = 58, e8 = 60, h8 = 63;
    struct Case {
        int args[9];
        const char* what;
    };
    const Case cases[] = {
        {{0, a1, h8, 6, 16, 6, 17, 0, 0}, "two pawns: no such table installed"},
        {{0, a1, c3, 3, c8, 0, 0, 0, 0}, "the side not to move in check"},
        {{0, 64, h8, 3, e4, 0, 0, 0, 0}, "a king off the board"},
        {{0, a1, a1, 3, e4, 0, 0, 0, 0}, "kings on one square"},
        {{0, a1, h8, 7, e4, 0, 0, 0, 0}, "an unknown piece code"},
        {{0, a1, e4, 6, e8, 0, 0, 0, 0}, "a pawn on the last rank"},
    };
    for (const Case& c : cases) {
        const int* a = c.args;
        EXPECT_EQ(probe(a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7], a[8]), EGBB_NOT_AVAILABLE) << c.what;
    }
}
