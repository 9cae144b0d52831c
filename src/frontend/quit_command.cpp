#include <span>

#include "frontend/console.h"

namespace {

// "quit" never gets here: the UCI handler takes it first and ends the process itself.
AfterCommand quit(const char*) {
    return AfterCommand::LEAVE_LOOP;
}

constexpr ConsoleCommand commands[] = {
    {{"q"}, quit},
};

}  // namespace

std::span<const ConsoleCommand> quitCommands() {
    return commands;
}
