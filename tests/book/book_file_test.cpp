// The book file on disk: the binary search with its first-record rule, probes of the entry table, and
// damaged files.
#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "board/board.h"
#include "book/book.h"
#include "scratch.h"

namespace {

BookEntry entry(uint64_t key, uint8_t to) {
    return BookEntry{key, 0x14, to, 1, 0, 0};
}

TEST(BookFile, FindLocatesTheFirstRecordOfAKeyExceptAtRecordZero) {
    ScratchDir dir;
    // Keys with the top bit set must sort after the others: halves compare unsigned.
    const uint64_t high = 0x8000000000000001ull;
    const std::vector<BookEntry> entries = {entry(5, 1),          entry(5, 2),    entry(7, 3),
                                            entry(9, 4),          entry(9, 5),    entry(9, 6),
                                            entry(1ull << 32, 7), entry(high, 8), entry(high, 9)};
    Book book;
    ASSERT_TRUE(book.open(saveBook(dir.file("test.bbk"), entries).c_str()));
    EXPECT_EQ(book.records(), entries.size());

    EXPECT_FALSE(book.find(5)) << "records starting at record 0 are reported absent";
    for (uint64_t missing :
         {uint64_t{0}, uint64_t{6}, uint64_t{8}, uint64_t{10}, high - 1, high + 1, ~uint64_t{0}})
        EXPECT_FALSE(book.find(missing));
    const std::pair<uint64_t, uint8_t> present[] = {{7, 3}, {9, 4}, {1ull << 32, 7}, {high, 8}};
    for (auto [key, to] : present) {
        ASSERT_TRUE(book.find(key)) << key;
        BookRecord record;
        ASSERT_TRUE(book.readRecord(record));
        EXPECT_EQ(decodeRecord(record), entry(key, to)) << "positioned at the first record of the key";
    }
}

TEST(BookFile, EntriesAreThoseOfThePositionWithTheSideToMoveFoldedIn) {
    ScratchDir dir;
    auto board = std::make_unique<Board>();
    board->hash = 0x1234567800000010ull;
    std::vector<BookEntry> entries = {entry(1, 1)};
    entries.push_back(entry(board->hash, 2));  // the same squares with White to move
    for (uint8_t i = 0; i < 40; i++) entries.push_back(entry(board->hash ^ 1, 10 + i));
    entries.push_back(entry(board->hash ^ 2, 3));
    Book book;
    ASSERT_TRUE(book.open(saveBook(dir.file("test.bbk"), entries).c_str()));

    board->sideToMove = WHITE;
    ASSERT_EQ(book.readEntries(*board), 1);
    EXPECT_EQ(book.entries()[0].to, 2);

    board->sideToMove = BLACK;
    ASSERT_EQ(book.readEntries(*board), BOOK_MAX_ENTRIES) << "a probe keeps the first 32 moves";
    for (int i = 0; i < BOOK_MAX_ENTRIES; i++) EXPECT_EQ(book.entries()[i].to, 10 + i);

    board->hash = 77;
    EXPECT_EQ(book.readEntries(*board), 0);
}

TEST(BookFile, MissingEmptyPartialAndDamagedFiles) {
    ScratchDir dir;
    Book book;
    auto board = std::make_unique<Board>();
    EXPECT_FALSE(book.open(dir.file("absent.bbk").c_str()));
    EXPECT_FALSE(book.open(dir.path().c_str())) << "a directory is no book";
    EXPECT_FALSE(book.isOpen());
    writeText(dir.file("empty.bbk"), "");
    ASSERT_TRUE(book.open(dir.file("empty.bbk").c_str()));
    EXPECT_FALSE(book.find(0));
    EXPECT_EQ(book.readEntries(*board), 0);

    // A trailing partial record is not counted and never read.
    writeText(dir.file("partial.bbk"),
              readText(saveBook(dir.file("test.bbk"), {entry(1, 1), entry(2, 2)})) + "\x01\x02\x03");
    ASSERT_TRUE(book.open(dir.file("partial.bbk").c_str()));
    EXPECT_EQ(book.records(), 2u);
    EXPECT_TRUE(book.find(2));

    std::mt19937 random(20121);
    for (int round = 0; round < 20; round++) {
        std::string bytes(random() % 4000, '\0');
        for (char& c : bytes) c = static_cast<char>(random());
        // Every few rounds all keys are alike, so probes walk long runs that end at the file's end.
        if (round % 4 == 0)
            for (size_t at = 0; at + 16 <= bytes.size(); at += 16) bytes.replace(at, 8, 8, '\x11');
        writeText(dir.file("random.bbk"), bytes);
        ASSERT_TRUE(book.open(dir.file("random.bbk").c_str()));
        for (int probe = 0; probe < 50; probe++) {
            board->hash = probe % 2 ? 0x1111111111111111ull : (uint64_t{random()} << 32 | random());
            EXPECT_LE(book.readEntries(*board), BOOK_MAX_ENTRIES);
        }
    }
}

}  // namespace
