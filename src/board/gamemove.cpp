#include "board/gamemove.h"

#include <algorithm>
#include <cstring>

void keepHistoryRoom(Board& board) {
    if (board.ply + HISTORY_ROOM < MAX_PLY_HISTORY) return;
    const uint32_t kept = std::min<uint32_t>(board.ply - board.lastIrreversible, LONGEST_REVERSIBLE_RUN);
    const uint32_t dropped = board.ply - kept;
    std::memmove(board.hashHistory, board.hashHistory + dropped, kept * sizeof board.hashHistory[0]);
    std::memmove(board.moves, board.moves + dropped, kept * sizeof board.moves[0]);
    board.ply = kept;
    board.lastIrreversible = 0;
    board.droppedPlies += dropped;
}

Move playGameMove(Board& board, Move move, SavedState* saved) {
    keepHistoryRoom(board);
    if (saved) *saved = saveState(board);
    return makeMove(board, move);
}
