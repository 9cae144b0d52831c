#include "frontend/util/textfile.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "scratch_dir.h"

namespace {

using Lines = std::vector<std::string>;

Lines readAll(const std::string& content) {
    ScratchDir directory("textfile");
    Textfile file(writeFile(directory.path(), "lines.txt", content).c_str());
    EXPECT_TRUE(file.isOpen());
    Lines lines;
    while (const char* line = file.readline()) lines.push_back(line);
    EXPECT_EQ(file.readline(), nullptr);  // stays at the end
    return lines;
}

TEST(Textfile, ReturnsEachLineWithoutItsLineEnd) {
    EXPECT_EQ(readAll("a\nb"), (Lines{"a", "b"}));
    EXPECT_EQ(readAll(""), Lines{});
    EXPECT_EQ(readAll("\n\nx\n"), (Lines{"", "", "x"}));
    // Windows line ends lose their CR too, one CR only; a CR elsewhere belongs to the line.
    EXPECT_EQ(readAll("tab\there \r\n\r\na\r\r\nb\rc\r"), (Lines{"tab\there ", "", "a\r", "b\rc"}));
    // A line longer than the first buffer, and NUL bytes that neither end the file nor merge lines.
    EXPECT_EQ(readAll(std::string(300, 'x') + "\nnext\n"), (Lines{std::string(300, 'x'), "next"}));
    EXPECT_EQ(readAll(std::string("\0lead\nmid\0dle\nlast\n", 19)), (Lines{"", "mid", "last"}));
}

}  // namespace
