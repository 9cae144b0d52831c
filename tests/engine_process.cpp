#include "engine_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

int millisecondsLeft(Clock::time_point deadline) {
    auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return left < 0 ? 0 : static_cast<int>(left);
}

}  // namespace

EngineProcess::EngineProcess(const std::vector<std::string>& args, const std::string& directory) {
    // A write to an engine that has exited must fail with EPIPE, not kill the test binary.
    signal(SIGPIPE, SIG_IGN);
    int input[2], output[2];
    // Close-on-exec, so an engine started later does not hold this one's input open.
    if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0) {
        ADD_FAILURE() << "pipe failed";
        return;
    }
    pid = fork();
    if (pid == 0) {
        dup2(input[0], 0);
        dup2(output[1], 1);
        close(input[0]), close(input[1]), close(output[0]), close(output[1]);
        if (!directory.empty() && chdir(directory.c_str()) != 0) _exit(126);
        std::vector<char*> argv{const_cast<char*>(KELVRA_BINARY)};
        for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
        argv.push_back(nullptr);
        execv(KELVRA_BINARY, argv.data());
        _exit(127);
    }
    close(input[0]);
    close(output[1]);
    toEngine = input[1];
    fromEngine = output[0];
    fcntl(toEngine, F_SETFL, O_NONBLOCK);
    fcntl(fromEngine, F_SETFL, O_NONBLOCK);
}

EngineProcess::~EngineProcess() {
    closeInput();
    if (fromEngine >= 0) close(fromEngine);
    if (pid > 0) {
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
    }
}

void EngineProcess::closeInput() {
    if (toEngine >= 0) close(toEngine);
    toEngine = -1;
    pending.clear();
}

template <typename Done>
bool EngineProcess::pump(int timeoutMs, const Done& done) {
    Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!done()) {
        pollfd fds[2];
        int count = 0;
        if (fromEngine >= 0) fds[count++] = {fromEngine, POLLIN, 0};
        if (toEngine >= 0 && !pending.empty()) fds[count++] = {toEngine, POLLOUT, 0};
        if (count == 0) return false;
        int left = millisecondsLeft(deadline);
        if (left == 0) return false;
        if (poll(fds, count, left) < 0 && errno != EINTR) return false;
        for (int i = 0; i < count; i++) {
            if (fds[i].revents == 0) continue;
            if (fds[i].fd == fromEngine) {
                char chunk[65536];
                ssize_t n = read(fromEngine, chunk, sizeof chunk);
                if (n > 0) {
                    out.append(chunk, static_cast<size_t>(n));
                } else if (n == 0 || errno != EAGAIN) {
                    close(fromEngine);
                    fromEngine = -1;
                }
            } else {
                ssize_t n = write(toEngine, pending.data(), pending.size());
                if (n > 0)
                    pending.erase(0, static_cast<size_t>(n));
                else if (errno != EAGAIN)
                    closeInput();
            }
        }
    }
    return true;
}

bool EngineProcess::send(const std::string& text) {
    if (toEngine < 0) return false;
    pending += text;
    return pump(30000, [&] { return pending.empty() || toEngine < 0; }) && toEngine >= 0;
}

bool EngineProcess::waitFor(const std::string& text, int timeoutMs, size_t from) {
    return pump(timeoutMs, [&] { return out.find(text, from) != std::string::npos; });
}

int EngineProcess::wait(int timeoutMs) {
    pump(timeoutMs, [&] { return pending.empty(); });
    closeInput();
    if (!pump(timeoutMs, [&] { return fromEngine < 0; })) {
        ADD_FAILURE() << "engine did not finish within " << timeoutMs << " ms; output so far:\n" << out;
        return 1000 + SIGKILL;
    }
    int status = 0;
    waitpid(pid, &status, 0);
    pid = -1;
    if (WIFSIGNALED(status)) {
        ADD_FAILURE() << "engine died of signal " << WTERMSIG(status) << "; output:\n" << out;
        return 1000 + WTERMSIG(status);
    }
    return static_cast<signed char>(WEXITSTATUS(status));
}

EngineRun runEngine(const std::vector<std::string>& args, const std::string& input,
                    const std::string& directory) {
    EngineProcess engine(args, directory);
    engine.send(input);
    int code = engine.wait();
    return {engine.output(), code};
}

std::string runConsole(const std::string& directory, const std::string& lines, const std::string& ini) {
    std::vector<std::string> args;
    if (!ini.empty()) args.push_back(writeFile(directory, "engine.ini", ini));
    const EngineRun run = runEngine(args, lines, directory);
    EXPECT_EQ(run.exitCode, 0) << run.output;
    return run.output;
}
