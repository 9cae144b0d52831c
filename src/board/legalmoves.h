// The legal moves of a position, for callers that want them all at once: generate, let makeMove refuse
// what the generators leave to it, take back. The search takes its moves from the picker instead.
#pragma once

#include <type_traits>

#include "board/makemove.h"
#include "board/movegen.h"

// Plays each generated move of the side to move: visit(made) runs with the move on the board (made
// carries its check bits), and the move is taken back after it; refused(move) runs for a generated move
// that makeMove refuses. A visit that returns a bool ends the walk by returning false.
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
        if constexpr (std::is_same_v<decltype(visit(made)), bool>) {
            const bool goOn = visit(made);
            takeBack(board, made, saved);
            if (!goOn) return;
        } else {
            visit(made);
            takeBack(board, made, saved);
        }
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

// Whether the side to move has a legal move at all; stops at the first.
inline bool hasLegalMove(Board& board) {
    bool found = false;
    forEachLegalMove(board, [&](Move) {
        found = true;
        return false;
    });
    return found;
}
