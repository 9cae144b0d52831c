#include "frontend/console.h"

#include <cstdio>
#include <cstring>

#include "frontend/console_commands.h"
#include "frontend/uci.h"
#include "frontend/util/string.h"
#include "frontend/util/textfile.h"

ConsoleOptions consoleOptions;

namespace {

// The command word runs up to the first blank or tab. After a blank the rest starts at the next
// non-blank; after a tab it starts at the tab itself (kept that way: handlers that scan numbers or
// words skip it anyway).
String splitLine(const char* line, const char*& rest) {
    while (*line == ' ') line++;
    size_t end = strcspn(line, " \t");
    rest = line + end;
    if (*rest == ' ')
        while (*rest == ' ') rest++;
    return String(line, end);
}

}  // namespace

int commandLoop() {
    Textfile input(stdin);
    for (;;) {
        if (!uci.uciMode) printf("%% ");
        fflush(stdout);
        const char* line = input.readline();
        if (!line) {
            stopConsoleSearch();
            return 0;
        }
        const char* rest;
        String command = splitLine(line, rest);
        if (uci.handleCommand(command.c_str(), rest) || command.empty()) continue;
        stopConsoleSearch();
        if (const ConsoleCommand* found = findConsoleCommand(command.c_str())) {
            if (found->run(rest) == AfterCommand::LEAVE_LOOP) return 0;
        } else {
            readUncommandedLine(command.c_str(), rest);
        }
    }
}
