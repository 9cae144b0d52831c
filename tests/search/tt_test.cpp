#include "search/tt.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <thread>

#include "board/board.h"
#include "board/tables.h"

namespace {

class TtTest : public ::testing::Test {
  protected:
    Tt table;
    SearchStats stats;
    std::unique_ptr<Board> board = std::make_unique<Board>();

    void SetUp() override { table.alloc(Tt::MIN_KILOBYTES); }
    void TearDown() override { table.free(); }

    // Only the key and the side to move reach the table for moves that capture nothing.
    Board& at(uint64_t key, uint32_t side = WHITE) {
        board->hash = key;
        board->sideToMove = side;
        return *board;
    }

    void put(uint64_t key, int depth, uint8_t type, int score = 0, Move move = makeMoveWord(0x14, 0x34)) {
        TtEntry e;
        e.move = move;
        e.score = int16_t(score);
        e.depth = int16_t(depth);
        e.type = type;
        table.store(stats, at(key), e);
    }

    bool has(uint64_t key) {
        TtEntry e;
        return table.probe(at(key), e);
    }

    TtEntry get(uint64_t key) {
        TtEntry e;
        EXPECT_TRUE(table.probe(at(key), e));
        return e;
    }
};

// Keys that share a bucket: same low half (home slot 2, so the probe order is 2, 3, 0, 1), different
// high halves.
constexpr uint64_t bucketKey(int n) {
    return uint64_t(0x1000 + n) << 32 | 0x00000122;
}

TEST_F(TtTest, SideToMoveResizingAndClearingAndNoSizeReachesPastTheTable) {
    put(bucketKey(1), 5, TT_EXACT, 77);
    table.alloc(Tt::MIN_KILOBYTES);  // same size: the contents stay
    EXPECT_EQ(get(bucketKey(1)).score, 77);
    EXPECT_FALSE(has(bucketKey(2)));  // same bucket, other position
    TtEntry black;                    // the key has no side to move; the index does
    EXPECT_FALSE(table.probe(at(bucketKey(1), BLACK), black));
    table.newSearch();
    table.clear();
    EXPECT_FALSE(has(bucketKey(1)));
    EXPECT_EQ(table.currentAge(), 1);

    // A size that is no power of two leaves holes in the index but never reaches past the table.
    table.alloc(384);
    EXPECT_EQ(table.entryCount(), 24576u);
    std::mt19937_64 random(7);
    for (int i = 0; i < 20000; i++) {
        const uint64_t key = random();
        put(key, 3, TT_EXACT, i & 1023);
        ASSERT_EQ(get(key).score, i & 1023);
    }
}

TEST_F(TtTest, SamePositionKeepsTheBetterResult) {
    const uint64_t key = bucketKey(1);
    put(key, 10, TT_EXACT, 40);
    put(key, 5, TT_EXACT, 90);
    EXPECT_EQ(get(key).score, 40);  // deeper exact survives
    put(key, 10, TT_UPPER, 90);
    EXPECT_EQ(get(key).score, 90);  // equal depth overwrites
    EXPECT_EQ(stats.ttUpdates.get(), 1u);

    put(key, 10, TT_LOWER, 120);
    put(key, 5, TT_LOWER, 100);  // weaker bound: kept
    EXPECT_EQ(get(key).score, 120);
    put(key, 5, TT_LOWER, 130);  // a shallower search saw more: replaced
    EXPECT_EQ(get(key).score, 130);
    EXPECT_EQ(get(key).depth, 5);

    put(key, 10, TT_UPPER, 50);
    put(key, 5, TT_UPPER, 80);
    EXPECT_EQ(get(key).score, 50);
    put(key, 5, TT_UPPER, 30);
    EXPECT_EQ(get(key).score, 30);
    EXPECT_EQ(stats.ttReplacements.get(), 1u);  // only the first store took a slot
}

TEST_F(TtTest, ReplacementPrefersOldThenShallow) {
    put(bucketKey(1), 8000, TT_EXACT);  // slot 2
    table.newSearch();
    for (int n = 2; n <= 4; n++) put(bucketKey(n), 1, TT_EXACT);  // the empty slots 3, 0, 1
    EXPECT_EQ(stats.ttReplacements.get(), 4u);
    EXPECT_EQ(stats.ttSameAgeReplacements.get(), 0u);

    // An entry of the previous search goes first, however deep.
    put(bucketKey(5), 1, TT_EXACT);
    EXPECT_FALSE(has(bucketKey(1)));
    for (int n = 2; n <= 5; n++) EXPECT_TRUE(has(bucketKey(n))) << n;
    EXPECT_EQ(stats.ttSameAgeReplacements.get(), 0u);

    // All of this search and equally deep: the first slot in probe order, the home slot.
    put(bucketKey(6), 1, TT_EXACT);
    EXPECT_FALSE(has(bucketKey(5)));
    EXPECT_EQ(stats.ttSameAgeReplacements.get(), 1u);

    // Otherwise the shallowest.
    put(bucketKey(2), 9, TT_EXACT);
    put(bucketKey(6), 9, TT_EXACT);
    put(bucketKey(3), 2, TT_EXACT);
    put(bucketKey(7), 3, TT_EXACT);
    EXPECT_FALSE(has(bucketKey(4)));
    for (int n : {2, 3, 6, 7}) EXPECT_TRUE(has(bucketKey(n))) << n;

    EXPECT_DOUBLE_EQ(table.filling(8192), 50.0);
}

// Two threads keep rewriting the same positions with different results while a third reads them
// without locks: the reader sees one writer's move and score, never a mixture. (Under the thread
// sanitizer this also proves every access to the shared words atomic.)
TEST_F(TtTest, ConcurrentStoresAndProbes) {
    constexpr int KEYS = 64;
    auto keyOf = [](int k) { return uint64_t(0x5000 + k) << 32 | uint32_t(k) << 4; };  // a bucket each
    std::atomic<bool> done{false};
    auto writer = [&](Move move, int score) {
        SearchStats own;
        auto b = std::make_unique<Board>();
        b->sideToMove = WHITE;
        while (!done.load(std::memory_order_relaxed)) {
            for (int k = 0; k < KEYS; k++) {
                b->hash = keyOf(k);
                TtEntry e;
                e.move = move;
                e.score = int16_t(score);
                e.depth = int16_t(k);
                e.type = TT_EXACT;
                table.store(own, *b, e);
            }
        }
    };
    const Move first = makeMoveWord(0x14, 0x34), second = makeMoveWord(0x63, 0x43);
    std::thread one(writer, first, 100), two(writer, second, -2000);
    int seen = 0;
    for (int round = 0; round < 100000 && seen < 50000; round++) {
        for (int k = 0; k < KEYS; k++) {
            TtEntry e;
            if (!table.probe(at(keyOf(k)), e)) continue;
            seen++;
            ASSERT_TRUE((e.move == first && e.score == 100) || (e.move == second && e.score == -2000));
            ASSERT_EQ(e.depth, k);
        }
    }
    done = true;
    one.join();
    two.join();
    EXPECT_GE(seen, 50000);
}

TEST_F(TtTest, StoredCaptureFollowsTheBoard) {
    // Black knights on b8 (placed first) and a2; White's rook on a1 takes the one on a2.
    ASSERT_TRUE(board->setFen("1n2k3/8/8/8/8/8/n7/R3K3 w - - 0 1"));
    const int a1 = 0x00, a2 = 0x10, b8 = 0x71;
    const int onA2 = board->at(a2);
    const int onB8 = board->at(b8);
    ASSERT_NE(onA2, onB8);
    ASSERT_EQ(pieceCode[onA2], pieceCode[onB8]);
    TtEntry e;
    e.depth = 4;
    e.type = TT_LOWER;
    e.score = 300;

    // Reached along another line, the knight on a2 has the other knight slot: corrected.
    e.move = makeMoveWord(a1, a2, onB8);
    table.store(stats, *board, e);
    EXPECT_EQ(get(board->hash).move, makeMoveWord(a1, a2, onA2));
}

}  // namespace
