#include "frontend/uci.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

Uci uci;

int Uci::handleCommand(const char* command, const char*) {
    if (command[0] == 0) return uciMode;
    if (strcmp(command, "uci") == 0) {
        uciMode = 1;
        return 1;
    }
    if (strcmp(command, "quit") == 0) {
        // Ends at once, without waiting for a running search.
        fflush(stdout);
        exit(0);
    }
    return 0;
}
