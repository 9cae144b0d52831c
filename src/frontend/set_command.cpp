#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>

#include "frontend/console.h"
#include "search/parallel.h"

namespace {

void showOptions() {
    printf("async  =%i\n", consoleOptions.async);
    printf("book   =%i\n", consoleOptions.book);
    printf("cleartt=%i\n", consoleOptions.cleartt);
    printf("threads=%i\n", threadCount());
}

// "set" alone, or with anything but two words, shows the options; "set name value" changes one.
// A flag is on only when its value starts with "1" ("true" turns it off).
AfterCommand set(const char* rest) {
    char name[9], value[9];
    if (sscanf(rest, "%8s %8s", name, value) != 2) {
        showOptions();
        return AfterCommand::READ_NEXT;
    }
    uint8_t on = value[0] == '1';
    if (strcmp(name, "async") == 0)
        consoleOptions.async = on;
    else if (strcmp(name, "book") == 0)
        consoleOptions.book = on;
    else if (strcmp(name, "cleartt") == 0)
        consoleOptions.cleartt = on;
    else if (strcmp(name, "threads") == 0)
        setThreads(atoi(value));
    else
        printf("set: unknown parameter: %s\n", name);
    return AfterCommand::READ_NEXT;
}

constexpr ConsoleCommand commands[] = {
    {{"set"}, set},
};

}  // namespace

std::span<const ConsoleCommand> optionCommands() {
    return commands;
}
