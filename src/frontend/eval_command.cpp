// "eval": the static evaluation of the current position with all its terms, for debugging the
// evaluation. The last line, "total <score>", is what evaluate returns for the side to move, so that
// scripts can read it.
#include <cstdio>
#include <memory>
#include <span>

#include "board/board.h"
#include "eval/evaluate.h"
#include "frontend/console.h"

namespace {

AfterCommand evalCommand(const char*) {
    // A context of its own: the console must not disturb the pawn tables of the search threads.
    auto context = std::make_unique<EvalContext>();
    EvalBreakdown parts;
    explainEvaluation(*context, gameBoard, parts);
    const int total = evaluate(*context, gameBoard);

    printf("                 white   black\n");
    printf("king           %7i %7i\n", parts.king[WHITE], parts.king[BLACK]);
    printf("threats        %7i %7i\n", parts.pieces[WHITE].threats, parts.pieces[BLACK].threats);
    printf("penalties      %7i %7i\n", parts.pieces[WHITE].penalties, parts.pieces[BLACK].penalties);
    printf("position       %7i %7i\n", parts.pieces[WHITE].position, parts.pieces[BLACK].position);
    printf("pieces         %7i %7i\n",
           parts.pieces[WHITE].threats + parts.pieces[WHITE].penalties + parts.pieces[WHITE].position,
           parts.pieces[BLACK].threats + parts.pieces[BLACK].penalties + parts.pieces[BLACK].position);
    printf("White's view:\n");
    printf("material       %7i\n", parts.material);
    printf("imbalance      %7i\n", parts.imbalance);
    printf("pawns          %7i\n", parts.pawns);
    printf("before draws   %7i\n", parts.beforeDraws);
    printf("with pieces    %7i\n", parts.beforeEnding);
    if (*parts.rule) printf("rule           %s\n", parts.rule);
    printf("side to move   %s\n", gameBoard.sideToMove == WHITE ? "white" : "black");
    printf("total %i\n", total);
    return AfterCommand::READ_NEXT;
}

constexpr ConsoleCommand commands[] = {
    {{"eval", nullptr, nullptr}, evalCommand},
};

}  // namespace

std::span<const ConsoleCommand> evalCommands() {
    return commands;
}
