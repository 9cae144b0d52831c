// Building books from PGN: counts against a tally made here from the same games, real games replayed
// to their known final positions, the filters, the first-promotion stop and broken games.
#include "book/builder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>

#include "board/makemove.h"
#include "board/notation.h"
#include "book/book.h"
#include "book/pgn.h"
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

uint64_t keyAfter(const std::vector<const char*>& moves) {
    auto board = std::make_unique<Board>();
    EXPECT_TRUE(board->setFen(START_FEN));
    for (const char* text : moves) EXPECT_NE(makeMove(*board, isMove(*board, text) & ~MOVE_CHECKS), NO_MOVE);
    return bookKey(*board);
}

// Won, drawn and lost games of each (from, to) of a position.
using Counts = std::map<std::pair<int, int>, std::array<int, 3>>;

Counts recordsOf(const std::vector<BookEntry>& records, uint64_t key) {
    Counts moves;
    for (const BookEntry& e : records)
        if (e.key == key) moves[{e.from & 127, e.to}] = {e.won, e.drawn, e.lost};
    return moves;
}

TEST(BookBuilder, HardGamesReplayToTheirKnownFinalPositions) {
    const char* finals[] = {"r6r/5p2/4kP1p/2R3p1/1p1R4/p5B1/P4PPP/5K2 b",
                            "8/3k3p/p3b1p1/1p3p2/2pB4/1PK2P2/P1P3PP/8 w",
                            "8/6p1/1b3kP1/p4P2/Pp2K2p/1P6/8/5B2 b",
                            "8/8/8/7P/N7/5K2/4Q3/4k3 b",
                            "8/3k3p/4pQ2/8/2P2Pq1/1Pn5/6P1/6BK b",
                            "rr3bk1/1bqn1ppp/p2p1n2/1p1PpNB1/2p1P3/2P2N1P/PPBQ1PP1/R3R1K1 b",
                            "8/8/R2bk3/6p1/1Pr3P1/8/5K2/8 w"};
    PgnReader reader;
    ASSERT_TRUE(reader.open(testData("games.pgn").c_str()));
    auto board = std::make_unique<Board>();
    PgnGame game;
    size_t games = 0;
    while (reader.next(game) && games < std::size(finals)) {
        SCOPED_TRACE("game " + std::to_string(game.number));
        const std::string* fen = game.tag("FEN");
        CaptureStdout();
        ASSERT_TRUE(board->setFen(fen ? fen->c_str() : START_FEN));
        GetCapturedStdout();
        for (const std::string& text : game.moves)
            ASSERT_NE(makeMove(*board, isMove(*board, text.c_str()) & ~MOVE_CHECKS), NO_MOVE) << text;
        char* text = nullptr;
        size_t size = 0;
        FILE* stream = open_memstream(&text, &size);
        board->writeFen(stream);
        std::fclose(stream);
        EXPECT_EQ(std::string(text, std::strlen(finals[games])), finals[games]);
        std::free(text);
        games++;
    }
    EXPECT_EQ(games, std::size(finals));

    BookBuildOptions options;
    options.maxPly = 1000;
    ScratchDir dir;
    const Built book = build(dir, testData("games.pgn"), options);
    EXPECT_TRUE(contains(book.output,
                         "7 games read: 6 used, 1 without result, 0 filtered out, "
                         "0 without moves, 0 broken\n"))
        << book.output;
}

TEST(BookBuilder, TwicBookMatchesATallyOfTheSameGames) {
    const std::string twic = sharedData("pgn/twic0920.pgn");
    SKIP_WITHOUT(twic);
    ScratchDir dir;
    const Built book = build(dir, twic);
    ASSERT_TRUE(book.ok) << book.output;
    EXPECT_TRUE(contains(book.output,
                         "2245 games read: 2234 used, 0 without result, 0 filtered out, "
                         "11 without moves, 0 broken\n"))
        << book.output;

    // The first moves, and the replies to 1. e4, tallied here by result from the mover's side.
    Counts first, afterE4;
    PgnReader reader;
    ASSERT_TRUE(reader.open(twic.c_str()));
    auto board = std::make_unique<Board>();
    PgnGame game;
    while (reader.next(game)) {
        if (game.moves.size() < 2) continue;
        const int white = game.result == "1-0" ? 0 : game.result == "0-1" ? 2 : 1;
        ASSERT_TRUE(board->setFen(START_FEN));
        const Move one = isMove(*board, game.moves[0].c_str());
        first[{moveFrom(one), moveTo(one)}][white]++;
        if (game.moves[0] != "e4") continue;
        makeMove(*board, one & ~MOVE_CHECKS);
        const Move two = isMove(*board, game.moves[1].c_str());
        afterE4[{moveFrom(two), moveTo(two)}][2 - white]++;
    }
    EXPECT_EQ(recordsOf(book.records, keyAfter({})), first);
    EXPECT_EQ(recordsOf(book.records, keyAfter({"e4"})), afterE4);

    // Sorted behind a first record of key 0, every position found by a probe, Black's moves marked.
    ASSERT_EQ(book.records[0].key, 0u);
    const uint64_t e4Key = keyAfter({"e4"});
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
    options = {};
    options.blackWins = options.draws = false;
    EXPECT_EQ(summary(options), "5 games read: 2 used, 1 without result, 2 filtered");

    options = {};
    options.minGames = 2;
    EXPECT_EQ(recordsOf(buildText(dir, games, options).records, keyAfter({})).size(), 1u) << "e4 alone";
    // e4 scored 1 of 2 and d4 a draw; c4, and Black's c5, won.
    options = {};
    options.minScore = 60;
    const Built book = buildText(dir, games, options);
    EXPECT_EQ(recordsOf(book.records, keyAfter({})).size(), 1u);
    EXPECT_EQ(recordsOf(book.records, keyAfter({"e4"})).size(), 1u);
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

    book = build(dir, dir.file("absent.pgn"));
    EXPECT_EQ(book.output, "could not open file: " + dir.file("absent.pgn") + "\n");
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
