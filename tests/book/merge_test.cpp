// Merging two books into a third: order, grouping, the 31-plus-last truncation and refusals.
#include "book/merge.h"

#include <gtest/gtest.h>

#include "book/book.h"
#include "scratch.h"

namespace {

using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

BookEntry entry(uint64_t key, uint8_t to, uint16_t won = 1) {
    return BookEntry{key, 0x86, to, won, 2, 3};
}

// Runs merge and returns its output text.
std::string merged(const std::string& first, const std::string& second, const std::string& output,
                   bool expected = true) {
    CaptureStdout();
    EXPECT_EQ(merge(first.c_str(), second.c_str(), output.c_str()), expected);
    return GetCapturedStdout();
}

TEST(Merge, InterleavesGroupsByKeyWithTheFirstBookFirstUnderACommonKey) {
    ScratchDir dir;
    const std::vector<BookEntry> a = {entry(1, 1), entry(3, 2), entry(3, 3), entry(0x8000000000000000ull, 4)};
    const std::vector<BookEntry> b = {entry(2, 5), entry(3, 6), entry(6, 7, 9)};
    const std::string out = dir.file("out.bbk");
    const std::string text = merged(saveBook(dir.file("a.bbk"), a), saveBook(dir.file("b.bbk"), b), out);
    EXPECT_EQ(text, "merging " + dir.file("a.bbk") + " with " + dir.file("b.bbk") + " to " + out +
                        "...\n...done!\n" + out + " contains 6 positions with 7 moves\n");
    EXPECT_EQ(readBookFile(out), (std::vector<BookEntry>{a[0], b[0], a[1], a[2], b[1], b[2], a[3]}));
}

TEST(Merge, ALongRunKeepsItsFirst31RecordsAndItsLast) {
    ScratchDir dir;
    std::vector<BookEntry> a = {entry(1, 0)};
    for (uint8_t i = 0; i < 40; i++) a.push_back(entry(5, i));
    a.push_back(entry(8, 99));
    writeText(dir.file("empty.bbk"), "");
    const std::string text =
        merged(saveBook(dir.file("a.bbk"), a), dir.file("empty.bbk"), dir.file("out.bbk"));
    EXPECT_NE(text.find("contains 3 positions with 34 moves"), std::string::npos) << text;
    std::vector<BookEntry> expected(a.begin(), a.begin() + 32);
    expected.push_back(a[40]);
    expected.push_back(a[41]);
    EXPECT_EQ(readBookFile(dir.file("out.bbk")), expected);
}

TEST(Merge, RefusesMissingPathsSelfOutputAndUnreadableInputs) {
    ScratchDir dir;
    const std::string a = saveBook(dir.file("a.bbk"), {entry(1, 1), entry(2, 2)});
    const std::string b = saveBook(dir.file("b.bbk"), {entry(3, 3)});
    const std::string before = readText(b);

    EXPECT_EQ(merged(a, b, b, false), "cannot merge book to self\n");
    EXPECT_EQ(merged(a, b, dir.path() + "/./a.bbk", false), "cannot merge book to self\n");
    EXPECT_EQ(readText(b), before);
    EXPECT_EQ(readBookFile(a).size(), 2u);

    const std::string absent = dir.file("absent.bbk");
    EXPECT_EQ(merged(absent, b, dir.file("o.bbk"), false), "could not open file: " + absent + "\n");
    const std::string unwritable = dir.file("no/such/dir.bbk");
    EXPECT_EQ(merged(a, b, unwritable, false), "could not open file: " + unwritable + "\n");
}

}  // namespace
