// The console as a person uses it: lines in, text out, through the real binary.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "engine_process.h"

namespace {

// Runs a console session in an empty directory (so no kelvra.ini is found) and returns the output
// after the start-up lines, from the first prompt on.
std::string session(const std::string& input, int expectedExit = 0) {
    EngineRun run = runEngine({}, input, scratchDirectory("console"));
    EXPECT_EQ(run.exitCode, expectedExit);
    size_t prompt = run.output.find("% ");
    EXPECT_NE(prompt, std::string::npos) << run.output;
    return prompt == std::string::npos ? run.output : run.output.substr(prompt);
}

const std::string options(int async, int book, int cleartt, int threads) {
    return "async  =" + std::to_string(async) + "\nbook   =" + std::to_string(book) +
           "\ncleartt=" + std::to_string(cleartt) + "\nthreads=" + std::to_string(threads) + "\n";
}

TEST(Console, EndOfInputExitsWithoutANewlineAfterThePrompt) {
    EXPECT_EQ(session(""), "% ");
    EXPECT_EQ(session("\n\n"), "% % % ");
    EXPECT_EQ(session("q\nhelp\n"), "% ");  // nothing after q is read
}

TEST(Console, HelpTextUnderAllThreeWords) {
    const std::string help = session("help\n");
    EXPECT_NE(help.find("\nuci             enter uci mode\n"), std::string::npos) << help;
    const std::string once = help.substr(0, help.size() - 2);  // without the next prompt
    EXPECT_EQ(session("help\nh\n?\n"), once + once + once + "% ");
}

// Each command's answer to arguments it cannot use, and words that are no command (they match exactly
// and case-sensitively), in one session.
TEST(Console, BadArgumentsAndUnknownWordsGetTheirMessage) {
    const struct {
        const char* line;
        const char* answer;
    } cases[] = {
        {"HELP", "no such command: HELP\n"},
        {"helpme", "no such command: helpme\n"},
        {"set hash 64", "set: unknown parameter: hash\n"},
        {"set cleartt1234 1", "set: unknown parameter: cleartt1\n"},  // names are cut at eight characters
        {"perft x", "illegal arg: x\n"},
        {"maxtime x", "illegal arg: x\n"},
        {"md y", "illegal arg: y\n"},
        {"bench x", "illegal arg: x\n"},
        {"e2e5", "not a valid move: e2e5\nno such command: e2e5\n"},
        {"0-0", "no such command: 0-0\n"},
        {"Ke2z", "illegal char in move Ke2z: z\nnot a valid move: Ke2z\nno such command: Ke2z\n"},
        {"8/8/8/8/8/8/8/8 w",  // no kings: read as moves
         "illegal char in move 8/8/8/8/8/8/8/8: /\nnot a valid move: 8/8/8/8/8/8/8/8\n"
         "no such command: 8/8/8/8/8/8/8/8\n"},
        {"epd", "Usage:\n    epd <file> [seconds]\n"},
        {"epd /no/such/suite.epd", "epd: cannot open /no/such/suite.epd\n"},
        {"epd /no/such/suite.epd 0", "illegal arg: /no/such/suite.epd 0\n"},
        {"epd /no/such/suite.epd -3", "illegal arg: /no/such/suite.epd -3\n"},
        {"epd two words.epd", "epd: cannot open two words.epd\n"},
        {"epd /tmp 1", "epd: cannot open /tmp\n"},
        {"tsrcompare", "Usage:\n    tsrcompare <a.tsr> <b.tsr>\n"},
        {"tsrcompare a.tsr", "Usage:\n    tsrcompare <a.tsr> <b.tsr>\n"},
        {"tsrcompare a.tsr b.tsr", "tsrcompare: cannot open a.tsr\n"},
        {"tsrcompare /tmp /tmp", "tsrcompare: cannot open /tmp\n"},
        {"vflip", "Usage:\n    vflip <file>\n"},
        {"vflip /no/such.epd", "vflip: cannot open /no/such.epd\n"},
        {"vflip /", "vflip: cannot open /\n"},
    };
    std::string input, expected = "% ";
    for (const auto& c : cases) {
        input += std::string(c.line) + "\n";
        expected += std::string(c.answer) + "% ";
    }
    EXPECT_EQ(session(input), expected);
}

TEST(Console, SetShowsAndChangesTheOptions) {
    EXPECT_EQ(session("set threads 1\nset\n"), "% % " + options(0, 1, 1, 1) + "% ");
    EXPECT_EQ(session("set threads 1\nset book 0\nset async 1\nset cleartt true\nset\n"),
              "% % % % % " + options(1, 0, 0, 1) + "% ");
    // A single word, or words past the first two, still read as the two-word form or the display.
    EXPECT_EQ(session("set threads 1\nset book\n"), "% % " + options(0, 1, 1, 1) + "% ");
    EXPECT_EQ(session("set threads 1\nset async 10 extra\nset\n"), "% % % " + options(1, 1, 1, 1) + "% ");
}

TEST(Console, LineSplittingRules) {
    // Leading blanks go; a tab also ends the command word.
    EXPECT_EQ(session("   set   book 0\nset\tthreads\t1\nset\n"), "% % % " + options(0, 0, 1, 1) + "% ");
    // Only the command word is reported for an unknown line.
    EXPECT_EQ(session("foo\tbar baz\n   foo e2e4\n"), "% no such command: foo\n% no such command: foo\n% ");
    // Blank-only lines and lines starting with a tab have an empty command word and do nothing.
    EXPECT_EQ(session("    \n\tset\n"), "% % % ");
}

TEST(Console, WindowsLineEndsAndAnUnterminatedLastLine) {
    // A client from Windows ends its lines with CR LF: the handshake and the console commands still
    // work, and a command is named without the CR when it is unknown.
    std::string text = session("uci\r\nisready\r\nm\r\nxyzzy\r\n\r\nisready");
    EXPECT_NE(text.find("uciok\nreadyok\n#moves = 20\n"), std::string::npos) << text;
    // The last line counts without its newline, however long.
    const std::string end = "no such command: xyzzy\nreadyok\n";
    EXPECT_EQ(text.substr(text.size() - std::min(text.size(), end.size())), end) << text;
    EXPECT_EQ(session("set threads 1\nset book 0\nset"), "% % % " + options(0, 0, 1, 1) + "% ");
}

TEST(Console, HostileInputNeverCrashes) {
    std::string longWord(1 << 20, 'x');  // a megabyte, without a final newline
    EXPECT_EQ(session(longWord), "% no such command: " + longWord + "\n% ");
    EXPECT_EQ(session("set " + longWord + " 1\n"), "% set: unknown parameter: xxxxxxxx\n% ");
    // A NUL byte ends the text of its line, not the input.
    EXPECT_EQ(session(std::string("\0\nfo\0o\nbar", 11) + "\n"),
              "% % no such command: fo\n% no such command: bar\n% ");
    std::string binary;
    for (int c = 1; c < 256; c++) binary += static_cast<char>(c);
    EXPECT_NE(session(binary + "\n" + binary + "\n").find("% "), std::string::npos);
}

}  // namespace
