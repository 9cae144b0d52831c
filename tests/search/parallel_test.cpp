// The parallel search: searches on two and four threads that split and still find
// the exact mates, stops that reach every thread, and surplus threads that sleep.
#include "search/parallel.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/platform.h"
#include "search/bench.h"
#include "search_helpers.h"

namespace {

uint64_t totalSplits() {
    uint64_t splits = 0;
    for (const SearchThread& thread : searchThreads) splits += thread.stats.splitNodes.get();
    return splits;
}

// A quiet middlegame with many moves at every node: deep enough searches split often.
constexpr const char* MIDDLEGAME = "r1bq1rk1/pp2bppp/2n1pn2/3p4/2PP4/2N1PN2/PP3PPP/R2QKB1R w KQ - 0 8";

TEST(Parallel, SeveralThreadsSplitAndStillFindTheExactMates) {
    struct Mate {
        const char* fen;
        int score;
        const char* key;
    };
    const Mate mates[] = {
        {"r5k1/ppp2Npp/8/8/2Q5/8/PPP2PPP/6K1 w - - 0 1", MATE - 5, "Nf7h6++"},
        {"r6k/ppp3pp/8/6N1/2Q5/8/PPP2PPP/6K1 w - - 0 1", MATE - 7, "Ng5f7+"},
    };
    for (int threads : {2, 4}) {
        setThreads(threads);
        // On a busy machine a worker may not get a processor before a short search ends: search
        // deeper until one has joined.
        uint64_t splits = 0;
        for (int depth = sanitized() ? 4 : 7; splits == 0 && depth < 10; ++depth) {
            const SearchOutcome quiet = searchPosition(MIDDLEGAME, depth, 60000);
            EXPECT_TRUE(isLegalHere(quiet.best)) << threads;
            splits = totalSplits();
        }
        EXPECT_GT(splits, 0u) << threads;
        for (const Mate& mate : mates) {
            const SearchOutcome found = searchPosition(mate.fen, 10, 60000);
            EXPECT_EQ(found.score, mate.score) << threads << " " << mate.fen;
            EXPECT_EQ(found.bestText, mate.key) << threads << " " << mate.fen;
            EXPECT_EQ(found.finishes, 1);
        }
        const BenchResult bench = runBench(sanitized() ? 2 : 5);
        EXPECT_GT(bench.nodes, 0u) << threads;
    }
    setThreads(1);
}

TEST(Parallel, StopReachesEveryThreadAndLoweringTheCountPutsWorkersToSleep) {
    searchThread.boot();
    for (int threads : {4, 2, 1}) {
        setThreads(threads);
        RecordingListener listener;
        ASSERT_TRUE(gameBoard.setFen(MIDDLEGAME));
        searchThread.startSearch(analysisOfGameBoard(listener), false);
        platform::sleepMs(200);
        searchThread.stopSearch();
        EXPECT_EQ(listener.finishes, 1) << threads;
        EXPECT_TRUE(isLegalHere(listener.best)) << threads;
        // The search ends only once its workers sleep again.
        uint64_t nodes = totalNodes();
        platform::sleepMs(20);
        EXPECT_EQ(totalNodes(), nodes) << threads;
        if (threads == 1) {
            EXPECT_EQ(searchThread.stats.splitNodes.get(), 0u);
        }
    }
}

}  // namespace
