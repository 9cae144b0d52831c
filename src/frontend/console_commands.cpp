#include "frontend/console_commands.h"

#include <cstring>

// The command groups, each defined in its own file.
std::span<const ConsoleCommand> optionCommands();    // set_command.cpp
std::span<const ConsoleCommand> quitCommands();      // quit_command.cpp
std::span<const ConsoleCommand> helpCommands();      // help_command.cpp
std::span<const ConsoleCommand> bookCommands();      // book_commands.cpp
std::span<const ConsoleCommand> harnessCommands();   // harness_commands.cpp
std::span<const ConsoleCommand> evalCommands();      // eval_command.cpp
std::span<const ConsoleCommand> positionCommands();  // position_commands.cpp
std::span<const ConsoleCommand> searchCommands();    // search_commands.cpp

namespace {

using CommandGroup = std::span<const ConsoleCommand> (*)();

// Searched in this order, the first matching word wins; a new group adds its line here.
constexpr CommandGroup groups[] = {
    optionCommands, quitCommands,     helpCommands,   bookCommands,
    evalCommands,   positionCommands, searchCommands, harnessCommands,
};

}  // namespace

const ConsoleCommand* findConsoleCommand(const char* word) {
    for (CommandGroup group : groups)
        for (const ConsoleCommand& command : group())
            for (const char* name : command.words)
                if (name && strcmp(name, word) == 0) return &command;
    return nullptr;
}
