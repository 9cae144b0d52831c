// Building books from PGN: real collections, the filters, the first-promotion stop and broken games.
#include "book/builder.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "boards.h"
#include "book/book.h"
#include "environment.h"
#include "scratch.h"

namespace {

using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

struct Built {
    bool ok;
    std::string output;
    std::vector<BookEntry> records;
};

Built build(const ScratchDir& dir, const std::string& pgn, BookBuildOptions options = {}) {
    options.file = dir.file("built.bbk");
    std::string written;
    CaptureStdout();
    const bool ok = buildBook(pgn.c_str(), options, 0, written);
    return {ok, GetCapturedStdout(), ok ? readBookFile(written) : std::vector<BookEntry>{}};
}

Built buildText(const ScratchDir& dir, const std::string& text, BookBuildOptions options = {}) {
    writeText(dir.file("games.pgn"), text);
    return build(dir, dir.file("games.pgn"), options);
}

// The number of moves the records hold for a position.
size_t movesOf(const std::vector<BookEntry>& records, uint64_t key) {
    return std::count_if(records.begin(), records.end(), [&](const BookEntry& e) { return e.key == key; });
}

// Real games with castling, promotions written without '=', long endgames and a start from a FEN:
// every move reads as legal.
TEST(BookBuilder, HardGamesAreReadToTheirEnd) {
    BookBuildOptions options;
    options.maxPly = 1000;
    ScratchDir dir;
    const Built book = build(dir, testData("games.pgn"), options);
    EXPECT_TRUE(contains(book.output,
                         "7 games read: 6 used, 1 without result, 0 filtered out, "
                         "0 without moves, 0 broken\n"))
        << book.output;
}

TEST(BookBuilder, TwicBookIsSortedAndEveryPositionIsFound) {
    const std::string twic = sharedData("pgn/twic0920.pgn");
    SKIP_WITHOUT(twic);
    ScratchDir dir;
    const Built book = build(dir, twic);
    ASSERT_TRUE(book.ok) << book.output;
    EXPECT_TRUE(contains(book.output,
                         "2245 games read: 2234 used, 0 without result, 0 filtered out, "
                         "11 without moves, 0 broken\n"))
        << book.output;

    // Sorted behind a first record of key 0, every position found by a probe, Black's moves marked.
    ASSERT_EQ(book.records[0].key, 0u);
    const uint64_t e4Key = bookKey(*boardAfter(START_FEN, "e4"));
    Book probe;
    ASSERT_TRUE(probe.open(dir.file("built.bbk").c_str()));
    for (size_t i = 1; i < book.records.size(); i++) {
        const BookEntry& record = book.records[i];
        ASSERT_LE(book.records[i - 1].key, record.key);
        ASSERT_TRUE(book.records[i - 1].key == record.key || probe.find(record.key)) << i;
        EXPECT_TRUE(record.key != e4Key || (record.from & BOOK_ODD_PLY));
    }
}

TEST(BookBuilder, GamesStopAtTheirFirstPromotionAndTheirMaximumPly) {
    ScratchDir dir;
    Built book =
        buildText(dir, "[FEN \"8/P6k/8/8/8/8/8/K7 w - - 0 1\"]\n1. Kb1 Kg8 2. a8=Q+ Kf7 3. Qb7+ 1-0\n");
    ASSERT_EQ(book.records.size(), 3u) << "the first record, Kb1 and Kg8\n" << book.output;

    BookBuildOptions options;
    options.maxPly = 3;
    book = buildText(dir, "1. e4 e5 2. Nf3 Nc6 3. Bb5 a6 1/2-1/2\n1. d4 d5 0-1\n", options);
    EXPECT_EQ(book.records.size(), 1u + 3 + 2);
}

TEST(BookBuilder, FiltersByResultRatingGamesAndScore) {
    ScratchDir dir;
    const std::string games =
        "[WhiteElo \"2400\"][BlackElo \"2300\"]\n1. e4 e5 1-0\n"
        "[WhiteElo \"2500\"][BlackElo \"2100\"]\n1. e4 c5 0-1\n"
        "1. d4 d5 1/2-1/2\n"
        "1. d4 Nf6 *\n"
        "[Result \"1-0\"]\n1. c4 e5\n";
    const auto summary = [&](const BookBuildOptions& options) {
        const std::string out = buildText(dir, games, options).output;
        return out.substr(out.find("5 games read: "), 50);
    };
    EXPECT_EQ(summary({}), "5 games read: 4 used, 1 without result, 0 filtered");
    BookBuildOptions options;
    options.minElo = 2200;
    EXPECT_EQ(summary(options), "5 games read: 1 used, 1 without result, 3 filtered");
    // e4 scored 1 of 2 and d4 a draw; c4, and Black's c5, won.
    options = {};
    options.minScore = 60;
    const Built book = buildText(dir, games, options);
    EXPECT_EQ(movesOf(book.records, bookKey(*boardFrom(START_FEN))), 1u);
    EXPECT_EQ(movesOf(book.records, bookKey(*boardAfter(START_FEN, "e4"))), 1u);
}

TEST(BookBuilder, BrokenGamesAreNamedAndSkipped) {
    ScratchDir dir;
    Built book = buildText(dir,
                           "1. e4 e5 2. Ke3 Nc6 1-0\n"
                           "[FEN \"8/8/8/8/8/8/8/8 w - - 0 1\"]\n1. e4 1-0\n"
                           "1. e4 {open\n"
                           "[Event \"x\"]\n1. Nf3 Nf6 1/2-1/2\n");
    EXPECT_TRUE(contains(book.output,
                         "game 1: illegal move 'Ke3' at ply 3, skipped\n"
                         "game 2: bad FEN, skipped\n"
                         "game 3: unterminated comment, skipped\n"
                         "4 games read: 1 used, 0 without result, 0 filtered out, "
                         "0 without moves, 3 broken\n"))
        << book.output;
    EXPECT_EQ(book.records.size(), 3u);

    BookBuildOptions overPgn;
    overPgn.file = dir.file("games.pgn");
    std::string written;
    CaptureStdout();
    EXPECT_FALSE(buildBook(overPgn.file.c_str(), overPgn, 0, written));
    EXPECT_TRUE(contains(GetCapturedStdout(), "over its source file")) << "the games must survive";
    EXPECT_TRUE(contains(readText(dir.file("games.pgn")), "Nf3 Nf6"));
    book = buildText(dir, "1. e4 *\n");
    EXPECT_FALSE(book.ok);
    EXPECT_TRUE(contains(book.output, "no book moves found in")) << book.output;
}

}  // namespace
