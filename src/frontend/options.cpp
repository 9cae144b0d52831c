#include "frontend/options.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "book/book.h"
#include "eval/egbb.h"
#include "frontend/uci.h"
#include "platform/platform.h"
#include "search/parallel.h"
#include "search/tt.h"

unsigned machineMhz = 0;

namespace {

// Numbers follow atoi: leading digits count, anything else is 0, an absent key is empty and so 0.
// Values beyond the range of int stop at its limits instead of wrapping.
int number(const String& value) {
    long parsed = strtol(value.c_str(), nullptr, 10);
    return static_cast<int>(std::clamp<long>(parsed, INT_MIN, INT_MAX));
}

void sizeTt(const IniFile& ini) {
    // Without the key the table keeps the size it was allocated with at start-up.
    String megabytes = ini.get("tt.cachemb");
    if (!megabytes.empty())
        tt.alloc(
            static_cast<int>(std::clamp(number(megabytes) * 1024LL, 0LL, static_cast<long long>(INT_MAX))));
}

// The request is capped by the processors present; 0 asks for one thread per processor.
void startSearchThreads(const IniFile& ini) {
    int requested = number(ini.get("search.nthreads"));
    int cpus = static_cast<int>(platform::processorCount());
    if (cpus == 0) cpus = 1;
    int count;
    if (cpus < requested) {
        printf("!--only %i cpu's present, using %i searchthreads\n", cpus, cpus);
        count = cpus;
    } else {
        count = requested != 0 ? requested : cpus;
    }
    if (count > 1) printf("!--using parallel search with %i threads!\n", count);
    setThreads(count);
}

}  // namespace

void openBookFile(const String& path) {
    if (path.empty()) {
        book.close();
        return;
    }
    if (book.open(path.c_str()))
        printf("book found: %s, %u positions\n", path.c_str(), book.records());
    else
        printf("could not read book file: %s\n", path.c_str());
}

void openBitbases(const String& directory, const String& cacheMb) {
    if (directory.empty()) {
        egbb.turnOff();
        return;
    }
    if (egbb.load(directory.c_str())) egbb.init(cacheMb.empty() ? 16 : number(cacheMb));
}

bool setOptions(const IniFile& ini) {
    openBookFile(ini.get("book.file"));
    uci.trace = number(ini.get("uci.trace")) > 0;
    uci.logDir = ini.get("uci.logdir");
    openBitbases(ini.get("egbb.dir"), ini.get("egbb.cachemb"));
    sizeTt(ini);
    machineMhz = static_cast<unsigned>(number(ini.get("machine.mhz")));
    startSearchThreads(ini);
    return true;
}
