#include "frontend/inifile.h"

#include <gtest/gtest.h>

#include <string>

#include "engine_process.h"

namespace {

IniFile loaded(const std::string& content, bool expected = true) {
    std::string path = writeFile(scratchDirectory("ini"), "kelvra.ini", content);
    IniFile ini;
    EXPECT_EQ(ini.load(path.c_str()), expected);
    return ini;
}

TEST(IniFile, KeysAndValuesLoseSurroundingBlanksOnly) {
    IniFile ini = loaded(
        "  tt.cachemb  =  64  \n"
        "book.file=books/main.bbk\n"
        "\tegbb.dir\t=\tbitbases\t\n"
        "uci.logdir=a=b\n"
        "Search.nthreads=2\n");
    EXPECT_STREQ(ini.get("tt.cachemb").c_str(), "64");
    EXPECT_STREQ(ini.get("book.file").c_str(), "books/main.bbk");
    EXPECT_STREQ(ini.get("\tegbb.dir\t").c_str(), "\tbitbases\t");  // tabs stay
    EXPECT_STREQ(ini.get("uci.logdir").c_str(), "a=b");             // the first "=" splits
    EXPECT_STREQ(ini.get("search.nthreads").c_str(), "");           // keys are case-sensitive
    EXPECT_STREQ(ini.get("absent").c_str(), "");
}

TEST(IniFile, CommentsSectionsAndLinesWithoutEqualsAreSkipped) {
    IniFile ini = loaded(
        "#tt.cachemb=64\n"
        "[search]\n"
        "\n"
        "just words\n"
        " #machine.mhz=3000\n"
        "=orphan value\n");
    EXPECT_STREQ(ini.get("tt.cachemb").c_str(), "");
    EXPECT_STREQ(ini.get("[search]").c_str(), "");
    EXPECT_STREQ(ini.get("#machine.mhz").c_str(), "3000");  // "#" counts only in the first column
    EXPECT_STREQ(ini.get("").c_str(), "orphan value");
}

TEST(IniFile, TheLastLineForAKeyWins) {
    IniFile ini = loaded("tt.cachemb=64\nbook.file=a.bbk\ntt.cachemb=\nbook.file=b.bbk\n");
    EXPECT_STREQ(ini.get("tt.cachemb").c_str(), "");
    EXPECT_STREQ(ini.get("book.file").c_str(), "b.bbk");
}

TEST(IniFile, UnreadableInputLoadsWhatItCanWithoutCrashing) {
    IniFile missing;
    EXPECT_FALSE(missing.load("/nonexistent/kelvra.ini"));
    IniFile directory;
    EXPECT_FALSE(directory.load(scratchDirectory("ini_dir").c_str()));

    const char raw[] = "a=1\n\x01\xff\xfe=\x80\0\x7f\n";
    std::string binary(raw, sizeof raw - 1);
    IniFile bytes = loaded(binary + "b=" + std::string(1 << 20, 'z'));  // a megabyte, no final newline
    EXPECT_STREQ(bytes.get("a").c_str(), "1");
    EXPECT_STREQ(bytes.get("\x01\xff\xfe").c_str(), "\x80");  // a NUL byte ends the value
    EXPECT_EQ(bytes.get("b").length(), 1u << 20);             // the last line ends at the end of the file
}

}  // namespace
