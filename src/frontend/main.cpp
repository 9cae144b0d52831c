#include <cstdio>

#include "frontend/console.h"
#include "frontend/inifile.h"
#include "frontend/options.h"
#include "frontend/startup.h"
#include "frontend/version.h"
#include "platform/platform.h"

namespace {

void printBanner() {
    printf("\n%s-%s\n%s\n\n", ENGINE_NAME, ENGINE_VERSION, ENGINE_AUTHOR);
}

void loadIniFile(int argc, char** argv) {
    if (argc == 2) iniFileName = argv[1];
    printf("inifile=%s\n", iniFileName);
    // Without a readable file every key keeps its default.
    if (!iniFile.load(iniFileName)) printf("could not load inifile: %s\n", iniFileName);
}

}  // namespace

int main(int argc, char** argv) {
    printBanner();
    if (argc > 2) {
        printf("Usage:  kelvra [inifile]\n");
        return -1;
    }
    loadIniFile(argc, argv);
    initTables();
    if (!setOptions(iniFile)) {
        printf("Error setting options\n");
        return -2;
    }
    platform::seedRandom(platform::getTickCount());
    bootSearchThread();
    setStartPosition();
    return commandLoop();
}
