#include "frontend/util/string.h"

#include <gtest/gtest.h>

#include <string>

namespace {

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
        String taker(std::move(original));
        EXPECT_STREQ(original.c_str(), "");  // a moved-from String holds no block and reads as empty
        EXPECT_EQ(liveStrings.load(), before + 2);
    }
    EXPECT_EQ(liveStrings.load(), before);
}

TEST(String, NextWordDropsBlanksAfterABlankButNotAfterATab) {
    String source("go  wtime 100");
    for (const char* word : {"go", "wtime", "100", ""})
        EXPECT_STREQ(String::nextWord(source, " \t").c_str(), word);
    EXPECT_STREQ(source.c_str(), "");

    // Only the separator itself goes after a tab; after a blank, blanks (and only blanks) go.
    String tabbed("a\t\tb \tc");
    EXPECT_STREQ(String::nextWord(tabbed, " \t").c_str(), "a");
    EXPECT_STREQ(tabbed.c_str(), "\tb \tc");
    EXPECT_STREQ(String::nextWord(tabbed, " \t").c_str(), "");
    EXPECT_STREQ(String::nextWord(tabbed, " \t").c_str(), "b");
    EXPECT_STREQ(tabbed.c_str(), "\tc");
}

}  // namespace
