#include "frontend/util/textfile.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "frontend/util/log.h"

namespace {

// Each call gets a file of its own: ctest runs the tests of this binary as parallel processes.
std::string writeFile(const std::string& content) {
    static int files = 0;
    std::string path =
        testing::TempDir() + "textfile_" + std::to_string(getpid()) + "_" + std::to_string(++files);
    FILE* file = fopen(path.c_str(), "wb");
    fwrite(content.data(), 1, content.size(), file);
    fclose(file);
    return path;
}

std::vector<std::string> readAll(const std::string& content) {
    const std::string path = writeFile(content);
    Textfile file(path.c_str());
    std::remove(path.c_str());  // the open file stays readable
    EXPECT_TRUE(file.isOpen());
    std::vector<std::string> lines;
    while (const char* line = file.readline()) lines.push_back(line);
    EXPECT_EQ(file.readline(), nullptr);  // stays at the end
    return lines;
}

// Collects what the Log writes while it is alive.
class CapturedLog {
  public:
    CapturedLog() : file(tmpfile()) { Log::setStream(file); }
    ~CapturedLog() {
        Log::setStream(nullptr);
        fclose(file);
    }
    std::string text() {
        fflush(file);
        rewind(file);
        std::string all;
        for (int c; (c = getc(file)) != EOF;) all += static_cast<char>(c);
        return all;
    }

  private:
    FILE* file;
};

using Lines = std::vector<std::string>;

TEST(Textfile, ReturnsEachLineWithoutItsLineEnd) {
    EXPECT_EQ(readAll("a\nb\n"), (Lines{"a", "b"}));
    EXPECT_EQ(readAll("a\nb"), (Lines{"a", "b"}));
    EXPECT_EQ(readAll(""), Lines{});
    EXPECT_EQ(readAll("\n\nx\n"), (Lines{"", "", "x"}));
    // Windows line ends lose their CR too, one CR only; a CR elsewhere belongs to the line.
    EXPECT_EQ(readAll("tab\there \r\n\r\na\r\r\nb\rc\r"), (Lines{"tab\there ", "", "a\r", "b\rc"}));
}

TEST(Textfile, LongLineGrowsTheBufferAndLogsEachDoubling) {
    std::string line(300, 'x');
    CapturedLog log;
    EXPECT_EQ(readAll(line + "\nnext\n"), (Lines{line, "next"}));
    std::string logged = log.text();
    EXPECT_NE(logged.find("Textfile.readline(): realloc 256="), std::string::npos) << logged;
    EXPECT_NE(logged.find("Textfile.readline(): realloc 512="), std::string::npos) << logged;
    EXPECT_EQ(std::count(logged.begin(), logged.end(), '\n'), 2) << logged;
}

TEST(Textfile, NulBytesNeitherEndTheFileNorMergeLines) {
    std::string content("\0lead\nmid\0dle\nlast\n", 19);
    EXPECT_EQ(readAll(content), (Lines{"", "mid", "last"}));
}

TEST(Textfile, MegabyteLastLineWithoutNewlineIsReturnedWhole) {
    EXPECT_EQ(readAll("first\n" + std::string(1 << 20, 'y')), (Lines{"first", std::string(1 << 20, 'y')}));
}

TEST(Textfile, MissingFileIsNotOpenAndReadsNothing) {
    Textfile file("/nonexistent/dir/file.ini");
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.readline(), nullptr);
}

TEST(Textfile, ADirectoryReadsNothingAndReportsFailure) {
    Textfile file(testing::TempDir().c_str());
    EXPECT_EQ(file.readline(), nullptr);
    if (file.isOpen()) {
        EXPECT_TRUE(file.failed());
    }
}

}  // namespace
