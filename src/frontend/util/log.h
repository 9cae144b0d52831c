// Levelled printf-style logging. Every Log instance writes to the one global stream (the protocol
// log file once it is open); with no stream every call is a no-op.
#pragma once

#include <cstdio>

class Log {
  public:
    void debug(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void info(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void warning(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void error(const char* format, ...) __attribute__((format(printf, 2, 3)));

    static void setStream(FILE* stream);
    static FILE* stream();
};
