#include "frontend/util/log.h"

#include <atomic>
#include <cstdarg>
#include <mutex>

namespace {

enum Level { DEBUG, INFO, WARNING, ERROR };

// Fixed at 0: every level is written.
constexpr int threshold = 0;

std::atomic<FILE*> output{nullptr};
// Held while a message is written and while the stream changes, so that whoever replaces the stream
// may close the old one at once: a worker thread may be logging into it at that moment.
std::mutex outputLock;

// One vfprintf per message, so lines from the search and the input thread never interleave. Without
// a stream the call costs one load.
void write(int level, const char* format, va_list args) {
    if (threshold > level || !output.load(std::memory_order_relaxed)) return;
    std::lock_guard<std::mutex> guard(outputLock);
    if (FILE* stream = output.load(std::memory_order_relaxed)) vfprintf(stream, format, args);
}

}  // namespace

#define KELVRA_LOG_LEVEL(name, level)         \
    void Log::name(const char* format, ...) { \
        va_list args;                         \
        va_start(args, format);               \
        write(level, format, args);           \
        va_end(args);                         \
    }

KELVRA_LOG_LEVEL(debug, DEBUG)
KELVRA_LOG_LEVEL(info, INFO)
KELVRA_LOG_LEVEL(warning, WARNING)
KELVRA_LOG_LEVEL(error, ERROR)

// Released for readers of stream(), which take no lock.
void Log::setStream(FILE* stream) {
    std::lock_guard<std::mutex> guard(outputLock);
    output.store(stream, std::memory_order_release);
}
FILE* Log::stream() {
    return output.load(std::memory_order_acquire);
}
