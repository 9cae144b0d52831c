// The legal moves of a position, for callers that want them all at once: generate, let makeMove refuse
// what the generators leave to it, take back. The search takes its moves from the picker instead.
#pragma once

#include "board/makemove.h"
#include "board/movegen.h"

// Plays each generated move of the side to move: visit(made) runs with the move on the board (made
// carries its check bits), and the move is taken back after it; refused(move) runs for a generated move
// that makeMove refuses.
template <class Visit, class Refused>
void forEachLegalMove(Board& board, Visit visit, Refused refused) {
    MoveList list;
    Move* end = board.inCheck() ? generateEvasions(board, list) : generateMoves(board, list);
    const SavedState saved = saveState(board);
    for (Move* move = list; move != end; ++move) {
        const Move made = makeMove(board, *move);
        if (made == NO_MOVE) {
            refused(*move);
            continue;
        }
        visit(made);
        takeBack(board, made, saved);
    }
}

template <class Visit>
void forEachLegalMove(Board& board, Visit visit) {
    forEachLegalMove(board, visit, [](Move) {});
}

// The legal moves of the side to move in generator order, each with its check bits; returns the end.
inline Move* generateLegalMoves(Board& board, Move* list) {
    Move* end = list;
    forEachLegalMove(board, [&](Move made) { *end++ = made; });
    return end;
}
