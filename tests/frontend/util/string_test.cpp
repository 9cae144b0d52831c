#include "frontend/util/string.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

TEST(String, EmptyFormsAllReadAsEmptyText) {
    for (const String& empty : {String(), String(nullptr), String("abc", 0)}) {
        EXPECT_STREQ(empty.c_str(), "");
        EXPECT_EQ(empty.length(), 0u);
        EXPECT_TRUE(empty == "");
    }
    String moved("x");
    String taker(std::move(moved));
    EXPECT_STREQ(moved.c_str(), "");  // a moved-from String holds no block and reads as empty
    EXPECT_EQ(moved.length(), 0u);
}

TEST(String, CopiesShareOneBlockAndTheLastReleaseFreesIt) {
    uint32_t before = liveStrings.load();
    {
        String original("shared");
        String copy = original;
        String another;
        another = copy;
        EXPECT_EQ(original.c_str(), copy.c_str());  // same block, not a duplicate
        EXPECT_EQ(another.c_str(), copy.c_str());
        EXPECT_EQ(liveStrings.load(), before + 1);
        another.append("!", 1);  // a shared block is never changed
        EXPECT_STREQ(copy.c_str(), "shared");
        EXPECT_STREQ(another.c_str(), "shared!");
        EXPECT_EQ(liveStrings.load(), before + 2);
    }
    EXPECT_EQ(liveStrings.load(), before);
}

TEST(String, AppendSubstringAndCompare) {
    String text("e2e4", 2);
    EXPECT_STREQ(text.c_str(), "e2");
    text.append(" e4 e5", 3);
    EXPECT_STREQ(text.c_str(), "e2 e4");
    EXPECT_EQ(text.length(), 5u);

    EXPECT_STREQ(text.substring(3, 2).c_str(), "e4");
    EXPECT_STREQ(text.substring(3, 100).c_str(), "e4");  // count clipped at the end
    EXPECT_STREQ(text.substring(9, 1).c_str(), "");      // start past the end

    EXPECT_LT(text.compare("e3"), 0);
    EXPECT_GT(text.compare("e2"), 0);
    EXPECT_TRUE(text == "e2 e4");
    EXPECT_FALSE(text == "E2 E4");  // case-sensitive
}

TEST(String, NextWordDropsBlanksAfterABlankButNotAfterATab) {
    String source("go  wtime 100");
    EXPECT_STREQ(String::nextWord(source, " \t").c_str(), "go");
    EXPECT_STREQ(source.c_str(), "wtime 100");
    EXPECT_STREQ(String::nextWord(source, " \t").c_str(), "wtime");
    EXPECT_STREQ(String::nextWord(source, " \t").c_str(), "100");
    EXPECT_STREQ(source.c_str(), "");
    EXPECT_STREQ(String::nextWord(source, " \t").c_str(), "");  // an empty source yields an empty word

    String single("go");
    EXPECT_STREQ(String::nextWord(single, " \t").c_str(), "go");
    EXPECT_STREQ(single.c_str(), "");

    // Only the separator itself goes after a tab; after a blank, blanks (and only blanks) go.
    String tabbed("a\t\tb \tc");
    EXPECT_STREQ(String::nextWord(tabbed, " \t").c_str(), "a");
    EXPECT_STREQ(tabbed.c_str(), "\tb \tc");
    EXPECT_STREQ(String::nextWord(tabbed, " \t").c_str(), "");
    EXPECT_STREQ(String::nextWord(tabbed, " \t").c_str(), "b");
    EXPECT_STREQ(tabbed.c_str(), "\tc");
}

TEST(String, LongTextsSurviveRepeatedAppends) {
    String text;
    std::string expected;
    for (int i = 0; i < 2000; i++) {
        std::string piece = std::to_string(i) + ",";
        text.append(piece.c_str(), piece.size());
        expected += piece;
    }
    EXPECT_EQ(std::string(text.c_str()), expected);
    EXPECT_EQ(text.length(), expected.size());
}

}  // namespace
