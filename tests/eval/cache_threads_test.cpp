// The evaluation cache is shared by all search threads without a lock. Threads evaluating at once,
// each with its own context, must leave the sanitizers quiet and get their own positions' scores
// (a torn entry may, rarely, give a wrong one: that is accepted by design, so only a few may differ).
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "eval_support.h"

using namespace evaltest;

TEST(EvalCache, SharedByThreadsWithoutALock) {
    std::vector<std::unique_ptr<Board>> boards;
    for (const std::string& fen : fensOf(testData("suite_positions.epd"))) boards.push_back(boardFrom(fen));
    ASSERT_FALSE(boards.empty());
    std::vector<int> expected;
    Evaluator reference;
    for (auto& board : boards) expected.push_back(reference(*board, false));

    const int rounds = sanitized() ? 20 : 200;
    std::vector<int> wrong(2, 0);
    auto work = [&](int id) {
        Evaluator evaluator;  // each thread its own context and its own copies of the boards
        std::vector<std::unique_ptr<Board>> own;
        for (auto& board : boards) own.push_back(std::make_unique<Board>(*board));
        for (int round = 0; round < rounds; ++round)
            for (size_t i = 0; i < own.size(); ++i) {
                const size_t k = id ? own.size() - 1 - i : i;  // the two threads meet halfway
                if (evaluator(*own[k], true) != expected[k]) ++wrong[id];
            }
    };
    std::thread other(work, 1);
    work(0);
    other.join();
    EXPECT_LE(wrong[0] + wrong[1], static_cast<int>(boards.size()) * rounds / 100);
}
