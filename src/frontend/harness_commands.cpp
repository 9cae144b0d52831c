// The test harness at the console:
//
//     epd <file> [seconds]        run an EPD suite, a fixed time per position (default: the suite's own
//                                 time, else 10 s); writes <file name>.tsr to the current directory
//     tsrcompare <a.tsr> <b.tsr>  compare two result files
//     vflip <file>                the colour-flip check of the evaluation over an EPD file
//     selftest                    threads, strings and timers
//
// The benchmark, "bench [depth]", belongs to the harness too; it lives with the search commands.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>

#include "frontend/console.h"
#include "harness/compare.h"
#include "harness/epdrun.h"
#include "harness/selftest.h"
#include "harness/tsr.h"
#include "harness/vflip.h"

namespace {

// Longer than any run anyone waits for, and safe to turn into milliseconds.
constexpr double MOST_SECONDS = 1e6;

std::string trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// "<file> [seconds]": the last word is the time when it reads as a number, so file names may hold blanks.
bool splitFileAndSeconds(const char* rest, std::string& file, double& seconds) {
    file = trimmed(rest);
    seconds = 0;
    const size_t blank = file.find_last_of(" \t");
    if (blank == std::string::npos) return !file.empty();
    const std::string last = file.substr(blank + 1);
    char* end = nullptr;
    const double value = std::strtod(last.c_str(), &end);
    if (*end) return true;
    if (!(value > 0 && value <= MOST_SECONDS)) return false;
    seconds = value;
    file = trimmed(file.substr(0, blank));
    return true;
}

AfterCommand epdCommand(const char* rest) {
    std::string file;
    double seconds;
    if (!*rest) {
        printf("Usage:\n    epd <file> [seconds]\n");
        return AfterCommand::READ_NEXT;
    }
    if (!splitFileAndSeconds(rest, file, seconds)) {
        printf("illegal arg: %s\n", rest);
        return AfterCommand::READ_NEXT;
    }
    EpdRun run;
    if (!runEpdFile(file, seconds, run, stdout)) {
        printf("epd: cannot open %s\n", file.c_str());
        return AfterCommand::READ_NEXT;
    }
    printf("%s", summaryText(run.results).c_str());
    if (run.suite) printf("%s", eloReport(*run.suite, run.results).c_str());
    const std::string tsr = tsrName(file);
    if (writeTsr(tsr, run.results))
        printf("results written to %s\n", tsr.c_str());
    else
        printf("epd: cannot write %s\n", tsr.c_str());
    return AfterCommand::READ_NEXT;
}

AfterCommand tsrCompareCommand(const char* rest) {
    char a[512], b[512];
    if (sscanf(rest, "%511s %511s", a, b) != 2) {
        printf("Usage:\n    tsrcompare <a.tsr> <b.tsr>\n");
        return AfterCommand::READ_NEXT;
    }
    SuiteResults first, second;
    std::string error;
    if (!readTsr(a, first, error) || !readTsr(b, second, error)) {
        printf("tsrcompare: %s\n", error.c_str());
        return AfterCommand::READ_NEXT;
    }
    printf("%s", compareResults(first, a, second, b).text.c_str());
    return AfterCommand::READ_NEXT;
}

AfterCommand vflipCommand(const char* rest) {
    const std::string file = trimmed(rest);
    if (file.empty()) {
        printf("Usage:\n    vflip <file>\n");
        return AfterCommand::READ_NEXT;
    }
    VflipCount count;
    if (!vflipFile(file, count, stdout)) printf("vflip: cannot open %s\n", file.c_str());
    return AfterCommand::READ_NEXT;
}

AfterCommand selfTestCommand(const char*) {
    runSelfTests(stdout);
    return AfterCommand::READ_NEXT;
}

constexpr ConsoleCommand commands[] = {
    {{"epd", nullptr, nullptr}, epdCommand},
    {{"tsrcompare", nullptr, nullptr}, tsrCompareCommand},
    {{"vflip", nullptr, nullptr}, vflipCommand},
    {{"selftest", nullptr, nullptr}, selfTestCommand},
};

}  // namespace

std::span<const ConsoleCommand> harnessCommands() {
    return commands;
}
