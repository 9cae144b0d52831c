#include "board/makemove.h"

#include <gtest/gtest.h>

#include <vector>

#include "board/gamemove.h"
#include "board/movegen.h"
#include "board/notation.h"
#include "board/tables.h"
#include "positions.h"

namespace {

// Plays moves given as text; each must be legal.
void play(Board& board, std::initializer_list<const char*> moves) {
    for (const char* text : moves) {
        const Move move = isMove(board, text);
        ASSERT_NE(move, NO_MOVE) << text;
        board.lastMove = makeMove(board, move);
        ASSERT_NE(board.lastMove, NO_MOVE) << text;
    }
}

TEST(MakeMove, EnPassantSquareOnlyWithACapturerBeside) {
    Board board = *boardFrom("4k3/8/8/8/8/8/4P3/4K3 w - -");
    play(board, {"e2e4"});
    EXPECT_EQ(board.epSquare, 0u);
    EXPECT_EQ(board.hash, boardFrom("4k3/8/8/8/4P3/8/8/4K3 b - -")->hash);

    board = *boardFrom("4k3/8/8/8/3p4/8/4P3/4K3 w - -");
    play(board, {"e2e4"});
    EXPECT_EQ(board.epSquare, 0x24u);
    EXPECT_EQ(board.hash, boardFrom("4k3/8/8/8/3pP3/8/8/4K3 b - e3")->hash);
    play(board, {"dxe3"});
    EXPECT_EQ(board.hash, boardFrom("4k3/8/8/8/8/4p3/8/4K3 w - -")->hash);
    EXPECT_EQ(pawnCount(board.material[WHITE]), 0);
    EXPECT_EQ(board.ply - board.lastIrreversible, 0u);
}

TEST(MakeMove, PromotionsAndHistoryStayWithinTheirTables) {
    // With every queen slot taken (eight queens promoted and captured earlier in the line) another queen
    // is refused; a knight is still possible.
    Board board = *boardFrom("4k3/1P6/8/8/8/8/8/Q3K3 w - -");
    for (int slot = WHITE_BASE + QUEEN_SLOT + 1; slot < WHITE_BASE + QUEEN_END; ++slot)
        board.pieceSquare[slot] = static_cast<uint8_t>(0x10 + SET_ASIDE);
    EXPECT_EQ(makeMove(board, makeMoveWord(0x61, 0x71, 0, promotionFlag(QUEEN))), NO_MOVE);
    EXPECT_EQ(board.ply, 0u);
    const SavedState saved = saveState(board);
    const Move knight = makeMoveWord(0x61, 0x71, 0, promotionFlag(KNIGHT));
    ASSERT_NE(makeMove(board, knight), NO_MOVE);
    EXPECT_EQ(board.promotionCount, 1u);
    takeBack(board, knight, saved);
    EXPECT_EQ(fenOf(board), "4k3/1P6/8/8/8/8/8/Q3K3 w - - 0 0");

    // A full promotion stack refuses further promotions.
    board.promotionCount = PROMOTION_STACK_SIZE;
    EXPECT_EQ(makeMove(board, knight), NO_MOVE);

    // The history ends at its bound.
    board = *boardFrom("4k3/8/8/8/8/8/8/4K3 w - -");
    board.ply = MAX_PLY_HISTORY - 1;
    board.lastIrreversible = static_cast<uint16_t>(board.ply);
    ASSERT_NE(makeMove(board, makeMoveWord(0x04, 0x14)), NO_MOVE);
    EXPECT_EQ(makeMove(board, makeMoveWord(0x74, 0x64)), NO_MOVE);
    EXPECT_FALSE(makeNullMove(board));
    EXPECT_EQ(board.ply, static_cast<uint32_t>(MAX_PLY_HISTORY));
}

// A game far longer than the history drops the plies before its last pawn move: the position, the side
// to move, the fifty-move and ply counts and the repetitions since stay, and the moves since can still
// be taken back. A run without pawn moves longer than the history keeps counting as a fifty-move draw.
TEST(MakeMove, GameMovesKeepRoomInTheHistory) {
    Board board = *boardFrom("4k1n1/4p3/8/8/8/8/4P3/1N2K3 w - -");
    std::vector<std::pair<Move, SavedState>> played;
    auto playGame = [&](const char* text) {
        SavedState saved;
        const uint32_t dropped = board.droppedPlies;
        const Move move = playGameMove(board, isMove(board, text), &saved);
        ASSERT_NE(move, NO_MOVE) << text << " at ply " << board.gamePly();
        // The moves played before the drop and still held followed the last pawn move.
        if (board.droppedPlies != dropped)
            for (auto& entry : played) entry.second.lastIrreversible = 0;
        played.emplace_back(move, saved);
        ASSERT_LE(static_cast<int>(board.ply) + HISTORY_ROOM, MAX_PLY_HISTORY);
    };
    auto shuffle = [&](int cycles) {
        for (int i = 0; i < cycles; ++i)
            for (const char* text : {"b1c3", "g8f6", "c3b1", "f6g8"}) playGame(text);
    };
    shuffle(190);
    playGame("e2e3");
    playGame("e7e6");
    played.clear();
    shuffle(10);
    playGame("b1c3");
    EXPECT_EQ(fenOf(board), "4k1n1/8/4p3/8/8/2N1P3/8/4K3 b - - 41 803");
    EXPECT_EQ(board.hashHistory[board.ply - 4], board.hash);
    while (!played.empty()) {
        takeBack(board, played.back().first, played.back().second);
        played.pop_back();
    }
    EXPECT_EQ(fenOf(board), "4k1n1/8/4p3/8/8/4P3/8/1N2K3 w - - 0 762");
    EXPECT_EQ(board.hash, boardFrom("4k1n1/8/4p3/8/8/4P3/8/1N2K3 w - -")->hash);

    board = *boardFrom("4k1n1/4p3/8/8/8/8/4P3/1N2K3 b - -");
    for (int i = 0; i < 300; ++i)
        for (const char* text : {"g8f6", "b1c3", "f6g8", "c3b1"}) playGame(text);
    EXPECT_GE(board.ply - board.lastIrreversible, static_cast<uint32_t>(LONGEST_REVERSIBLE_RUN));
    EXPECT_EQ(board.gamePly(), 1200u);
}

TEST(MakeMove, CompactingTheListsKeepsThePosition) {
    Board board = *boardFrom(START_FEN);
    play(board, {"e4", "d5", "exd5", "Qxd5", "Nc3", "Qxa2", "Rxa2"});
    const std::string fen = fenOf(board);
    const uint64_t hash = board.hash;
    board.compactPieceLists();
    EXPECT_TRUE(board.check("compacted"));
    EXPECT_EQ(fenOf(board), fen);
    EXPECT_EQ(board.hash, hash);
    EXPECT_EQ(board.pieceSquare[BLACK_BASE + QUEEN_SLOT], NO_SQUARE);  // the captured queen's entry is gone
    EXPECT_EQ(board.pieceSquare[WHITE_BASE + PAWN_SLOT + 7], NO_SQUARE);
}

}  // namespace
