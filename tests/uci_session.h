// A UCI session with the real binary for the protocol tests: a scratch directory with an ini file
// (one search thread, protocol logs in "logs"), the engine started there, and helpers to send lines,
// wait for answers and read the protocol log.
#pragma once

#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <string>

#include "engine_process.h"

// Whether pattern occurs in text, where '#' stands for a number (digits, perhaps after a '-'), '@' for
// a move in protocol form (e2e4, e7e8q) and '*' for any run of characters within a line. (std::regex
// trips a false warning of the compiler in the sanitizer builds.)
inline bool matchesAt(const char* text, const char* pattern) {
    if (!*pattern) return true;
    if (*pattern == '*') {
        for (const char* end = text;; end++) {
            if (matchesAt(end, pattern + 1)) return true;
            if (!*end || *end == '\n') return false;
        }
    }
    if (*pattern == '#') {
        if (*text == '-') text++;
        if (!isdigit(static_cast<unsigned char>(*text))) return false;
        while (isdigit(static_cast<unsigned char>(*text))) text++;
        return matchesAt(text, pattern + 1);
    }
    if (*pattern == '@') {
        for (int i = 0; i < 4; i++)
            if (!(i % 2 ? text[i] >= '1' && text[i] <= '8' : text[i] >= 'a' && text[i] <= 'h')) return false;
        text += 4;
        if (*text && strchr("nbrq", *text) && matchesAt(text + 1, pattern + 1)) return true;
        return matchesAt(text, pattern + 1);
    }
    return *text == *pattern && matchesAt(text + 1, pattern + 1);
}

inline bool matches(const std::string& text, const char* pattern) {
    for (size_t at = 0; at <= text.size(); at++)
        if (matchesAt(text.c_str() + at, pattern)) return true;
    return false;
}

class UciSession {
  public:
    // extraIni is appended to the ini file; "uci" is sent unless handshake is false.
    explicit UciSession(const std::string& name, const std::string& extraIni = "", bool handshake = true)
        : directory(scratchDirectory(name)),
          engine({writeFile(directory, "test.ini", "search.nthreads=1\nuci.logdir=logs\n" + extraIni)},
                 directory) {
        if (handshake) exchange("uci\n", "uciok\n");
    }

    ~UciSession() {
        // A sanitizer report lands in the error log once "uci" has redirected the error stream.
        std::string errors = readText(directory + "/kelvra-0.3a-error.log");
        if (errors.find("Sanitizer") != std::string::npos || (testing::Test::HasFailure() && !errors.empty()))
            ADD_FAILURE() << "error log:\n" << errors;
    }

    size_t mark() const { return engine.output().size(); }
    std::string since(size_t from) const { return engine.output().substr(from); }

    // Sends lines and waits until `until` appears in the output that follows them; returns that output.
    std::string exchange(const std::string& lines, const std::string& until, int timeoutMs = 20000) {
        size_t from = mark();
        EXPECT_TRUE(engine.send(lines)) << lines;
        EXPECT_TRUE(engine.waitFor(until, timeoutMs, from))
            << "no \"" << until << "\" after " << lines << "output:\n"
            << since(from);
        return since(from);
    }

    // The output of a round trip through "isready": everything the engine wrote in answer to lines.
    std::string settle(const std::string& lines) { return exchange(lines + "isready\n", "readyok\n"); }

    std::string logText(const std::string& name = "kelvra-0000.log") const {
        return readText(directory + "/logs/" + name);
    }

    std::string directory;
    EngineProcess engine;
};
