#include "frontend/util/string.h"

#include <gtest/gtest.h>

#include <string>

namespace {

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
