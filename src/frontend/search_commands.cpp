// The console's search commands: "g" searches the position and plays the move found, "maxdepth" and
// "maxtime" set the limits of the next search, "bench" runs the benchmark.
#include <cstdio>
#include <cstring>
#include <span>

#include "board/board.h"
#include "board/gamemove.h"
#include "board/notation.h"
#include "book/book.h"
#include "frontend/console.h"
#include "search/bench.h"
#include "search/searchthread.h"
#include "search/timecontrol.h"
#include "search/tt.h"

namespace {

// Shows the search's lines as it writes them, then plays the move it found on the game board and
// shows the result.
class ConsoleListener : public SearchListener {
  public:
    void reportText(const char* text) override {
        fputs(text, stdout);
        fflush(stdout);
    }
    void finish(const SearchReport& report) override {
        const Move best = report.best;
        if (best == NO_MOVE) {
            printf("no legal move\n");
            return;
        }
        char text[MOVE_TEXT_SIZE];
        moveToText(gameBoard, text, best);
        playGameMove(gameBoard, plainMove(best));
        printf("my move: %s\n", text);
        gameBoard.print(stdout, 0);
        fflush(stdout);
    }
    void reportLine(const SearchReport&) override {}
    void reportMove(const SearchReport&, int, Move) override {}
};

ConsoleListener consoleListener;

AfterCommand searchCommand(const char* rest) {
    // Whatever search still runs ends before the table is cleared and the next one starts.
    searchThread.stopSearch();
    if (consoleOptions.book && strcmp(rest, "nobook") != 0 && book.isOpen() &&
        consoleBookMove(gameBoard) != NO_MOVE)
        return AfterCommand::READ_NEXT;
    if (consoleOptions.cleartt && strcmp(rest, "tt") != 0)
        tt.clear();
    else
        printf("tt not cleared\n");
    // The limits "maxtime" or the last protocol search left stand.
    SearchRequest request;
    request.board = gameBoard;
    request.maxDepth = consoleOptions.maxDepth;
    request.listener = &consoleListener;
    searchThread.startSearch(request, !consoleOptions.async);
    return AfterCommand::READ_NEXT;
}

AfterCommand maxDepthCommand(const char* rest) {
    int depth = 0;
    if (sscanf(rest, "%i", &depth) == 0) {
        printf("illegal arg: %s\n", rest);
        return AfterCommand::READ_NEXT;
    }
    consoleOptions.maxDepth = depth;
    return AfterCommand::READ_NEXT;
}

AfterCommand maxTimeCommand(const char* rest) {
    unsigned seconds = 5, moves = 1, increment = 0;
    if (sscanf(rest, "%u %u %u", &seconds, &moves, &increment) == 0) {
        printf("illegal arg: %s\n", rest);
        return AfterCommand::READ_NEXT;
    }
    timeControl.setClock(static_cast<int>(moves), static_cast<int>(seconds * 1000),
                         static_cast<int>(increment * 1000));
    const int* limit = timeControl.phaseLimit;
    printf("millis=%u\n", limit[2]);
    printf("  easy=%u\n", limit[0]);
    printf("  next=%u\n", limit[1]);
    printf("  hi  =%u\n", limit[3]);
    printf("  lo  =%u\n", limit[4]);
    return AfterCommand::READ_NEXT;
}

void printBenchPosition(int index, uint64_t nodes, uint32_t ms) {
    printf("position %2i: %10llu nodes %6u ms\n", index + 1, static_cast<unsigned long long>(nodes), ms);
    fflush(stdout);
}

// "bench [depth]": the node total is the signature of the search; the last line is what scripts read.
AfterCommand benchCommand(const char* rest) {
    constexpr int DEFAULT_DEPTH = 8;
    int depth = DEFAULT_DEPTH;
    if (sscanf(rest, "%i", &depth) == 0 || depth < 1) {
        printf("illegal arg: %s\n", rest);
        return AfterCommand::READ_NEXT;
    }
    searchThread.stopSearch();
    const BenchResult result = runBench(depth, printBenchPosition);
    const unsigned long long nps = result.nodes * 1000 / (result.ms ? result.ms : 1);
    printf("depth %i, %zu positions, %u ms\n", depth, benchPositions().size(), result.ms);
    printf("%llu nodes %llu nps\n", static_cast<unsigned long long>(result.nodes), nps);
    fflush(stdout);
    return AfterCommand::READ_NEXT;
}

constexpr ConsoleCommand commands[] = {
    {{"g"}, searchCommand},
    {{"maxdepth", "md"}, maxDepthCommand},
    {{"maxtime", "mt"}, maxTimeCommand},
    {{"bench"}, benchCommand},
};

}  // namespace

std::span<const ConsoleCommand> searchCommands() {
    return commands;
}

void stopConsoleSearch() {
    if (searchThread.request().listener == &consoleListener && !searchThread.isIdle())
        searchThread.stopSearch();
}
