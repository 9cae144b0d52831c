// The console's "eval" command and the bitbase keys of the ini file, through the real binary.
#include <gtest/gtest.h>

#include <string>

#include "engine_process.h"
#include "environment.h"

namespace {

std::string run(const std::string& ini, const std::string& input) {
    return runConsole(scratchDirectory("eval"), input, ini);
}

// The text of the last "total" line.
std::string lastTotal(const std::string& output) {
    const size_t at = output.rfind("\ntotal ");
    if (at == std::string::npos) return "";
    return output.substr(at + 1, output.find('\n', at + 1) - at - 1);
}

}  // namespace

TEST(EvalCommand, ShowsTheTermsAndEndsWithTheTotal) {
    // King and pawn: derived by hand in the evaluation's tests (111 for White, plus the tempo).
    std::string output = run("", "fen 4k3/8/8/8/4P3/8/8/4K3 w - -\neval\n");
    EXPECT_EQ(lastTotal(output), "total 115");
    for (const char* term :
         {"material           100\n", "pawns                2\n", "king               -18     -27\n"})
        EXPECT_NE(output.find(term), std::string::npos) << term << output;
    EXPECT_EQ(lastTotal(run("", "fen 4k3/8/8/8/4P3/8/8/4K3 b - -\neval\n")), "total -107");
    // A draw by material shows the rule and scores exactly 0.
    output = run("", "fen 4k3/8/8/8/8/8/8/1NN1K3 w - -\neval\n");
    EXPECT_NE(output.find("rule           two knights cannot mate\n"), std::string::npos) << output;
    EXPECT_EQ(lastTotal(output), "total 0");
}

TEST(EvalCommand, BitbaseKeysAtStartUp) {
    // Without the library: the one message, and the engine goes on as before.
    std::string output = run("egbb.dir=/nonexistent/egbb\negbb.cachemb=48\n", "eval\n");
    EXPECT_NE(output.find("egbb dll not found: /nonexistent/egbb/egbbso64.so\n"), std::string::npos)
        << output;
    EXPECT_EQ(output.find("EGBB"), std::string::npos) << output;
    EXPECT_EQ(output.find("egbb."), std::string::npos) << output;
    EXPECT_EQ(lastTotal(output), "total 4");

    // The bitbase library built beside the engine, with the Debian tables.
    SKIP_WITHOUT_BITBASES();
    output = run("egbb.dir=" KELVRA_EGBB_DIR "\n", "q\n");
    EXPECT_NE(output.find("egbb.3men=1\negbb.4men=0\negbb.5men=0\nEGBB: loaded, maxmen=3, ram=16\n"),
              std::string::npos)
        << output;
    output = run("egbb.dir=" KELVRA_EGBB_DIR "/\negbb.cachemb=48\n", "q\n");
    EXPECT_NE(output.find("EGBB: loaded, maxmen=3, ram=48\n"), std::string::npos) << output;
}
