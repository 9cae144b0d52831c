// The position commands: set up a position, list its legal moves, count positions with perft and
// divide. They work on the game board.
#include "frontend/position_commands.h"

#include <cinttypes>
#include <cstdio>
#include <span>

#include "board/board.h"
#include "board/legalmoves.h"
#include "board/notation.h"
#include "board/perft.h"
#include "frontend/console.h"
#include "frontend/options.h"
#include "platform/platform.h"

namespace {

AfterCommand fen(const char* rest) {
    setGameBoardFromFen(rest);
    gameBoard.print(stdout, 0);
    return AfterCommand::READ_NEXT;
}

AfterCommand reset(const char*) {
    gameBoard.setFen(START_FEN);
    gameBoard.print(stdout, 0);
    return AfterCommand::READ_NEXT;
}

// Lists the legal moves; a move that the move reader cannot read back from its own text is flagged,
// as a self-check of generator and reader.
AfterCommand moves(const char*) {
    Board& board = gameBoard;
    MoveList list;
    const int count = static_cast<int>(generateLegalMoves(board, list) - list);
    printf("#moves = %i\n", count);
    for (int i = 0; i < count; ++i) {
        char text[MOVE_TEXT_SIZE];
        moveToText(board, text, list[i]);
        printf("%s ", text);
        if (!isMove(board, text)) printf("\n--!isMove()?!\n");
    }
    printf("\n");
    return AfterCommand::READ_NEXT;
}

// " %i" with a default for an empty rest; false (after the message) for a rest that is no number.
bool readDepth(const char* rest, int& depth, bool complain) {
    const int fields = sscanf(rest, " %i", &depth);
    if (fields == 0 && complain) {
        printf("illegal arg: %s\n", rest);
        return false;
    }
    return true;
}

AfterCommand perftCommand(const char* rest) {
    int depth = 2;
    if (!readDepth(rest, depth, true)) return AfterCommand::READ_NEXT;
    printf("perft %i\n", depth);
    for (int d = 1; d <= depth; ++d) {
        const uint32_t start = platform::getTickCount();
        const uint64_t count = perftTop(gameBoard, d);
        const double seconds = static_cast<double>(platform::getTickCount() - start) / 1000.0;
        const double perMs = static_cast<double>(count) / seconds / 1000.0;
        // No positions (a mate or stalemate at the root) give no ticks per position.
        const int ticks =
            count ? static_cast<int>(machineMhz * seconds * 1000000.0 / static_cast<double>(count)) : 0;
        printf("%-20s  %10" PRIu64 " ops in %5.3f seconds  ops/ms=%7.0f,  ticks/op=%5i\n", "", count, seconds,
               perMs, ticks);
    }
    return AfterCommand::READ_NEXT;
}

// Prints each legal move with its perft count to depth - 1, and the total.
void divide(Board& board, int depth) {
    printf("----divide---\n");
    uint64_t total = 0;
    forEachLegalMove(board, [&](Move made) {
        const uint64_t count = depth > 1 ? perft(board, depth - 1, made) : 1;
        char text[MOVE_TEXT_SIZE];
        moveToText(board, text, made);
        printf("%-8s %10" PRIu64 "\n", text, count);
        total += count;
    });
    printf("-------------------\n");
    printf("total    %10" PRIu64 "\n", total);
}

AfterCommand divideCommand(const char* rest) {
    int depth = 1;
    readDepth(rest, depth, false);
    divide(gameBoard, depth);
    return AfterCommand::READ_NEXT;
}

constexpr ConsoleCommand commands[] = {
    {{"divide"}, divideCommand}, {{"fen"}, fen},     {{"moves", "m"}, moves},
    {{"perft"}, perftCommand},   {{"reset"}, reset},
};

}  // namespace

std::span<const ConsoleCommand> positionCommands() {
    return commands;
}

void setGameBoardFromFen(const char* text) {
    // A FEN that cannot be read leaves the position as it was: the half-set record is unusable.
    const Board before = gameBoard;
    if (gameBoard.setFen(text)) return;
    printf("setfen failed\n");
    gameBoard = before;
}
