// Helpers shared by the evaluation tests: the colour-flipped twin of a position (from the board's
// flipFen) and evaluation with the shared cache on or off.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "board/board.h"
#include "board/flipfen.h"
#include "boards.h"
#include "environment.h"
#include "eval/evaluate.h"

namespace evaltest {

// One context per test: each holds a 2 MiB pawn table.
struct Evaluator {
    std::unique_ptr<EvalContext> context = std::make_unique<EvalContext>();

    int operator()(Board& board, bool cache = false) {
        context->useCache = cache;
        return evaluate(*context, board);
    }
    int operator()(const std::string& fen, bool cache = false) { return (*this)(*boardFrom(fen), cache); }
};

}  // namespace evaltest
