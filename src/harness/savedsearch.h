// The harness borrows the search thread for its own runs (suites, self tests). What it changes on the
// way — the game board, the limits, the listener, the output switches, the thread count — is taken
// here and put back when the run ends, so that the console or the GUI carries on as before.
#pragma once

#include <algorithm>
#include <array>

#include "board/board.h"
#include "search/parallel.h"
#include "search/searchthread.h"
#include "search/timecontrol.h"

struct SavedSearch {
    Board board = gameBoard;
    int maxDepth = searchThread.maxDepth;
    SearchListener* listener = searchThread.listener;
    bool statistics = searchThread.printStatistics;
    bool echo = searchThread.echoLines;
    int threads = threadCount();
    bool infinite = timeControl.infinite.load();
    int clockMs = timeControl.clockMs;
    int movesToGo = timeControl.movesToGo;
    int incMs = timeControl.incMs;
    std::array<int, TimeControl::PHASES> limits = std::to_array(timeControl.phaseLimit);
    std::array<float, TimeControl::PHASES> factors = std::to_array(timeControl.phaseFactor);

    // Quiet, unlimited in depth, and with no listener until the run sets its own.
    SavedSearch() {
        searchThread.maxDepth = 0;
        searchThread.listener = nullptr;
        searchThread.printStatistics = false;
        searchThread.echoLines = false;
    }
    SavedSearch(const SavedSearch&) = delete;
    SavedSearch& operator=(const SavedSearch&) = delete;

    ~SavedSearch() {
        gameBoard = board;
        searchThread.maxDepth = maxDepth;
        searchThread.listener = listener;
        searchThread.printStatistics = statistics;
        searchThread.echoLines = echo;
        if (threadCount() != threads) setThreads(threads);
        timeControl.infinite.store(infinite);
        timeControl.clockMs = clockMs;
        timeControl.movesToGo = movesToGo;
        timeControl.incMs = incMs;
        std::copy(limits.begin(), limits.end(), timeControl.phaseLimit);
        std::copy(factors.begin(), factors.end(), timeControl.phaseFactor);
    }
};
