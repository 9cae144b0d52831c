#include <gtest/gtest.h>

#include "board/board.h"
#include "board/makemove.h"
#include "board/movegen.h"
#include "board/tables.h"
#include "positions.h"

namespace {

// setFen's result and what it printed.
struct FenResult {
    bool ok;
    std::string printed;
};

FenResult setFenPrinting(Board& board, const char* fen) {
    testing::internal::CaptureStdout();
    const bool ok = board.setFen(fen);
    fflush(stdout);
    return {ok, testing::internal::GetCapturedStdout()};
}

TEST(SetFen, FatalFaultsPrintTheirLineAndFail) {
    Board board;
    const std::pair<const char*, const char*> cases[] = {
        {"4k3/8/8/8/8/8/8/4K3/8 w", "Illegal FEN: too many rows\n"},
        {"4k3/8/8/8/8/8/8/4K3/ w", ""},  // the ninth row is never read: nothing on it
        {"4k3/8/8/8/0/8/8/4K3 w", "invalid char in fen: 0\n"},
        {"4k3/8/8/8/8/8/8/4K3 x", "fen: invalid stm: x\n"},
        {"R3k2R/8/8/8/8/8/8/4K3 b", "Illegal FEN: double slider attack not possible\n"},
        {"4k3/8/3N4/8/8/8/8/4R1K1 b", ""},  // knight and rook: a double check that can happen
        {"4k3/2N5/3N4/8/8/8/8/4R1K1 b", "Illegal FEN: triple check?!\n"},
        // Guards: positions the board cannot hold or the generators cannot handle.
        {"4k3/8/8/8/8/8/8/4K3R w", "Illegal FEN: row too long\n"},
        {"4k3/8/8/8/8/8/PPPPPPPP/P3K3 w", "Illegal FEN: too many pieces: P\n"},
        {"4k3/8/8/8/8/8/PPPPPPPP/QQ2K3 w", "Illegal FEN: more pieces than promotions allow\n"},
        {"4k3/8/8/8/8/8/PPPPPPP1/QQ2K3 w", ""},
        {"8/8/8/8/8/8/8/4K3 w", "Illegal FEN: a king is missing\n"},
        {"4k2R/8/8/8/8/8/8/4K3 w", "Illegal FEN: the side not to move is in check\n"},
        {"4k3/8/8/8/8/8/8/4K3 w", ""},
    };
    for (const auto& [fen, printed] : cases) {
        const FenResult result = setFenPrinting(board, fen);
        EXPECT_EQ(result.printed, printed) << fen;
        EXPECT_EQ(result.ok, std::string(printed).empty()) << fen;
    }
}

TEST(SetFen, TenKnightsFillTheirRange) {
    Board board = *boardFrom("4k3/8/8/8/8/NN6/NNNNNNNN/4K3 w");
    EXPECT_EQ(knightCount(board.material[WHITE]), 10);
    EXPECT_EQ(board.at(0x17), WHITE_BASE + KNIGHT_SLOT + 9);
    EXPECT_EQ(board.pieceSquare[WHITE_BASE + KNIGHT_END], NO_SQUARE);
    EXPECT_TRUE(board.check("knights"));
}

TEST(SetFen, PseudoLastMoveExplainsTheCheck) {
    Board board;
    // Knight d6 and rook e1 both check the king on e8.
    board = *boardFrom("4k3/8/3N4/8/8/8/8/4R1K1 b");
    EXPECT_EQ(board.lastMove, makeMoveWord(0x14, 0x53, 0, MOVE_CHECKS));
    MoveList list;
    for (Move *move = list, *end = generateEvasions(board, list); move != end; ++move)
        EXPECT_EQ(moveFrom(*move), 0x74);  // only the king may move
    // One checker: the checker itself as from- and to-square.
    board = *boardFrom("4k3/8/8/8/8/8/8/4R1K1 b");
    EXPECT_EQ(board.lastMove, makeMoveWord(0x04, 0x04, 0, MOVE_CHECK));
    // The pawn that just moved gives the check.
    board = *boardFrom("8/8/8/4k3/3P4/8/8/4K3 b - d3");
    EXPECT_EQ(board.lastMove, makeMoveWord(0x13, 0x33, 0, MOVE_DOUBLE_PUSH | MOVE_CHECK));
    board = *boardFrom("4k3/8/8/8/8/8/8/4K3 w");
    EXPECT_EQ(board.lastMove, NO_MOVE);
}

}  // namespace
