// Counting leaf positions; every leaf is made and taken back like any move of the search.
#include "board/perft.h"

#include <cinttypes>

#include "board/makemove.h"
#include "board/movegen.h"
#include "frontend/util/log.h"

uint64_t perft(Board& board, int depth, Move lastMove) {
    MoveList moves;
    Move* end = givesCheck(lastMove) ? generateEvasions(board, moves) : generateMoves(board, moves);
    const SavedState saved = saveState(board);
    uint64_t count = 0;
    for (Move* move = moves; move != end; ++move) {
        // The last ply's positions are only counted, so their check bits are not worked out.
        const Move made = depth > 1 ? makeMove(board, *move) : makeLeafMove(board, *move);
        if (!made) continue;
        count += depth > 1 ? perft(board, depth - 1, made) : 1;
        takeBack(board, *move, saved);
    }
    return count;
}

uint64_t perftTop(Board& board, int depth) {
    const uint64_t count = perft(board, depth, board.lastMove);
    Log().info("perft %i=%10" PRIu64 "\n", depth, count);
    return count;
}
