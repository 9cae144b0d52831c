// Building books from PGN: counts checked against tallies made here from the same games, the replay of
// real games to their known final positions, the filters, the first-promotion stop and broken games.
#include "book/builder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <random>
#include <tuple>

#include "board/board.h"
#include "board/makemove.h"
#include "board/notation.h"
#include "book/book.h"
#include "book/merge.h"
#include "book/pgn.h"
#include "scratch.h"

namespace {

using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

const std::string PGN_DIR = std::string(KELVRA_DATA_DIR) + "/pgn/";

struct Built {
    bool ok;
    std::string output;
    std::vector<BookEntry> records;
};

Built build(const ScratchDir& dir, const std::string& pgn, BookBuildOptions options = {},
            unsigned maxGames = 0) {
    options.file = dir.file("built.bbk");
    std::string written;
    CaptureStdout();
    const bool ok = buildBook(pgn.c_str(), options, maxGames, written);
    Built result{ok, GetCapturedStdout(), {}};
    if (ok) {
        EXPECT_EQ(written, options.file);
        result.records = readBookFile(written);
    }
    return result;
}

Built buildText(const ScratchDir& dir, const std::string& text, BookBuildOptions options = {}) {
    writeText(dir.file("games.pgn"), text);
    return build(dir, dir.file("games.pgn"), options);
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

std::string fenOf(const Board& board) {
    char* text = nullptr;
    size_t size = 0;
    FILE* stream = open_memstream(&text, &size);
    board.writeFen(stream);
    std::fclose(stream);
    std::string fen(text, size);
    std::free(text);
    return fen;
}

uint64_t keyAfter(const std::vector<const char*>& moves) {
    auto board = std::make_unique<Board>();
    EXPECT_TRUE(board->setFen(START_FEN));
    for (const char* text : moves) EXPECT_NE(makeMove(*board, isMove(*board, text) & ~MOVE_CHECKS), NO_MOVE);
    return bookKey(*board);
}

// The book's records of a key, by (from, to) with the odd-ply mark removed.
std::map<std::pair<int, int>, std::tuple<int, int, int>> recordsOf(const std::vector<BookEntry>& records,
                                                                   uint64_t key) {
    std::map<std::pair<int, int>, std::tuple<int, int, int>> moves;
    for (const BookEntry& e : records)
        if (e.key == key) moves[{e.from & 127, e.to}] = {e.won, e.drawn, e.lost};
    return moves;
}

TEST(BookBuilder, CountGameHalvesAllThreeCountsBeforeOneWouldPass65535) {
    BookEntry entry{1, 2, 3, 65535, 11, 3};
    countGame(entry, Outcome::DRAW);
    EXPECT_EQ(std::make_tuple(entry.won, entry.drawn, entry.lost), std::make_tuple(65535, 12, 3));
    countGame(entry, Outcome::WIN);
    EXPECT_EQ(std::make_tuple(entry.won, entry.drawn, entry.lost), std::make_tuple(32768, 6, 1));
    entry = {1, 2, 3, 0, 0, 65535};
    countGame(entry, Outcome::LOSS);
    EXPECT_EQ(std::make_tuple(entry.won, entry.drawn, entry.lost), std::make_tuple(0, 0, 32768));
}

TEST(BookBuilder, OptionsComeFromTheBuildKeysWithDefaultsForEmptyValues) {
    const BookBuildOptions defaults = readBuildOptions([](const char*) { return std::string(); });
    EXPECT_EQ(defaults.file, "");
    EXPECT_GE(defaults.maxPly, 20);
    EXPECT_EQ(defaults.minGames, 1);
    EXPECT_TRUE(defaults.whiteWins && defaults.blackWins && defaults.draws);

    const std::map<std::string, std::string> ini = {
        {"book.build.file", "my.bbk"}, {"book.build.maxply", "5000"},
        {"book.build.mingames", "3"},  {"book.build.minelo", "2200x"},
        {"book.build.minscore", "40"}, {"book.build.results", "1-0, 1/2-1/2"}};
    const BookBuildOptions set = readBuildOptions([&](const char* key) {
        auto found = ini.find(key);
        return found == ini.end() ? std::string() : found->second;
    });
    EXPECT_EQ(set.file, "my.bbk");
    EXPECT_EQ(set.maxPly, 1000) << "capped by the board's history";
    EXPECT_EQ(set.minGames, 3);
    EXPECT_EQ(set.minElo, 2200);
    EXPECT_EQ(set.minScore, 40);
    EXPECT_TRUE(set.whiteWins && !set.blackWins && set.draws);
}

TEST(BookBuilder, TortureGamesReplayToTheirKnownFinalPositions) {
    // FEN placement and side to move after each game's last move.
    const char* finals[] = {"8/8/4R1p1/2k3p1/1p4P1/1P1b1P2/3K1n2/8 b",
                            "1Q6/2k5/8/1Q3R2/4P3/8/2P2KP1/8 b",
                            "1r2k1r1/p1pq3p/B1p5/3b4/2PPp3/2K1q3/PPR5/R7 w",
                            "3q4/1b3N1k/2rP2p1/ppn1Q3/2p5/7P/PPB2PP1/R5K1 b",
                            "r6r/5p2/4kP1p/2R3p1/1p1R4/p5B1/P4PPP/5K2 b",
                            "8/3k3p/p3b1p1/1p3p2/2pB4/1PK2P2/P1P3PP/8 w",
                            "5bnr/7p/4ppp1/1r2Pk2/R5P1/5N2/PPP2P1P/R1B3K1 b",
                            "3r1k2/p5R1/7p/1pqnp3/2P5/2Q1P3/P1B3PP/5K2 w",
                            "8/6p1/1b3kP1/p4P2/Pp2K2p/1P6/8/5B2 b",
                            "8/1r1n2k1/pp1R4/3Npp1K/1P6/4P3/P4P1P/8 b",
                            "4R3/8/3P1p2/2K5/k1P5/8/3rp3/1q6 w",
                            "8/8/8/7P/N7/5K2/4Q3/4k3 b",
                            "6b1/2k5/8/7K/8/8/8/B7 w",
                            "8/3k3p/4pQ2/8/2P2Pq1/1Pn5/6P1/6BK b",
                            "8/3k3K/8/8/p7/8/7q/6q1 w",
                            "rr3bk1/1bqn1ppp/p2p1n2/1p1PpNB1/2p1P3/2P2N1P/PPBQ1PP1/R3R1K1 b",
                            "rnbqkb1r/pppppppp/5n2/8/3P4/8/PPP1PPPP/RNBQKBNR w",
                            "8/7R/8/8/2P5/1P6/P4K1k/8 b",
                            "8/8/R2bk3/6p1/1Pr3P1/8/5K2/8 w"};
    PgnReader reader;
    ASSERT_TRUE(reader.open((PGN_DIR + "torture.pgn").c_str()));
    auto board = std::make_unique<Board>();
    PgnGame game;
    size_t games = 0;
    while (reader.next(game)) {
        ASSERT_LT(games, std::size(finals));
        SCOPED_TRACE("game " + std::to_string(game.number));
        const std::string* fen = game.tag("FEN");
        CaptureStdout();
        ASSERT_TRUE(board->setFen(fen ? fen->c_str() : START_FEN));
        GetCapturedStdout();
        for (const std::string& text : game.moves) {
            const Move move = isMove(*board, text.c_str());
            ASSERT_NE(move, NO_MOVE) << text;
            ASSERT_NE(makeMove(*board, move & ~MOVE_CHECKS), NO_MOVE) << text;
        }
        EXPECT_EQ(fenOf(*board).substr(0, std::strlen(finals[games])), finals[games]);
        games++;
    }
    EXPECT_EQ(games, std::size(finals));
}

TEST(BookBuilder, TortureFileBuildsWithEveryGameUsedButTheUnfinishedOne) {
    ScratchDir dir;
    BookBuildOptions options;
    options.maxPly = 1000;
    const Built book = build(dir, PGN_DIR + "torture.pgn", options);
    ASSERT_TRUE(book.ok) << book.output;
    EXPECT_TRUE(contains(book.output,
                         "19 games read: 18 used, 1 without result, 0 filtered out, "
                         "0 without moves, 0 broken\n"))
        << book.output;
    // 1495 plies less the unfinished game's 35, the moves after the first promotion of games 2, 3, 11,
    // 12, 13 and 15, and repeated position-move pairs: far fewer records than plies, but most of them.
    EXPECT_GT(book.records.size(), 1000u);
    EXPECT_LT(book.records.size(), 1460u);
}

TEST(BookBuilder, TwicBookMatchesATallyOfTheSameGames) {
    ScratchDir dir;
    const Built book = build(dir, PGN_DIR + "twic0920.pgn");
    ASSERT_TRUE(book.ok) << book.output;
    EXPECT_TRUE(contains(book.output,
                         "2245 games read: 2234 used, 0 without result, 0 filtered out, "
                         "11 without moves, 0 broken\n"))
        << book.output;

    // Tally the first and, after 1. e4, the second moves here, straight from the games.
    using Counts = std::map<std::pair<int, int>, std::tuple<int, int, int>>;
    Counts first, afterE4;
    PgnReader reader;
    ASSERT_TRUE(reader.open((PGN_DIR + "twic0920.pgn").c_str()));
    auto board = std::make_unique<Board>();
    PgnGame game;
    while (reader.next(game)) {
        if (game.moves.size() < 2) continue;
        const int white = game.result == "1-0" ? 0 : game.result == "0-1" ? 2 : 1;
        ASSERT_TRUE(board->setFen(START_FEN));
        const Move one = isMove(*board, game.moves[0].c_str());
        auto& counts = first[{moveFrom(one), moveTo(one)}];
        (white == 0 ? std::get<0>(counts) : white == 1 ? std::get<1>(counts) : std::get<2>(counts))++;
        if (game.moves[0] != "e4") continue;
        makeMove(*board, one & ~MOVE_CHECKS);
        const Move two = isMove(*board, game.moves[1].c_str());
        auto& reply = afterE4[{moveFrom(two), moveTo(two)}];
        (white == 2 ? std::get<0>(reply) : white == 1 ? std::get<1>(reply) : std::get<2>(reply))++;
    }
    EXPECT_EQ(recordsOf(book.records, keyAfter({})), first);
    EXPECT_EQ(recordsOf(book.records, keyAfter({"e4"})), afterE4);

    // Sorted, the first record is a key no position has, and a probe finds every position.
    ASSERT_FALSE(book.records.empty());
    EXPECT_EQ(book.records[0].key, 0u);
    Book probe;
    ASSERT_TRUE(probe.open(dir.file("built.bbk").c_str()));
    for (size_t i = 1; i < book.records.size(); i++) {
        ASSERT_LE(book.records[i - 1].key, book.records[i].key);
        if (book.records[i - 1].key != book.records[i].key) {
            ASSERT_TRUE(probe.find(book.records[i].key)) << i;
        }
    }
    // Moves of Black carry the odd-ply mark.
    const uint64_t afterE4Key = keyAfter({"e4"});
    for (const BookEntry& e : book.records) {
        if (e.key == afterE4Key) {
            EXPECT_TRUE(e.from & BOOK_ODD_PLY);
        }
    }

    // Merged with itself, every position holds each record twice.
    CaptureStdout();
    ASSERT_TRUE(
        merge(dir.file("built.bbk").c_str(), dir.file("built.bbk").c_str(), dir.file("twice.bbk").c_str()));
    GetCapturedStdout();
    const std::vector<BookEntry> twice = readBookFile(dir.file("twice.bbk"));
    ASSERT_EQ(twice.size(), 2 * book.records.size());
    std::vector<BookEntry> start;
    const uint64_t startKey = keyAfter({});
    for (const BookEntry& e : twice)
        if (e.key == startKey) start.push_back(e);
    ASSERT_EQ(start.size(), 2 * first.size());
    for (size_t i = 0; i < first.size(); i++) EXPECT_TRUE(start[i] == start[i + first.size()]);
}

TEST(BookBuilder, GamesStopAtTheirFirstPromotionAndTheirMaximumPly) {
    ScratchDir dir;
    Built book =
        buildText(dir, "[FEN \"8/P6k/8/8/8/8/8/K7 w - - 0 1\"]\n1. Kb1 Kg8 2. a8=Q+ Kf7 3. Qb7+ 1-0\n");
    ASSERT_TRUE(book.ok) << book.output;
    ASSERT_EQ(book.records.size(), 3u) << "the first record, Kb1 and Kg8";
    EXPECT_EQ(book.records[1].won + book.records[2].won, 1);
    EXPECT_EQ(book.records[1].lost + book.records[2].lost, 1);

    BookBuildOptions options;
    options.maxPly = 3;
    book = buildText(dir, "1. e4 e5 2. Nf3 Nc6 3. Bb5 a6 1/2-1/2\n1. d4 d5 0-1\n", options);
    ASSERT_TRUE(book.ok);
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
    Built book = buildText(dir, games);
    ASSERT_TRUE(book.ok);
    EXPECT_TRUE(contains(book.output, "5 games read: 4 used, 1 without result,")) << book.output;
    const uint64_t start = keyAfter({});
    EXPECT_EQ(recordsOf(book.records, start).size(), 3u);

    BookBuildOptions options;
    options.minElo = 2200;
    book = buildText(dir, games, options);
    EXPECT_TRUE(contains(book.output, "5 games read: 1 used, 1 without result, 3 filtered out,"))
        << book.output;

    options = {};
    options.blackWins = false;
    options.draws = false;
    book = buildText(dir, games, options);
    EXPECT_TRUE(contains(book.output, "2 used, 1 without result, 2 filtered out,")) << book.output;

    options = {};
    options.minGames = 2;
    book = buildText(dir, games, options);
    ASSERT_TRUE(book.ok);
    EXPECT_EQ(recordsOf(book.records, start).size(), 1u) << "only e4 was played twice";

    options = {};
    options.minScore = 60;
    book = buildText(dir, games, options);
    ASSERT_TRUE(book.ok);
    // e4 scored 1 of 2, d4 a draw, c4 a win: only c4, and Black's c5, keep 60%.
    EXPECT_EQ(recordsOf(book.records, start).size(), 1u);
    EXPECT_EQ(recordsOf(book.records, keyAfter({"e4"})).size(), 1u);
}

TEST(BookBuilder, BrokenGamesAreNamedAndSkipped) {
    ScratchDir dir;
    const Built book = buildText(dir,
                                 "1. e4 e5 2. Ke3 Nc6 1-0\n"
                                 "[FEN \"8/8/8/8/8/8/8/8 w - - 0 1\"]\n1. e4 1-0\n"
                                 "1. e4 {open\n"
                                 "[Event \"x\"]\n1. Nf3 Nf6 1/2-1/2\n");
    ASSERT_TRUE(book.ok) << book.output;
    EXPECT_TRUE(contains(book.output, "game 1: illegal move 'Ke3' at ply 3, skipped\n")) << book.output;
    EXPECT_TRUE(contains(book.output, "game 2: bad FEN, skipped\n")) << book.output;
    EXPECT_TRUE(contains(book.output, "game 3: unterminated comment, skipped\n")) << book.output;
    EXPECT_TRUE(contains(book.output,
                         "4 games read: 1 used, 0 without result, 0 filtered out, 0 without moves, "
                         "3 broken\n"))
        << book.output;
    EXPECT_EQ(book.records.size(), 3u);
}

TEST(BookBuilder, NothingToBuildAndGarbage) {
    ScratchDir dir;
    Built book = build(dir, dir.file("absent.pgn"));
    EXPECT_FALSE(book.ok);
    EXPECT_EQ(book.output, "could not open file: " + dir.file("absent.pgn") + "\n");

    book = buildText(dir, "1. e4 *\n");
    EXPECT_FALSE(book.ok);
    EXPECT_TRUE(contains(book.output, "no book moves found in")) << book.output;

    std::mt19937 random(3);
    std::string bytes(300000, '\0');
    for (char& c : bytes)
        c = static_cast<char>(random() % 3 ? "e4Nf3 1-0[]{}()\"\n"[random() % 17] : random());
    book = buildText(dir, bytes);
    EXPECT_TRUE(contains(book.output, "games read:")) << book.output.substr(0, 2000);
}

}  // namespace
