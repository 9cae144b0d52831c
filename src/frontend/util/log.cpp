#include "frontend/util/log.h"

#include <atomic>
#include <cstdarg>

namespace {

enum Level { DEBUG, INFO, WARNING, ERROR };

// Fixed at 0: every level is written.
constexpr int threshold = 0;

std::atomic<FILE*> output{nullptr};

// One vfprintf per message, so lines from the search and the input thread never interleave.
void write(int level, const char* format, va_list args) {
    FILE* stream = output.load(std::memory_order_acquire);
    if (stream && threshold <= level) vfprintf(stream, format, args);
}

}  // namespace

#define KELVRA_LOG_LEVEL(name, level)  \
    void Log::name(const char* format, ...) { \
        va_list args;                      \
        va_start(args, format);            \
        write(level, format, args);        \
        va_end(args);                      \
    }

KELVRA_LOG_LEVEL(debug, DEBUG)
KELVRA_LOG_LEVEL(info, INFO)
KELVRA_LOG_LEVEL(warning, WARNING)
KELVRA_LOG_LEVEL(error, ERROR)

void Log::setStream(FILE* stream) { output.store(stream, std::memory_order_release); }
FILE* Log::stream() { return output.load(std::memory_order_acquire); }
