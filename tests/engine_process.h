// Runs the engine binary as a child process for console and protocol tests: arguments, a working
// directory and standard input go in; standard output and the exit code come back. Standard error
// is left alone so sanitizer reports show up in the test log.
//
//     EngineRun run = runEngine({"my.ini"}, "set\nq\n");          // whole session at once
//
//     EngineProcess engine({}, directory);                         // or step by step
//     engine.send("uci\n");
//     ASSERT_TRUE(engine.waitFor("uciok\n"));
//     engine.send("quit\n");
//     EXPECT_EQ(engine.wait(), 0);
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "scratch_dir.h"

class EngineProcess {
  public:
    // Starts KELVRA_BINARY with args in directory (the current one when empty).
    explicit EngineProcess(const std::vector<std::string>& args = {}, const std::string& directory = "");
    EngineProcess(const EngineProcess&) = delete;
    EngineProcess& operator=(const EngineProcess&) = delete;
    ~EngineProcess();  // kills the engine if it still runs

    // Writes text to the engine's standard input, reading its output meanwhile so neither side
    // blocks on a full pipe. False when the engine stopped reading (it exited).
    bool send(const std::string& text);

    // Reads output until it contains text after position from; false on time-out or end of output.
    bool waitFor(const std::string& text, int timeoutMs = 10000, size_t from = 0);

    // Closes standard input, reads all remaining output and returns the exit code as main returned
    // it (so -1, not 255). A crash or time-out fails the current test and returns a code of 1000 + signal.
    int wait(int timeoutMs = 30000);

    const std::string& output() const { return out; }

  private:
    // Moves data both ways until the deadline; stops early when done() holds.
    template <typename Done>
    bool pump(int timeoutMs, const Done& done);
    void closeInput();

    pid_t pid = -1;
    int toEngine = -1;
    int fromEngine = -1;
    std::string pending;  // input not yet written
    std::string out;
};

struct EngineRun {
    std::string output;
    int exitCode;
};

EngineRun runEngine(const std::vector<std::string>& args, const std::string& input,
                    const std::string& directory = "");

// Runs the console lines in directory, with an ini file of that text when one is given; expects a
// clean exit and returns the output.
std::string runConsole(const std::string& directory, const std::string& lines, const std::string& ini = "");

// How often what occurs in text, without overlaps.
inline size_t countOf(const std::string& text, const std::string& what) {
    size_t count = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + what.size()))
        count++;
    return count;
}
