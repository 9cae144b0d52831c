#include "search/timecontrol.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "frontend/util/log.h"
#include "platform/platform.h"

TimeControl timeControl;

namespace {

// Float-to-integer conversions of the allocation round to nearest, ties to even.
int64_t roundHalfEven(double x) {
    return static_cast<int64_t>(std::nearbyint(x));
}

}  // namespace

TimeControl::TimeControl() : startTick(platform::getTickCount()) {}

void TimeControl::start() {
    phase = NORMAL_PHASE;
    publishLimit(false);
    startTick.store(platform::getTickCount(), std::memory_order_relaxed);
    iteration = 0;
    lastScore = 0;
    prevScore = 0;
}

void TimeControl::allocate(const ClockLimits& clock) {
    Log log;
    outOfBook = clock.outOfBook;
    if (outOfBook > 0) log.info("out of book=%i\n", outOfBook);
    if (clock.moveTimeMs >= 0) {
        log.info("got hard moves/millis=%i/%i\n", clock.movesToGo, clock.moveTimeMs);
        setMoveTime(clock.moveTimeMs);
    } else if (clock.clockMs >= 0) {
        log.info("got wb moves/millis=%i/%i\n", clock.movesToGo, clock.clockMs);
        setClock(clock.movesToGo, usableClock(clock.clockMs, clock.overheadMs), clock.incMs);
    } else {
        // Depth, an infinite search or the last limits end this one.
        log.warning("NO TIME CALCULATED\n");
    }
    log.info("Nominal search time is %3.2f seconds, infinite=%i\n", phaseLimit[NORMAL_PHASE] / 1000.0,
             int(infinite.load()));
}

void TimeControl::setClock(int moves, int clock, int increment) {
    movesToGo = moves;
    clockMs = clock;
    incMs = increment;
    const int share = moves < 1 ? (canPonder ? 30 : 40) : moves;

    int64_t avail = int64_t(clock) - reserveMs;
    if (avail < 0) avail = 100;

    int64_t base = avail / share + increment;
    if (share > 7 && outOfBook >= 1 && outOfBook <= 4) {
        // The first moves after the book get extra time: the book leaves the search no table to build on.
        const double factor = (5 - outOfBook) * 0.25;
        const int64_t extra = roundHalfEven(double(base) * factor);
        base += extra;
        Log().info("extra time for out of book: %5.3fxbase=%ums\n", factor, unsigned(extra));
    }
    const int64_t b = base + base / 4;
    for (int i = 0; i < PHASES; i++)
        phaseLimit[i] = int(std::clamp<int64_t>(roundHalfEven(double(phaseFactor[i]) * double(b)), 0, avail));
}

void TimeControl::setMoveTime(int ms) {
    clockMs = ms;
    std::fill(std::begin(phaseFactor), std::end(phaseFactor), 1.0f);
    movesToGo = 1;
    incMs = 0;
    int64_t avail = int64_t(ms) - reserveMs;
    if (avail < 0) avail = 100;
    // The quarter bonus of the clock allocation would be capped at avail again: every phase gets avail.
    std::fill(std::begin(phaseLimit), std::end(phaseLimit), int(std::min<int64_t>(avail, INT32_MAX)));
}

bool TimeControl::nextIteration(int score) {
    if (phase != NORMAL_PHASE) setPhase(NORMAL_PHASE);
    prevScore = lastScore;
    lastScore = score;
    if (infinite) return true;
    // Start another iteration only while there is a fair chance of finishing it.
    const int current = phase;
    const int64_t budget =
        current == 0 ? phaseLimit[0] : roundHalfEven(double(phaseLimit[current]) * double(phaseFactor[1]));
    return int64_t(elapsed()) <= budget;
}

void TimeControl::enterFailHighPhase() {
    if (iteration > 0 && phase < FAIL_HIGH_PHASE) setPhase(FAIL_HIGH_PHASE);
}

void TimeControl::leaveFailHighPhase() {
    if (iteration > 0 && phase == FAIL_HIGH_PHASE) setPhase(NORMAL_PHASE);
}

void TimeControl::checkScoreDrop(int score) {
    // Only scores in -99..99 earn panic time: a side already clearly ahead or behind gains little from it.
    if (phase != PANIC_PHASE && iteration > 2 && score + 10 < lastScore && std::abs(score) <= 99)
        setPhase(PANIC_PHASE);
}

void TimeControl::ponderhit() {
    infinite = false;
    publishLimit(true);
}

uint32_t TimeControl::elapsed() const {
    return platform::getTickCount() - startTick.load(std::memory_order_relaxed);
}

void TimeControl::setPhase(int newPhase) {
    phase = newPhase;
    publishLimit(false);
}

// The search thread (moving the phase) and the protocol thread (ponderhit) both write the live
// limit. Each writer reads phase and infinite again after its write and repeats when either moved in
// between, so the limit left standing always belongs to the final phase and flag. The writes are
// sequentially consistent so that no write slips past the re-read that follows it.
void TimeControl::publishLimit(bool reportPhaseChange) {
    for (;;) {
        const int before = phase;
        const bool unlimited = infinite;
        limit = unlimited ? NO_LIMIT : uint32_t(phaseLimit[before]);
        const int after = phase;
        if (after == before && infinite == unlimited) return;
        if (reportPhaseChange && after != before)
            Log().info("TimeControl: ponderhit detected phase change from %i to %i\n", before, after);
    }
}
