#include "frontend/subsystem_hooks.h"

#include <algorithm>

void initTables() {}

void bootSearchThread() {}

void setStartPosition() {}

bool openBookFile(const char*, unsigned&) {
    return false;
}

void loadBitbases(const char*, int) {}

void resizeTt(int) {}

namespace {
int searchThreads = 1;
}

void setThreads(int count) {
    searchThreads = std::clamp(count, 1, 8);
}

int threadCount() {
    return searchThreads;
}
