#include <cstdio>
#include <span>

#include "frontend/console.h"

namespace {

// The help text is fixed as users know it, so it is kept whole here rather than assembled from the
// command groups (some of its lines describe the move reader and the UCI handler, not a command).
constexpr const char* helpText[] = {
    "help",
    "--------------------------------------------------------",
    "[p]<sq>         move piece p to square sq",
    "g(o)            search",
    "reset           setup initial position",
    "fen <fen>       setup board according to <fen>",
    "m(ax)t(ime)     set max search time (seconds)",
    "m(ax)d(epth)    set max search depth",
    "m(oves)         show all legal moves",
    "",
    "book            show book contents",
    "buildbook ...   create opening book from PGN file, see readme",
    "mergebook ...   create opening book from PGN file, see readme",
    "divide [n]      count legal positions per move",
    "perft  [n]      count legal moves to depth [n]",
    "set             display/alter options",
    "",
    "uci             enter uci mode",
    "",
    "q(uit)          exit",
    "--------------------------------------------------------\n",
};

AfterCommand help(const char*) {
    for (const char* line : helpText) printf("%s\n", line);
    return AfterCommand::READ_NEXT;
}

constexpr ConsoleCommand commands[] = {
    {{"help", "h", "?"}, help},
};

}  // namespace

std::span<const ConsoleCommand> helpCommands() {
    return commands;
}
