// The one place where the engine meets the operating system: clock, threads and events,
// processor count, large blocks, run-time library loading, directories and the book's random numbers.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

namespace platform {

// Milliseconds from a monotonic clock, wrapping at 2^32 like the classic tick counter.
uint32_t getTickCount();

void sleepMs(unsigned ms);

// Processors the search may use; never 0.
unsigned processorCount();

// A manual-reset event: stays set until reset, wakes every waiter.
class Event {
  public:
    void set();
    void reset();
    void wait();
    bool isSet();

  private:
    std::mutex mutex;
    std::condition_variable changed;
    bool signalled = false;
};

// Starts a detached thread running body; belowNormal lowers its priority where the system allows.
void startThread(std::function<void()> body, bool belowNormal);

// A zeroed block of at least bytes, aligned to 2 MB and backed by huge pages where the system offers
// them: a table probed at random addresses misses the TLB on nearly every probe with 4 KB pages.
// Null when the memory is not granted. Release it with freeLarge only.
void* allocLarge(size_t bytes);
void freeLarge(void* block);

// Run-time loading of a shared library; null when it cannot be loaded or the symbol is absent.
void* loadLibrary(const std::string& path);
void* findSymbol(void* library, const char* name);
// File name of the endgame bitbase library on this system, and a fallback (empty when none).
const char* bitbaseLibraryName();
const char* bitbaseLibraryFallbackName();

// 0 on success, else errno (EEXIST when the directory is already there).
int makeDirectory(const char* path);
std::string currentDirectory();

// A 15-bit generator (results 0..32767) so the book's move choice behaves the same everywhere.
void seedRandom(uint32_t seed);
int random15();

}  // namespace platform
