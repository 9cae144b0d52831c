#include "frontend/protocol_log.h"

#include <cstdint>
#include <cstdio>
#include <string>

#include "frontend/util/filesystem.h"
#include "frontend/util/log.h"
#include "frontend/version.h"
#include "platform/platform.h"

namespace {

// The log directory and a numbered file name in it, with a separator between them unless the
// directory already ends in one.
std::string logFilePath(const char* directory, unsigned number) {
    std::string path = directory;
    if (!path.empty() && path.back() != '/' && path.back() != '\\') path += '/';
    char name[32];
    snprintf(name, sizeof name, "kelvra-%04u.log", number);
    return path + name;
}

bool fileExists(const std::string& path) {
    FILE* file = fopen(path.c_str(), "r");
    if (!file) return false;
    fclose(file);
    return true;
}

}  // namespace

void openProtocolLog(const String& directory) {
    if (directory.empty()) return;
    Log log;
    if (!FileSystem::mkdirs(directory.c_str())) {
        log.info("could not create logdir: %s\n", directory.c_str());
        return;
    }
    unsigned number = 0;
    while (fileExists(logFilePath(directory.c_str(), number))) number++;
    std::string path = logFilePath(directory.c_str(), number);
    log.info("redirecting output to %s, file=%s\n", platform::currentDirectory().c_str(), path.c_str());
    FILE* file = fopen(path.c_str(), "w");
    if (!file) {
        log.info("redirect failed!\n");
        return;
    }
    Log::setStream(file);
}

void openErrorLog() {
    char errorLog[64];
    snprintf(errorLog, sizeof errorLog, "kelvra-%s-error.log", ENGINE_VERSION);
    if (!freopen(errorLog, "a", stderr)) Log().warning("could not open %s\n", errorLog);
}

void logAnswer(const char* answer, const char* text) {
    Log().info("%010u:%s%s\n", platform::getTickCount(), answer, text);
}

void logBestmove(Move best, const char* bestText, Move ponder, const char* ponderText) {
    logAnswer("<--bestmove ", bestText);
    if (ponder != NO_MOVE) logAnswer("<--ponder ", ponderText);
    if (best == NO_MOVE) Log().warning("No move generated! bm=%x\n", best);
}
