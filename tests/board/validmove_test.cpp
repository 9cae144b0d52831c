// isValidMove against the generators: move words gathered from many positions are offered to every
// position of the perft trees; a word is accepted only if the generators emit it there, and every
// generated move that makeMove accepts is accepted.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <vector>

#include "board/legalmoves.h"
#include "board/notation.h"
#include "positions.h"

namespace {

std::vector<Move> generated(Board& board) {
    MoveList list;
    Move* end = board.inCheck() ? generateEvasions(board, list) : generateMoves(board, list);
    std::vector<Move> moves(list, end);
    std::sort(moves.begin(), moves.end());
    return moves;
}

// Calls visit on every position of the tree to `depth`; at the deepest level only every stride-th one.
template <typename Visit>
void walk(Board& board, int depth, int stride, int& counter, const Visit& visit) {
    if (depth > 0 || ++counter % stride == 0) visit(board);
    if (depth == 0) return;
    forEachLegalMove(board, [&](Move) { walk(board, depth - 1, stride, counter, visit); });
}

TEST(IsValidMove, AgreesWithTheGeneratorsOverThePerftTrees) {
    const std::vector<PerftCase> cases = loadPerftCases();
    const int depth = sanitized() ? 2 : 3;
    const int stride = sanitized() ? 97 : 23;

    // The pool: every move generated near the roots, plus words of other shapes for the same squares.
    std::set<Move> pool;
    for (const PerftCase& c : cases) {
        Board board = *boardFrom(c.fen.c_str());
        int counter = 0;
        walk(board, 2, 1, counter, [&](Board& b) {
            for (Move move : generated(b)) {
                pool.insert(move);
                pool.insert(move ^ MOVE_DOUBLE_PUSH);
                pool.insert(move & ~(0xFFu << 16));  // the capture dropped
            }
        });
    }
    ASSERT_GT(pool.size(), 1000u);

    int accepted = 0;
    for (const PerftCase& c : cases) {
        Board board = *boardFrom(c.fen.c_str());
        int counter = 0;
        walk(board, depth, stride, counter, [&](Board& b) {
            const std::vector<Move> moves = generated(b);
            const SavedState saved = saveState(b);
            for (Move move : pool) {
                const bool valid = isValidMove(b, move);
                const bool emitted = std::binary_search(moves.begin(), moves.end(), move);
                bool legal = false;
                if (emitted) {
                    legal = makeMove(b, move) != NO_MOVE;
                    if (legal) takeBack(b, move, saved);
                }
                accepted += valid;
                if (valid != emitted && (valid || legal)) {
                    char text[MOVE_TEXT_SIZE];
                    moveToText(b, text, move);
                    ADD_FAILURE() << text << " (" << std::hex << move << ") valid=" << valid
                                  << " emitted=" << emitted << " legal=" << legal << " in " << c.fen;
                    return;
                }
            }
        });
    }
    EXPECT_GT(accepted, 1000);
}

}  // namespace
