// How long the current search may run. The protocol hands in the clock; five phase limits come out
// of it, and the one of the current phase is the live limit that the search polls.
//
// Threads: startSearch hands in the clock and calls start() on the protocol thread while no search
// runs; the protocol thread calls ponderhit() while one does. The search thread reads limit and startTick and
// moves the phase. limit, startTick, phase and infinite are therefore atomic; everything else is written only
// while the search is idle.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>

// What the protocol holds back from the clock by default, in milliseconds.
constexpr int DEFAULT_OVERHEAD_MS = 3000;

// The clock of one search as the protocol read it, before the allocation.
struct ClockLimits {
    int clockMs = -1;     // the side to move's clock; -1: none given
    int incMs = 0;        // the side to move's increment
    int movesToGo = 0;    // 0: the rest of the game
    int moveTimeMs = -1;  // a fixed time for this move, which the clock then does not count; -1: none
    int outOfBook = 0;    // own moves since the game left the book; 0: unknown or still in book
    int overheadMs = DEFAULT_OVERHEAD_MS;  // held back from the clock for the way to and from the GUI
};

// The clock handed to the allocation for t milliseconds left: the overhead off a clock above twice
// the overhead, half of a shorter one. Half, because the allocation adds the increment on top, and an
// engine that may spend its whole clock each move bleeds it to nothing and then loses on time to the
// first delay between the GUI and the engine. But never below a tenth of a second: with less the
// search cannot finish its first iterations, and the allocation divides it among the moves to go.
constexpr int usableClock(int t, int overheadMs = DEFAULT_OVERHEAD_MS) {
    return t > 2 * overheadMs ? t - overheadMs : std::max(t / 2, 100);
}

class TimeControl {
  public:
    static constexpr uint32_t NO_LIMIT = 0xFFFFFFFF;
    static constexpr int PHASES = 5;
    static constexpr int NORMAL_PHASE = 2;
    static constexpr int FAIL_HIGH_PHASE = 3;
    static constexpr int PANIC_PHASE = 4;

    std::atomic<uint32_t> limit{5000};  // live limit in ms, NO_LIMIT for none
    std::atomic<uint32_t> startTick;
    int incMs = 0;
    int clockMs = 5000;
    int reserveMs = 0;
    int movesToGo = 1;
    int outOfBook = 0;  // own moves played since the game left the book; 0 = unknown or still in book
    int phaseLimit[PHASES] = {1562, 3125, 5000, 5000, 5000};
    float phaseFactor[PHASES] = {0.25f, 0.5f, 1.0f, 2.0f, 4.0f};
    std::atomic<int> phase{NORMAL_PHASE};
    std::atomic<bool> infinite{false};  // analysis and pondering: no limit at all
    bool canPonder = false;             // pondering earns each move a larger share of the clock
    int lastScore = 0;
    int prevScore = 0;
    int iteration = 0;

    TimeControl();

    void start();
    // The phase limits for a protocol's clock: a fixed move time, else the usable part of the clock;
    // with neither, the limits of the last search stand. Logs what it chose.
    void allocate(const ClockLimits& clock);
    void setClock(int moves, int clock, int increment);
    void setMoveTime(int ms);
    void setIteration(int depth) { iteration = depth; }
    // After a completed iteration: whether another one may start.
    bool nextIteration(int score);
    void enterFailHighPhase();
    void leaveFailHighPhase();
    void checkScoreDrop(int score);
    void ponderhit();

    uint32_t elapsed() const;
    bool outOfTime() const { return elapsed() > limit.load(std::memory_order_relaxed); }

  private:
    void setPhase(int newPhase);
    void publishLimit(bool reportPhaseChange);
};

extern TimeControl timeControl;
