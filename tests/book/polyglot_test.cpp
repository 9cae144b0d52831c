// Polyglot books: the key against the format's published test keys, and a small book built here
// turned into a Kelvra book.
#include <gtest/gtest.h>

#include <array>
#include <sstream>
#include <tuple>

#include "boards.h"
#include "book/book.h"
#include "book/polyglot_import.h"
#include "book/polyglot_keys.h"
#include "scratch.h"

namespace {

using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

TEST(PolyglotKey, MatchesTheFormatsTestKeys) {
    const std::pair<const char*, uint64_t> published[] = {
        {"", 0x463b96181691fc9c},
        {"e2e4", 0x823c9b50fd114196},
        {"e2e4 d7d5", 0x0756b94461c50fb0},
        {"e2e4 d7d5 e4e5", 0x662fafb965db29d4},
        {"e2e4 d7d5 e4e5 f7f5", 0x22a48b5a8e47ff78},
        {"e2e4 d7d5 e4e5 f7f5 e1e2", 0x652a607ca3f242c1},
        {"e2e4 d7d5 e4e5 f7f5 e1e2 e8f7", 0x00fdd303c946bdd9},
        {"a2a4 b7b5 h2h4 b5b4 c2c4", 0x3c8123ea7b067637},
        {"a2a4 b7b5 h2h4 b5b4 c2c4 b4c3 a1a3", 0x5c3f9b829b279560},
    };
    for (const auto& [line, key] : published)
        EXPECT_EQ(polyglotKey(*boardAfter(START_FEN, line)), key) << line;
    // A FEN may name an en-passant square that no pawn can use; the key leaves it out.
    Board board;
    ASSERT_TRUE(board.setFen("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1"));
    EXPECT_EQ(polyglotKey(board), 0x823c9b50fd114196u);
}

// Won, drawn and lost counts of a position's records by move text, in file order.
using Records = std::vector<std::pair<std::string, std::array<int, 4>>>;

Records recordsAfter(const std::vector<BookEntry>& book, const std::string& line) {
    const uint64_t key = bookKey(*boardAfter(START_FEN, line));
    Records records;
    for (const BookEntry& e : book) {
        if (e.key != key) continue;
        const int from = e.from & 127;
        const std::string text = {
            static_cast<char>('a' + fileOf(from)), static_cast<char>('1' + rankOf(from)),
            static_cast<char>('a' + fileOf(e.to)), static_cast<char>('1' + rankOf(e.to))};
        records.push_back({text, {e.won, e.drawn, e.lost, (e.from & BOOK_ODD_PLY) ? 1 : 0}});
    }
    return records;
}

TEST(PolyglotImport, WalksFromTheStartThroughCastlingPromotionsAndTranspositions) {
    const std::string castle = "e2e4 g8f6 g1f3 e7e6 f1c4 f8e7";
    const std::string promote = "a2a4 b7b5 a4b5 a7a6 b5a6 c8b7 a6b7 b8c6";
    // (moves from the start, book move, weight). Out of key order on purpose; the knight shuffle
    // 1. Nf3 Nf6 2. e4 Ng8 3. Ng1 meets the position after 1. e4 at ply 5 before 1. e4 itself does.
    std::vector<std::tuple<std::string, std::string, uint16_t>> moves = {
        {"", "g1f3", 1},
        {"", "e2e4", 3},
        {"", "a2a4", 2},
        {"", "e2e5", 9},
        {"d2d4", "d7d5", 1},
        {"e2e4", "g8f6", 5},
        {"g1f3", "g8f6", 2},
        {"e2e4 g8f6", "g1f3", 7},
        {"g1f3 g8f6", "e2e4", 1},
        {"e2e4 g8f6 g1f3", "e7e6", 2},
        {"e2e4 g8f6 g1f3", "f6g8", 1},
        {"e2e4 g8f6 g1f3 f6g8", "f3g1", 1},
        {"e2e4 g8f6 g1f3 e7e6", "f1c4", 1},
        {"e2e4 g8f6 g1f3 e7e6 f1c4", "f8e7", 1},
        {castle, "e1h1", 4},
        {castle + " e1g1", "e8h8", 1},
        {promote, "b7a8q", 3},
        {promote, "b7b8n", 1},
        {promote, "d2d4", 2},
        {promote + " b7a8q", "d8a8", 1},
    };
    // Each move of the promotion line after 1. a4, once, from the moves before it.
    std::string played = "a2a4";
    std::istringstream rest(promote.substr(played.size()));
    for (std::string move; rest >> move; played += " " + move) moves.push_back({played, move, 1});
    std::vector<PolyglotLine> lines;
    for (const auto& [line, move, weight] : moves)
        lines.push_back({polyglotKey(*boardAfter(START_FEN, line)), move, weight});
    ScratchDir dir;
    writePolyglot(dir.file("small.bin"), lines);
    ASSERT_TRUE(isPolyglotBook(dir.file("small.bin").c_str()));

    const auto import = [&](int maxPly, std::string& output) {
        BookBuildOptions options;
        options.file = dir.file("small.bbk");
        options.maxPly = maxPly;
        options.minScore = 90;
        std::string written;
        CaptureStdout();
        EXPECT_TRUE(importPolyglot(dir.file("small.bin").c_str(), options, written));
        output = GetCapturedStdout();
        return readBookFile(written);
    };
    std::string output;
    std::vector<BookEntry> book = import(40, output);
    EXPECT_TRUE(contains(output,
                         "27 entries read: 26 reached from the start position, 1 not legal there, "
                         "2 promotions left out\n20 positions, 23 moves in "))
        << output;
    ASSERT_EQ(book.size(), 24u);
    EXPECT_EQ(book[0].key, 0u) << "no position's records come first";
    Book probe;
    ASSERT_TRUE(probe.open(dir.file("small.bbk").c_str()));
    for (size_t i = 1; i < book.size(); i++)
        EXPECT_TRUE(book[i - 1].key < book[i].key ? probe.find(book[i].key) : book[i - 1].key == book[i].key)
            << i;

    // Weights become drawn games, heaviest first; Black's moves carry the odd-ply mark.
    EXPECT_EQ(recordsAfter(book, ""),
              (Records{{"e2e4", {0, 3, 0, 0}}, {"a2a4", {0, 2, 0, 0}}, {"g1f3", {0, 1, 0, 0}}}));
    EXPECT_EQ(recordsAfter(book, "e2e4"), (Records{{"g8f6", {0, 5, 0, 1}}}));
    EXPECT_EQ(recordsAfter(book, "g1f3 g8f6 e2e4"),
              (Records{{"e7e6", {0, 2, 0, 1}}, {"f6g8", {0, 1, 0, 1}}}));
    EXPECT_EQ(recordsAfter(book, castle), (Records{{"e1g1", {0, 4, 0, 0}}}));
    EXPECT_EQ(recordsAfter(book, promote + " b7a8q"), (Records{{"d8a8", {0, 1, 0, 1}}}));

    // Six plies: the shuffle meets 1. e4 at ply 5, too deep to walk on from; 1. e4 itself, met later at
    // ply 1, is walked again so that 1. e4 Nf6 still gets its move. A score threshold means nothing here.
    book = import(6, output);
    EXPECT_EQ(recordsAfter(book, "e2e4 g8f6"), (Records{{"g1f3", {0, 7, 0, 0}}}));
    EXPECT_TRUE(recordsAfter(book, "e2e4 g8f6 g1f3 e7e6 f1c4 f8e7").empty());
    EXPECT_EQ(book.size(), 1u + 17);
}

}  // namespace
