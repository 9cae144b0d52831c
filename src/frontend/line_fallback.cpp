#include <cstdio>

#include "frontend/console_commands.h"

void readUncommandedLine(const char* command, const char*) {
    printf("no such command: %s\n", command);
}
