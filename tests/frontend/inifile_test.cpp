#include "frontend/inifile.h"

#include <gtest/gtest.h>

#include <string>

#include "scratch_dir.h"

namespace {

IniFile loaded(const std::string& content) {
    IniFile ini;
    EXPECT_TRUE(ini.load(writeFile(scratchDirectory("ini"), "kelvra.ini", content).c_str()));
    return ini;
}

TEST(IniFile, KeysAndValuesLoseSurroundingBlanksOnly) {
    IniFile ini = loaded(
        "  tt.cachemb  =  64  \n"
        "\tegbb.dir\t=\tbitbases\t\n"
        "uci.logdir=a=b\n"
        "Search.nthreads=2\n"
        "#machine.mhz=3000\n"
        "[search]\n"
        " #book.file=x\n"
        "=orphan value\n"
        "book.file=a.bbk\n"
        "book.file=b.bbk\n");
    const std::pair<const char*, const char*> cases[] = {
        {"tt.cachemb", "64"},    {"\tegbb.dir\t", "\tbitbases\t"},  // tabs stay
        {"uci.logdir", "a=b"},                                      // the first "=" splits
        {"search.nthreads", ""},                                    // keys are case-sensitive
        {"machine.mhz", ""},                                        // a comment
        {"[search]", ""},                                 // sections and lines without "=" are skipped
        {"#book.file", "x"},                              // "#" counts only in the first column
        {"", "orphan value"},    {"book.file", "b.bbk"},  // the last line for a key wins
    };
    for (const auto& [key, value] : cases) EXPECT_STREQ(ini.get(key).c_str(), value) << key;
}

}  // namespace
