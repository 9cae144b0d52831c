#include "harness/selftest.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <vector>

#include "frontend/util/string.h"
#include "platform/platform.h"
#include "search/bench.h"
#include "search/parallel.h"
#include "search/searchthread.h"

namespace {

constexpr int ROUNDS = 6;

// One round: an endless search on all slots, stopped after a moment. Every worker must have woken
// with the round's root position (a worker takes back what it played, so its board ends there) and
// gone back to sleep.
bool wakeAndStop(int round, uint32_t& stopMs, uint64_t& workerNodes, std::string& detail) {
    SearchRequest request;
    request.board.setFen(benchPositions()[round % benchPositions().size()]);
    request.infinite = true;
    request.statistics = false;
    searchThread.startSearch(request, false);
    platform::sleepMs(20);
    if (searchThread.isIdle()) {
        detail = "the search thread did not start searching";
        return false;
    }
    const uint32_t start = platform::getTickCount();
    searchThread.stopSearch();
    waitForWorkers();
    stopMs = std::max(stopMs, platform::getTickCount() - start);
    for (int i = 1; i < MAX_THREADS; ++i) {
        if (searchThreads[i].board.hash != request.board.hash) {
            detail = "slot " + std::to_string(i) + " did not wake with the search";
            return false;
        }
        workerNodes += searchThreads[i].stats.nodes.get() + searchThreads[i].stats.qnodes.get();
    }
    return true;
}

bool wakeAllSlots(std::string& detail) {
    if (threadCount() != MAX_THREADS) {
        detail = "only " + std::to_string(threadCount()) + " search threads could be set";
        return false;
    }
    uint32_t stopMs = 0;
    uint64_t workerNodes = 0;
    for (int round = 0; round < ROUNDS; ++round)
        if (!wakeAndStop(round, stopMs, workerNodes, detail)) return false;
    detail = std::to_string(MAX_THREADS) + " slots started, woken and stopped " + std::to_string(ROUNDS) +
             " times, slowest stop " + std::to_string(stopMs) + " ms, workers searched " +
             std::to_string(workerNodes) + " nodes";
    return true;
}

}  // namespace

// All eight slots through the parallel search's own calls: set the count, start (which wakes the
// workers), stop, wait until every worker sleeps; several rounds, then the old count again.
bool threadSelfTest(std::string& detail) {
    searchThread.boot();
    searchThread.stopSearch();
    const int threads = threadCount();
    setThreads(MAX_THREADS);
    const bool passed = wakeAllSlots(detail);
    if (threadCount() != threads) setThreads(threads);
    return passed;
}

bool stringSelfTest(std::string& detail) {
    const uint32_t start = liveStrings.load();
    bool passed = true;
    auto expect = [&](bool condition, const char* what) {
        if (!condition && passed) {
            detail = what;
            passed = false;
        }
    };
    {
        String hello("hello");
        String copy = hello;
        expect(liveStrings.load() == start + 1, "a copy allocated a block");
        copy.append(" world", 6);
        expect(hello == "hello" && copy == "hello world", "append changed a shared block");
        expect(liveStrings.load() == start + 2, "append did not make a block of its own");
        String line("go  wtime 100");
        const String word = String::nextWord(line, " \t");
        expect(word == "go" && line == "wtime 100", "nextWord split wrongly");
        expect(copy.substring(6, 5) == "world" && copy.substring(40, 2).empty(), "substring is wrong");
        std::vector<String> many(100, copy);
        expect(liveStrings.load() > start, "live blocks went below the start value");
    }
    const uint32_t end = liveStrings.load();
    expect(end == start, "blocks were not released");
    if (passed) detail = "live blocks back at " + std::to_string(end);
    return passed;
}

bool timerSelfTest(std::string& detail) {
    using Clock = std::chrono::steady_clock;
    detail.clear();
    bool passed = true;
    for (unsigned ms : {10u, 50u, 200u}) {
        const auto wallStart = Clock::now();
        const uint32_t start = platform::getTickCount();
        platform::sleepMs(ms);
        const uint32_t ticks = platform::getTickCount() - start;
        const auto wall =
            std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - wallStart).count();
        // A sleep may overrun on a busy machine but never ends early; the tick must follow the wall clock.
        const bool good =
            ticks + 1 >= ms && ticks <= ms + 50 + ms / 4 && std::abs(static_cast<long>(ticks) - wall) <= 5;
        passed = passed && good;
        detail += (detail.empty() ? "" : ", ") + std::string("sleep ") + std::to_string(ms) + " ms took " +
                  std::to_string(ticks) + " ms" + (good ? "" : " (out of tolerance)");
    }
    return passed;
}

int runSelfTests(FILE* out) {
    constexpr struct {
        const char* name;
        bool (*run)(std::string&);
    } TESTS[] = {{"threads", threadSelfTest}, {"strings", stringSelfTest}, {"timers", timerSelfTest}};
    int failed = 0;
    for (const auto& test : TESTS) {
        std::string detail;
        const bool passed = test.run(detail);
        failed += !passed;
        std::fprintf(out, "selftest %s: %s (%s)\n", test.name, passed ? "pass" : "FAIL", detail.c_str());
        std::fflush(out);
    }
    std::fprintf(out, "selftest: %i passed, %i failed\n", static_cast<int>(std::size(TESTS)) - failed,
                 failed);
    return failed;
}
