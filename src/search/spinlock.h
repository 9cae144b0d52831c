// Busy waiting for the parallel search. Its threads wait on each other for microseconds at a time: a
// lock that puts the waiting thread to sleep costs a trip through the kernel and, on a virtual
// machine, the wake-up of an idle processor, which can take milliseconds.
#pragma once

#include <atomic>
#include <thread>

// One round of a busy wait. A waiter that may yield gives its core away after a while: it should when
// more threads spin than there are cores, and should not otherwise, since any other process on the
// machine would then get the core for a whole time slice.
inline void spinPause(int& round, bool mayYield) {
    if (mayYield && ++round >= 4096) {
        std::this_thread::yield();
        return;
    }
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#endif
}

// A lock word taken by atomic exchange, held for a few instructions at a time; usable with
// std::lock_guard.
class SpinLock {
  public:
    void lock() {
        // A long wait means the holder lost its core: let it have one.
        for (int round = 0; word.exchange(1, std::memory_order_acquire);)
            while (word.load(std::memory_order_relaxed)) spinPause(round, true);
    }
    // A single try, for a caller that has better things to do than wait.
    bool try_lock() { return word.exchange(1, std::memory_order_acquire) == 0; }
    void unlock() { word.store(0, std::memory_order_release); }

  private:
    std::atomic<int> word{0};
};
