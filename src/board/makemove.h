// Making and taking back moves. Every caller takes moves back with takeBack, restoring the SavedState
// it took before makeMove. makeMove records the move it returns in lastMove and takeBack restores the
// previous one, so lastMove always tells the generators whether the side to move is in check. A debug
// build runs the board's consistency check after every make and take-back.
#pragma once

#include <cassert>

#include "board/board.h"
#include "board/move.h"
#include "board/tables.h"

// The fields makeMove changes that cannot be recomputed on the way back; held by the caller.
struct SavedState {
    uint32_t epSquare;
    uint8_t castling;
    uint16_t lastIrreversible;
    uint64_t pawnHash;
    Move lastMove;
};

inline SavedState saveState(const Board& board) {
    return {board.epSquare, board.castling, board.lastIrreversible, board.pawnHash, board.lastMove};
}

// The key the position will have after a generated move, except for an en-passant square the move
// creates, the castling rook and the piece a promotion puts down: close enough for the search to fetch
// the child's table entry while it still works on the parent.
inline uint64_t keyAfter(const Board& board, Move move) {
    const int from = moveFrom(move);
    const int to = moveTo(move);
    const uint8_t slot = board.at(from);
    uint64_t key = board.hash ^ pieceKey(slot, from) ^ pieceKey(slot, to);
    if (const int captured = capturedSlot(move))
        key ^= pieceKey(captured, (move & MOVE_EN_PASSANT) ? to ^ 16 : to);
    if (board.epSquare) key ^= epKey(static_cast<int>(board.epSquare));
    return key ^ castlingKey[board.castling] ^
           castlingKey[board.castling & castleKeep[from] & castleKeep[to]];
}

// The pawn key the position will have after a generated move, except after a promotion: what the
// search needs to fetch the child's pawn-table entry early.
inline uint64_t pawnKeyAfter(const Board& board, Move move) {
    const int from = moveFrom(move);
    const int to = moveTo(move);
    const uint8_t slot = board.at(from);
    uint64_t key = board.pawnHash;
    if (isPawnSlot(slot)) key ^= pieceKey(slot, from) ^ pieceKey(slot, to);
    if (const int captured = capturedSlot(move); isPawnSlot(captured))
        key ^= pieceKey(captured, (move & MOVE_EN_PASSANT) ? to ^ 16 : to);
    return key;
}

// Plays a generated move. Returns 0 when it is illegal (the board is then unchanged), else the move
// with its check bits for the side now to move, which also becomes lastMove.
Move makeMove(Board& board, Move move);
// makeMove without the check bits (the move returned and lastMove carry none): for a position that is
// only counted and taken back, with nothing generated from it.
Move makeLeafMove(Board& board, Move move);
// Puts back the squares, lists and material of a special move (promotion, en passant, castling).
void unmakeMove(Board& board, Move move);

// Takes back a move that makeMove accepted.
inline void takeBack(Board& board, Move move, const SavedState& saved) {
    board.sideToMove ^= 1;
    board.epSquare = saved.epSquare;
    board.lastIrreversible = saved.lastIrreversible;
    board.castling = saved.castling;
    board.pawnHash = saved.pawnHash;
    board.lastMove = saved.lastMove;
    board.ply -= 1;
    board.hash = board.hashHistory[board.ply];
    if (isSpecial(move)) {
        unmakeMove(board, move);
        assert(board.check("take back"));
        return;
    }
    const int from = moveFrom(move);
    const int to = moveTo(move);
    const int captured = capturedSlot(move);
    const uint8_t slot = board.at(to);
    board.at(from) = slot;
    board.pieceSquare[slot] = static_cast<uint8_t>(from);
    board.at(to) = static_cast<uint8_t>(captured);
    if (captured) {
        board.pieceSquare[captured] = static_cast<uint8_t>(board.pieceSquare[captured] + SET_ASIDE);
        board.material[board.sideToMove ^ 1] += materialWord[captured & 63];
    }
    assert(board.check("take back"));
}

// The null move: the side to move passes (lastMove becomes 0); false (nothing done) when the history
// is full. Taken back with takeBackNullMove and the SavedState taken before.
bool makeNullMove(Board& board);
void takeBackNullMove(Board& board, const SavedState& saved);
