#include "platform/platform.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>

#ifdef _WIN32
#include <direct.h>
#include <windows.h>
#else
#include <dlfcn.h>
#include <pthread.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace platform {

uint32_t getTickCount() {
    using namespace std::chrono;
    return static_cast<uint32_t>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

void sleepMs(unsigned ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

unsigned processorCount() {
    unsigned n = std::thread::hardware_concurrency();
    return n == 0 ? 1 : n;
}

void Event::set() {
    std::lock_guard<std::mutex> lock(mutex);
    signalled = true;
    changed.notify_all();
}

void Event::reset() {
    std::lock_guard<std::mutex> lock(mutex);
    signalled = false;
}

void Event::wait() {
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait(lock, [this] { return signalled; });
}

bool Event::isSet() {
    std::lock_guard<std::mutex> lock(mutex);
    return signalled;
}

void startThread(std::function<void()> body, bool belowNormal) {
    std::thread thread([body = std::move(body), belowNormal] {
        if (belowNormal) {
#ifdef _WIN32
            SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_BELOW_NORMAL);
#else
            // Best effort: a niceness of 1 on the calling thread only (Linux threads have their own).
            errno = 0;
            int nice = getpriority(PRIO_PROCESS, 0);
            if (errno == 0) setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), nice + 1);
#endif
        }
        body();
    });
    thread.detach();
}

namespace {
constexpr size_t HUGE_PAGE = size_t(2) << 20;
}

void* allocLarge(size_t bytes) {
    // Rounded up to whole huge pages, as aligned allocation requires.
    const size_t size = (bytes + HUGE_PAGE - 1) & ~(HUGE_PAGE - 1);
#ifdef _WIN32
    void* block = _aligned_malloc(size, HUGE_PAGE);
#else
    void* block = std::aligned_alloc(HUGE_PAGE, size);
#endif
    if (block == nullptr) return nullptr;
#ifdef MADV_HUGEPAGE
    // Advice only: before the first touch, so the zeroing below faults in huge pages.
    madvise(block, size, MADV_HUGEPAGE);
#endif
    std::memset(block, 0, size);
    return block;
}

void freeLarge(void* block) {
#ifdef _WIN32
    _aligned_free(block);
#else
    std::free(block);
#endif
}

void* loadLibrary(const std::string& path) {
#ifdef _WIN32
    return reinterpret_cast<void*>(LoadLibraryA(path.c_str()));
#else
    return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
#endif
}

void* findSymbol(void* library, const char* name) {
    if (!library) return nullptr;
#ifdef _WIN32
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
#else
    return dlsym(library, name);
#endif
}

const char* bitbaseLibraryName() {
#ifdef _WIN32
    return "egbbdll.dll";
#else
    return "egbbso64.so";
#endif
}

const char* bitbaseLibraryFallbackName() {
#ifdef _WIN32
    return "";
#else
    return "egbbso.so";
#endif
}

int makeDirectory(const char* path) {
#ifdef _WIN32
    int rc = _mkdir(path);
#else
    int rc = mkdir(path, 0777);
#endif
    return rc == 0 ? 0 : errno;
}

std::string currentDirectory() {
    char buffer[4096];
#ifdef _WIN32
    return _getcwd(buffer, sizeof buffer) ? buffer : "";
#else
    return getcwd(buffer, sizeof buffer) ? buffer : "";
#endif
}

namespace {
std::atomic<uint32_t> randomState{1};
}

void seedRandom(uint32_t seed) {
    randomState.store(seed, std::memory_order_relaxed);
}

int random15() {
    // The classic linear congruential step; bits 16..30 of the state are the result.
    uint32_t next = randomState.load(std::memory_order_relaxed) * 1103515245u + 12345u;
    randomState.store(next, std::memory_order_relaxed);
    return static_cast<int>((next >> 16) & 0x7fff);
}

}  // namespace platform
