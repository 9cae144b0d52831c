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
    const std::string text =
        "help\n"
        "--------------------------------------------------------\n"
        "[p]<sq>         move piece p to square sq\n"
        "g(o)            search\n"
        "reset           setup initial position\n"
        "fen <fen>       setup board according to <fen>\n"
        "m(ax)t(ime)     set max search time (seconds)\n"
        "m(ax)d(epth)    set max search depth\n"
        "m(oves)         show all legal moves\n"
        "\n"
        "book            show book contents\n"
        "buildbook ...   create opening book from PGN file, see readme\n"
        "mergebook ...   create opening book from PGN file, see readme\n"
        "divide [n]      count legal positions per move\n"
        "perft  [n]      count legal moves to depth [n]\n"
        "set             display/alter options\n"
        "\n"
        "uci             enter uci mode\n"
        "\n"
        "q(uit)          exit\n"
        "--------------------------------------------------------\n"
        "\n";
    EXPECT_EQ(session("help\nh\n?\n"), "% " + text + "% " + text + "% " + text + "% ");
    // Words match exactly and case-sensitively.
    EXPECT_EQ(session("HELP\nhelpme\n"), "% no such command: HELP\n% no such command: helpme\n% ");
}

TEST(Console, SetShowsAndChangesTheOptions) {
    EXPECT_EQ(session("set threads 1\nset\n"), "% % " + options(0, 1, 1, 1) + "% ");
    EXPECT_EQ(session("set threads 1\nset book 0\nset async 1\nset cleartt true\nset\n"),
              "% % % % % " + options(1, 0, 0, 1) + "% ");
    // A single word, or words past the first two, still read as the two-word form or the display.
    EXPECT_EQ(session("set threads 1\nset book\n"), "% % " + options(0, 1, 1, 1) + "% ");
    EXPECT_EQ(session("set threads 1\nset async 10 extra\nset\n"), "% % % " + options(1, 1, 1, 1) + "% ");
    EXPECT_EQ(session("set hash 64\n"), "% set: unknown parameter: hash\n% ");
    // Names and values are cut at eight characters.
    EXPECT_EQ(session("set cleartt1234 1\n"), "% set: unknown parameter: cleartt1\n% ");
}

TEST(Console, SetThreadsIsClampedToTheSearchThreadRange) {
    EXPECT_EQ(
        session("set threads 3\nset\nset threads 99\nset\nset threads x\nset\n"),
        "% % " + options(0, 1, 1, 3) + "% % " + options(0, 1, 1, 8) + "% % " + options(0, 1, 1, 1) + "% ");
}

TEST(Console, LineSplittingRules) {
    // Leading blanks go; a tab also ends the command word.
    EXPECT_EQ(session("   set   book 0\nset\tthreads\t1\nset\n"), "% % % " + options(0, 0, 1, 1) + "% ");
    // Only the command word is reported for an unknown line.
    EXPECT_EQ(session("xboard\nfoo\tbar baz\n   foo e2e4\n"),
              "% no such command: xboard\n% no such command: foo\n% no such command: foo\n% ");
    // Blank-only lines and lines starting with a tab have an empty command word and do nothing.
    EXPECT_EQ(session("    \n\tset\n"), "% % % ");
}

TEST(Console, UciModeDropsThePromptButConsoleCommandsStillWork) {
    std::string text = session("uci\nset hash 1\n\nq\n");
    EXPECT_EQ(text.find("% ", 1), std::string::npos) << text;  // only the prompt before "uci"
    const std::string answer = "set: unknown parameter: hash\n";
    EXPECT_EQ(text.substr(text.size() - std::min(text.size(), answer.size())), answer) << text;
}

TEST(Console, QuitEndsAtOnceWithCodeZero) {
    EXPECT_EQ(session("quit\nhelp\n"), "% ");
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
    EXPECT_EQ(session(std::string(1 << 20, 'y')), "% no such command: " + std::string(1 << 20, 'y') + "\n% ");
}

TEST(Console, HostileInputNeverCrashes) {
    std::string longWord(100 * 1024, 'x');
    EXPECT_EQ(session(longWord + "\n"), "% no such command: " + longWord + "\n% ");
    EXPECT_EQ(session("set " + longWord + " 1\n"), "% set: unknown parameter: xxxxxxxx\n% ");
    // A NUL byte ends the text of its line, not the input.
    EXPECT_EQ(session(std::string("\0\nfo\0o\nbar", 11) + "\n"),
              "% % no such command: fo\n% no such command: bar\n% ");
    std::string binary;
    for (int c = 1; c < 256; c++) binary += static_cast<char>(c);
    EXPECT_NE(session(binary + "\n" + binary + "\n").find("% "), std::string::npos);
}

}  // namespace
