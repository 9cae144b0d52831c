#include "harness/selftest.h"

#include <atomic>
#include <chrono>
#include <cstring>
#include <memory>
#include <vector>

#include "board/board.h"
#include "frontend/util/string.h"
#include "platform/platform.h"
#include "search/searchthread.h"
#include "search/timecontrol.h"

namespace {

constexpr int ROUNDS = 200;
constexpr int SEARCH_ROUNDS = 3;

// One thread slot as the parallel search drives its workers: asleep on go, awake for one piece of
// work, then idle again. Shared with its thread, which may still be leaving Event::set when the test
// ends.
struct Slot {
    platform::Event go;
    platform::Event idle;
    std::atomic<bool> quit{false};
    std::atomic<int> wakes{0};
};

void slotBody(std::shared_ptr<Slot> slot) {
    for (;;) {
        slot->go.wait();
        slot->go.reset();
        if (slot->quit.load()) {
            slot->idle.set();
            return;
        }
        slot->wakes.fetch_add(1);
        slot->idle.set();
    }
}

void wakeAll(std::vector<std::shared_ptr<Slot>>& slots) {
    for (auto& slot : slots) {
        slot->idle.reset();
        slot->go.set();
    }
    for (auto& slot : slots) slot->idle.wait();
}

// The search thread itself: started on an endless search, it must be busy, and stop when asked.
bool searchThreadStartsAndStops(std::string& detail) {
    searchThread.boot();
    searchThread.stopSearch();
    const Board board = gameBoard;
    SearchListener* listener = searchThread.listener;
    const bool statistics = searchThread.printStatistics, echo = searchThread.echoLines;
    const bool infinite = timeControl.infinite.load();
    const int maxDepth = searchThread.maxDepth;
    gameBoard.setFen(START_FEN);
    searchThread.maxDepth = 0;
    searchThread.listener = nullptr;
    searchThread.printStatistics = false;
    searchThread.echoLines = false;
    timeControl.infinite.store(true);

    bool passed = true;
    uint32_t slowest = 0;
    for (int round = 0; round < SEARCH_ROUNDS && passed; ++round) {
        searchThread.startSearch(false);
        platform::sleepMs(20);
        if (searchThread.isIdle()) {
            detail = "the search thread did not start searching";
            passed = false;
        }
        const uint32_t start = platform::getTickCount();
        searchThread.stopSearch();
        slowest = std::max(slowest, platform::getTickCount() - start);
        if (!searchThread.isIdle()) {
            detail = "the search thread did not stop";
            passed = false;
        }
    }

    gameBoard = board;
    searchThread.listener = listener;
    searchThread.printStatistics = statistics;
    searchThread.echoLines = echo;
    timeControl.infinite.store(infinite);
    searchThread.maxDepth = maxDepth;
    if (passed)
        detail = "search thread started and stopped " + std::to_string(SEARCH_ROUNDS) +
                 " times, slowest stop " + std::to_string(slowest) + " ms";
    return passed;
}

}  // namespace

bool threadSelfTest(std::string& detail) {
    std::vector<std::shared_ptr<Slot>> slots;
    for (int i = 0; i < MAX_THREADS; ++i) {
        slots.push_back(std::make_shared<Slot>());
        platform::startThread([slot = slots.back()] { slotBody(slot); }, true);
    }
    for (int round = 0; round < ROUNDS; ++round) wakeAll(slots);
    for (auto& slot : slots) slot->quit.store(true);
    wakeAll(slots);
    for (size_t i = 0; i < slots.size(); ++i)
        if (slots[i]->wakes.load() != ROUNDS) {
            detail = "slot " + std::to_string(i) + " woke " + std::to_string(slots[i]->wakes.load()) +
                     " times of " + std::to_string(ROUNDS);
            return false;
        }
    std::string search;
    if (!searchThreadStartsAndStops(search)) {
        detail = search;
        return false;
    }
    detail = std::to_string(MAX_THREADS) + " slots woken " + std::to_string(ROUNDS) + " times and stopped; " +
             search;
    return true;
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
