// The UCI handshake, protocol log files and options, through the real binary.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "uci_session.h"

namespace {

namespace fs = std::filesystem;

TEST(UciHandshake, AnswersWithIdentityOptionsAndUciok) {
    UciSession session("uci_handshake", "", false);
    std::string answer = session.exchange("uci\n", "uciok\n");
    EXPECT_EQ(answer.substr(answer.find("\nid name")),
              "\nid name Kelvra-0.3a\n"
              "id author the Kelvra developers\n"
              "option name Hash            type spin  default 32 min 1 max 4096\n"
              "option name Ponder          type check default false\n"
              "option name OwnBook         type check default true\n"
              "option name Threads         type spin default 1 min 1 max 8\n"
              "option name UCI_Opponent    type string\n"
              "option name UCI_EngineAbout type string default Kelvra by the Kelvra developers\n"
              "option name Clear Hash      type button\n"
              "option name MultiPV         type spin default 1 min 1 max 64\n"
              "option name Move Overhead   type spin default 3000 min 0 max 5000\n"
              "option name BookFile        type string default <empty>\n"
              "option name Bitbases Path   type string default <empty>\n"
              "uciok\n");
    // The error stream now goes to the error log in the working directory.
    EXPECT_TRUE(fs::exists(session.directory + "/kelvra-0.3a-error.log"));

    // In UCI mode no prompt is printed, and words the protocol does not know go on to the console.
    std::string after = session.settle("help\n");
    EXPECT_EQ(after.find("% "), std::string::npos) << after;
    EXPECT_NE(after.find("readyok\n"), std::string::npos);
    EXPECT_NE(after.find("uci             enter uci mode"), std::string::npos) << after;
    session.engine.send("quit\n");
    EXPECT_EQ(session.engine.wait(), 0);

    std::string log = session.logText();
    EXPECT_TRUE(matches(log, "#:<--uciok\n")) << log;
    EXPECT_TRUE(matches(log, "#:isready\n#:<--readyok\n")) << log;
    EXPECT_NE(log.find("exit()!\n"), std::string::npos) << log;
}

TEST(UciHandshake, AnAbsoluteLogDirectoryIsCreated) {
    std::string directory = scratchDirectory("uci_absolute_log");
    const std::string logs = fs::absolute(directory).string() + "/deep/logs";
    writeFile(directory, "test.ini", "search.nthreads=1\nuci.logdir=" + logs + "\n");
    EngineRun run = runEngine({"test.ini"}, "uci\nquit\n", directory);
    EXPECT_EQ(run.exitCode, 0);
    std::string log = readText(logs + "/kelvra-0000.log");
    EXPECT_NE(log.find("<--uciok"), std::string::npos) << run.output;
}

TEST(UciOptions, TableOptionsWaitForTheEndOfASearch) {
    UciSession session("uci_options");
    // The table is not pulled away from under a running search.
    session.exchange("position startpos\ngo infinite\n", "info depth");
    std::string out =
        session.exchange("setoption name Hash value 8\nsetoption name Clear Hash\nstop\n", "bestmove ");
    EXPECT_EQ(countOf(out, "bestmove "), 1u) << out;
    const std::string log = session.logText();
    EXPECT_NE(log.find("setoption Hash during a search ignored\n"), std::string::npos) << log;
    EXPECT_NE(log.find("setoption Clear Hash during a search ignored\n"), std::string::npos) << log;
    EXPECT_EQ(log.find("resizing hash to 8Mb"), std::string::npos) << log;

    // Names of several words; an option that is only shown cannot be set.
    session.settle("setoption name Move Overhead value 100\nsetoption name UCI_EngineAbout value x\n");
    const std::string later = session.logText();
    EXPECT_NE(later.find("move overhead=100ms\n"), std::string::npos) << later;
    EXPECT_NE(later.find("Option not supported: UCI_EngineAbout\n"), std::string::npos) << later;
}

}  // namespace
