// Whole searches: mates found with their exact distance, the reasons a search ends, and positions
// that have tripped searches up (no moves at all, tiny limits, very long lines).
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "search/bench.h"
#include "search/movesearch.h"
#include "search/node.h"
#include "search_helpers.h"

namespace {

struct MateProblem {
    const char* fen;
    int mateIn;  // moves of the side to move
    const char* key;
};

// Well-known mates: the back rank, the scholar's mate, Morphy's rook sacrifice, and Philidor's
// smothered mate from two starting points.
constexpr MateProblem MATES[] = {
    {"6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1", 1, "Rd1d8+"},
    {"3r2k1/5ppp/8/8/8/8/5PPP/6K1 b - - 0 1", 1, "Rd8d1+"},
    {"r1bqkb1r/pppp1ppp/2n2n2/4p2Q/2B1P3/8/PPPP1PPP/RNB1K1NR w KQkq - 4 4", 1, "Qh5xf7+"},
    {"kbK5/pp6/1P6/8/8/8/8/R7 w - - 0 1", 2, "Ra1a6"},
    {"r5k1/ppp2Npp/8/8/2Q5/8/PPP2PPP/6K1 w - - 0 1", 3, "Nf7h6++"},
    {"r6k/ppp3pp/8/6N1/2Q5/8/PPP2PPP/6K1 w - - 0 1", 4, "Ng5f7+"},
};

// The search thread on fen with a fresh record, a long clock and an empty table, for calls straight
// into the tree search.
SearchThread& threadAt(const char* fen) {
    EXPECT_TRUE(gameBoard.setFen(fen)) << fen;
    SearchThread& thread = searchThread;
    thread.board = gameBoard;
    thread.clearRecord();
    thread.stop.store(0);
    timeControl.setMoveTime(20000);
    timeControl.start();
    tt.clear();
    return thread;
}

TEST(Search, SolvesMatesWithTheExactDistanceAndMove) {
    for (const MateProblem& problem : MATES) {
        const SearchOutcome found = searchPosition(problem.fen, 2 * problem.mateIn + 2, 20000);
        EXPECT_EQ(found.score, MATE - (2 * problem.mateIn - 1)) << problem.fen;
        EXPECT_EQ(found.bestText, problem.key) << problem.fen;
        // A mate inside the horizon needs no deeper iteration.
        EXPECT_EQ(found.reason, "(optimal)\n") << problem.fen;
        EXPECT_EQ(found.finishes, 1);
    }
}

TEST(Search, EndsWithoutAMoveWhenThereIsNone) {
    const SearchOutcome mated = searchPosition("3R2k1/5ppp/8/8/8/8/8/6K1 b - - 0 1", 10, 1000);
    EXPECT_EQ(mated.best, NO_MOVE);
    EXPECT_EQ(mated.score, -MATE);
    EXPECT_EQ(mated.finishes, 1);
    const SearchOutcome stalemate = searchPosition("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", 10, 1000);
    EXPECT_EQ(stalemate.best, NO_MOVE);
    EXPECT_EQ(stalemate.score, 0);
}

TEST(Search, SingleLegalMoveStopsAfterTheSecondIteration) {
    // The bishop's check leaves the king one square.
    const SearchOutcome found = searchPosition("4k3/8/8/4b3/8/8/P7/K7 w - - 0 1", 20, 20000);
    EXPECT_EQ(found.reason, "single move\n");
    EXPECT_EQ(found.depth, 2);
    EXPECT_EQ(found.bestText, "Ka1b1");
}

TEST(Search, TinyLimitsStillGiveALegalMove) {
    const char* fen = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1";
    const SearchOutcome oneMs = searchPosition(fen, 0, 1);
    EXPECT_TRUE(isLegalHere(oneMs.best));
    const SearchOutcome depthOne = searchPosition(fen, 1, 20000);
    EXPECT_EQ(depthOne.depth, 1);
    EXPECT_EQ(depthOne.reason, "depth limit\n");
    EXPECT_TRUE(isLegalHere(depthOne.best));

    tt.alloc(1);  // the smallest table there is
    const SearchOutcome small = searchPosition(fen, sanitized() ? 4 : 7, 20000);
    EXPECT_TRUE(isLegalHere(small.best));
    tt.alloc(8 * 1024);
}

TEST(Search, LinesDownToTheDeepestPlyStayInBounds) {
    // Deep enough below the root that quiescence runs into its ply limit.
    ASSERT_TRUE(gameBoard.setFen("r1bq1rk1/pp2bppp/2n1pn2/3p4/2PP4/2N1PN2/PP3PPP/R2QKB1R w KQ - 0 8"));
    SearchThread& thread = searchThread;
    thread.board = gameBoard;
    thread.clearRecord();
    thread.stop.store(0);
    timeControl.infinite.store(true);
    timeControl.start();
    const int score = alphaBeta(thread, 96, -MATE, MATE, 4, gameBoard.lastMove, NODE_PV);
    EXPECT_GT(score, -WON_BOUND);
    EXPECT_LT(score, WON_BOUND);
    EXPECT_LE(thread.seldepth, 120);
    const int qscore = quiescence(thread, 118, -MATE, MATE, 4, gameBoard.lastMove);
    EXPECT_GT(qscore, -WON_BOUND);
    timeControl.infinite.store(false);
}

TEST(Search, TableScoresAreReadRelativeToTheNode) {
    SearchThread& thread = threadAt("r1bq1rk1/pp2bppp/2n1pn2/3p4/2PP4/2N1PN2/PP3PPP/R2QKB1R w KQ - 0 8");

    // A mate ten plies from the root found at ply 3 is a mate twelve plies from the root at ply 5.
    storeEntry(thread, 3, NO_MOVE, MATE - 10, 20, TT_EXACT);
    EXPECT_EQ(alphaBeta(thread, 5, 0, 1, 6, NO_MOVE, NODE_CUT), MATE - 12);
    storeEntry(thread, 3, NO_MOVE, -(MATE - 10), 20, TT_EXACT);
    EXPECT_EQ(alphaBeta(thread, 5, 0, 1, 6, NO_MOVE, NODE_CUT), -(MATE - 12));

    // A shallow entry still decides the node when it knows the game is won ...
    tt.clear();
    storeEntry(thread, 2, NO_MOVE, 3500, 1, TT_LOWER);
    const uint64_t cuts = thread.stats.ttCuts.get();
    EXPECT_EQ(alphaBeta(thread, 2, 3399, 3400, 6, NO_MOVE, NODE_CUT), 3500);
    EXPECT_EQ(thread.stats.ttCuts.get(), cuts + 1);
    // ... but not at a PV node, and not with an ordinary score.
    EXPECT_LT(alphaBeta(thread, 2, 3399, 3400, 2, NO_MOVE, NODE_PV), 3400);
    tt.clear();
    storeEntry(thread, 2, NO_MOVE, 500, 1, TT_LOWER);
    EXPECT_LT(alphaBeta(thread, 2, 499, 500, 2, NO_MOVE, NODE_CUT), 500);
}

TEST(Search, OnlyANodeThatFailsLowSearchesItsRecaptureAgain) {
    // After Nxd5 Black wins the knight back with exd5. A node that stays below alpha searches that
    // recapture a second time a ply deeper; one that raised alpha keeps its first result.
    for (const int alpha : {-MATE, 2000}) {
        SearchThread& thread = threadAt("4k3/8/4p3/3p4/8/2N5/8/4K3 w - - 0 1");
        const Move takes = makeMove(thread.board, isMove(thread.board, "Nxd5"));
        ASSERT_NE(takes, NO_MOVE);
        Board recaptured = thread.board;
        ASSERT_NE(makeMove(recaptured, isMove(recaptured, "exd5")), NO_MOVE);
        alphaBeta(thread, 1, alpha, alpha == -MATE ? MATE : alpha + 1, 2, takes,
                  alpha == -MATE ? NODE_PV : NODE_ALL);
        TtEntry child;
        ASSERT_TRUE(tt.probe(recaptured, child));
        EXPECT_EQ(child.depth, alpha == -MATE ? 1 : 2) << alpha;
    }
}

TEST(Search, ReductionsFollowTheAlphaOfEachMove) {
    // The hash move Ra2 loses the back rank to Re1 mate, so the node starts its loop far below every
    // ordinary score; the first sound move then lifts alpha, and the quiet moves after it are reduced.
    SearchThread& thread = threadAt("4r1k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 1");
    storeEntry(thread, 2, isMove(thread.board, "Ra2"), 0, 20, TT_LOWER);
    const int score = alphaBeta(thread, 2, -MATE, MATE, 2, NO_MOVE, NODE_PV);
    EXPECT_GT(score, -WON_BOUND);
    EXPECT_GT(thread.stats.reduceTries.get(), 0u);
}

TEST(Search, QuiescenceInCheckAtItsFirstLevelPassesThatLevelOn) {
    // The rook checks on the first rank and Ng1 is the only answer. The reply's node searches with the
    // quiescence depth of the checked node, and stores at the table depth of that level.
    SearchThread& thread = threadAt("6k1/8/8/8/8/7N/6PP/r6K w - - 0 1");
    quiescence(thread, 2, -MATE, MATE, 4, gameBoard.lastMove);
    Board reply = gameBoard;
    ASSERT_NE(makeMove(reply, isMove(reply, "Ng1")), NO_MOVE);
    TtEntry entry;
    ASSERT_TRUE(tt.probe(reply, entry));
    EXPECT_EQ(entry.depth, 0);
}

TEST(Search, ARootMoveThatTakesOverIsStoredUnderTheRoot) {
    // After 1.e4 a later root move takes over at depth 8. The root's entry must name it, and the entry
    // of the position after it must still hold a move of that position.
    ASSERT_TRUE(gameBoard.setFen(START_FEN));
    ASSERT_NE(makeMove(gameBoard, isMove(gameBoard, "e2e4")), NO_MOVE);
    tt.clear();
    const SearchOutcome found = searchGameBoard(8, 20000);
    TtEntry root;
    ASSERT_TRUE(tt.probe(gameBoard, root));
    EXPECT_EQ(plainMove(root.move), plainMove(found.best));
    Board child = gameBoard;
    ASSERT_NE(makeMove(child, plainMove(found.best)), NO_MOVE);
    TtEntry reply;
    if (tt.probe(child, reply) && reply.move != NO_MOVE) {
        EXPECT_TRUE(isValidMove(child, plainMove(reply.move))) << found.bestText;
    }
}

TEST(Search, TheRootsTableMoveIsSearchedFirst) {
    // An exact depth-3 entry names h3; Rxd8+, which wins the queen, leads the list by its keys. The
    // search starts at depth 3 with h3.
    SearchThread& thread = threadAt("3qk3/8/8/8/8/8/7P/3RK3 w - - 0 1");
    storeEntry(thread, 0, isMove(gameBoard, "h3"), 0, 3, TT_EXACT);
    struct FirstMove : RecordingListener {
        int depth = 0;
        Move move = NO_MOVE;
        void reportMove(const SearchReport& report, int, Move made) override {
            if (move != NO_MOVE) return;
            depth = report.depth;
            move = made;
        }
    } listener;
    SearchRequest request = analysisOfGameBoard(listener);
    request.infinite = false;
    request.maxDepth = 3;
    request.clock = ClockLimits{.moveTimeMs = 20000};
    searchThread.startSearch(request, true);
    EXPECT_EQ(listener.depth, 3);
    EXPECT_EQ(plainMove(listener.move), plainMove(isMove(gameBoard, "h3")));
}

TEST(Search, BenchNodeCountIsASignature) {
    const int depth = sanitized() ? 2 : 4;
    tt.alloc(256);  // cleared before every position: keep it small
    const BenchResult first = runBench(depth);
    const BenchResult second = runBench(depth);
    tt.alloc(8 * 1024);
    EXPECT_GT(first.nodes, 0u);
    EXPECT_EQ(first.nodes, second.nodes);
}

TEST(Search, PonderhitWithASingleReplyEndsThePonderingAtOnce) {
    RecordingListener listener;
    searchThread.boot();
    ASSERT_TRUE(gameBoard.setFen("4k3/8/8/4b3/8/8/P7/K7 w - - 0 1"));
    searchThread.startSearch(analysisOfGameBoard(listener), false);
    while (searchThread.iterationDepth() <= 2) platform::sleepMs(1);
    searchThread.ponderhit();
    EXPECT_TRUE(searchThread.isIdle());
    EXPECT_EQ(listener.finishes, 1);
    EXPECT_EQ(listener.best, searchThread.bestMove());
}

TEST(Search, GamesLongerThanTheHistoryAreSearchedOnItsRecentPlies) {
    // Rooks shuffle for 1000 plies: the history keeps 1024, a search on top needs more.
    ASSERT_TRUE(gameBoard.setFen("4k3/8/8/8/8/8/8/R3K2R w - - 0 1"));
    const char* cycle[] = {"Ra2", "Kd8", "Ra1", "Ke8", "Rh2", "Kd8", "Rh1", "Ke8"};
    for (int i = 0; i < 1000; ++i) {
        const Move made = makeMove(gameBoard, isMove(gameBoard, cycle[i % 8]));
        ASSERT_NE(made, NO_MOVE);
        gameBoard.lastMove = made;
    }
    const SearchOutcome found = searchGameBoard(6, 20000);
    EXPECT_TRUE(isLegalHere(found.best));
    // The fifty-move rule has long struck: every line is a draw.
    EXPECT_EQ(found.score, 0);
}

}  // namespace
