#include "search/picker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "board/legalmoves.h"
#include "board/see.h"
#include "boards.h"
#include "environment.h"

namespace {

struct Batch {
    int stage;
    std::vector<Move> moves;  // empty slots included
};

std::vector<Batch> drain(Picker& picker) {
    std::vector<Batch> batches;
    while (Move* batch = picker.next())
        batches.push_back({picker.stage, std::vector<Move>(batch, picker.end)});
    return batches;
}

std::vector<Move> allMoves(const std::vector<Batch>& batches) {
    std::vector<Move> moves;
    for (const Batch& b : batches)
        for (Move m : b.moves)
            if (m != NO_MOVE) moves.push_back(plainMove(m));
    return moves;
}

const Batch* findStage(const std::vector<Batch>& batches, int stage) {
    for (const Batch& b : batches)
        if (b.stage == stage) return &b;
    return nullptr;
}

std::vector<Move> sorted(std::vector<Move> moves) {
    std::sort(moves.begin(), moves.end());
    return moves;
}

bool contains(const std::vector<Move>& moves, Move move) {
    return std::find(moves.begin(), moves.end(), move) != moves.end();
}

// Checks every node of a small tree under a position: the picker hands out each move of the full
// generator exactly once, in batches whose kinds and order hold what the stages promise.
class TreeWalk {
  public:
    int nodes = 0;
    int killersTried = 0;

    void walk(Board& board, int depth) {
        checkNode(board);
        if (depth == 0) return;
        forEachLegalMove(board, [&](Move) { walk(board, depth - 1); });
    }

  private:
    // Killers come from the previous node: sometimes playable here, often not.
    Move killers[2] = {NO_MOVE, NO_MOVE};

    void checkNode(Board& board) {
        nodes++;
        MoveList list;
        const bool inCheck = board.inCheck();
        Move* end = inCheck ? generateEvasions(board, list) : generateMoves(board, list);
        std::vector<Move> expected(list, end);
        for (Move& m : expected) m = plainMove(m);

        if (inCheck) {
            Picker picker = Picker::evasions(board);
            EXPECT_EQ(picker.evasionCount(), int(expected.size())) << fenOf(board);
            const std::vector<Batch> batches = drain(picker);
            ASSERT_LE(batches.size(), 1u) << fenOf(board);
            if (!batches.empty()) {
                EXPECT_EQ(batches[0].stage, PICK_EVASIONS);
            }
            EXPECT_EQ(sorted(allMoves(batches)), sorted(expected)) << fenOf(board);
            return;
        }

        Picker picker = Picker::interior(board, killers[0], killers[1]);
        const std::vector<Batch> batches = drain(picker);
        EXPECT_EQ(sorted(allMoves(batches)), sorted(expected)) << fenOf(board);
        EXPECT_EQ(picker.next(), nullptr);  // stays exhausted
        int previous = PICK_START;
        const int side = static_cast<int>(board.sideToMove);
        for (const Batch& b : batches) {
            EXPECT_GT(b.stage, previous) << fenOf(board);
            previous = b.stage;
            int lastSee = 1000;
            for (Move m : b.moves) {
                if (m == NO_MOVE) continue;
                const int kind = promotionKind(m);
                switch (b.stage) {
                    case PICK_GOOD_CAPTURES: {
                        const int value = see(board, side, m);
                        EXPECT_TRUE(kind != 0 || isCapture(m)) << fenOf(board);
                        EXPECT_GE(value, 0) << fenOf(board);
                        EXPECT_LE(value, lastSee) << fenOf(board);  // best exchange first
                        lastSee = value;
                        break;
                    }
                    case PICK_KILLER_1:
                    case PICK_KILLER_2:
                        EXPECT_TRUE(m == killers[0] || m == killers[1]) << fenOf(board);
                        killersTried++;
                        break;
                    case PICK_QUIET:
                        EXPECT_TRUE(!isCapture(m) && kind == 0) << fenOf(board);
                        break;
                    case PICK_LOSING_CAPTURES:
                        EXPECT_TRUE(kind != 0 || isCapture(m)) << fenOf(board);
                        EXPECT_LT(see(board, side, m), 0) << fenOf(board);
                        break;
                    default:
                        ADD_FAILURE() << "stage " << b.stage << " at an interior node " << fenOf(board);
                }
            }
        }
        if (const Batch* q = findStage(batches, PICK_QUIET)) {
            killers[1] = killers[0];
            for (Move m : q->moves)
                if (m != NO_MOVE) killers[0] = m;
        }

        // Quiescence with checks: nothing twice, and nothing the position does not have.
        Picker quiescence = Picker::quiescence(board, NO_MOVE, 0, true);
        const std::vector<Move> picked = allMoves(drain(quiescence));
        std::vector<Move> unique = sorted(picked);
        EXPECT_EQ(std::adjacent_find(unique.begin(), unique.end()), unique.end()) << fenOf(board);
        for (Move m : picked) {
            if (!exposesKing(board, board.kingSquare(side), moveFrom(m), moveTo(m))) {
                EXPECT_TRUE(contains(expected, m)) << fenOf(board);
            }
        }
    }
};

TEST(PickerTest, EveryMoveExactlyOnceOverThePerftPositions) {
    const int depth = sanitized() ? 2 : 3;
    TreeWalk walk;
    for (const std::string& fen : fensOf(testData("perft.epd"))) {
        auto board = boardFrom(fen);
        walk.walk(*board, depth);
    }
    EXPECT_GT(walk.nodes, 5000);
    EXPECT_GT(walk.killersTried, 100);
}

}  // namespace
