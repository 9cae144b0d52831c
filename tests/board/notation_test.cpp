#include "board/notation.h"

#include <gtest/gtest.h>

#include "board/legalmoves.h"
#include "positions.h"

namespace {

std::string textOf(const Board& board, Move move) {
    char text[MOVE_TEXT_SIZE];
    moveToText(board, text, move);
    return text;
}

// isMove's result and what it printed.
std::pair<Move, std::string> read(Board& board, const char* text) {
    testing::internal::CaptureStdout();
    const Move move = isMove(board, text);
    fflush(stdout);
    return {move, testing::internal::GetCapturedStdout()};
}

TEST(IsMove, PromotionLetters) {
    Board board = *boardFrom("7k/1P2P3/2n5/1P6/4B3/8/8/7K w - -");
    auto promotionTo = [&](const char* text) { return promotionKind(read(board, text).first); };
    EXPECT_EQ(promotionTo("e8"), QUEEN);  // no letter means a queen
    EXPECT_EQ(promotionTo("e8n"), KNIGHT);
    EXPECT_EQ(promotionTo("e8=N"), KNIGHT);
    EXPECT_EQ(promotionTo("b7b8b"), BISHOP);
    EXPECT_EQ(promotionTo("b8=B"), BISHOP);
    // b is a file, not a bishop, in bxc6; B is the bishop.
    EXPECT_EQ(read(board, "bxc6").first, makeMoveWord(0x41, 0x52, board.at(0x52)));
    EXPECT_EQ(moveFrom(read(board, "Bxc6").first), 0x34);
    // A promotion letter only chooses among promotions: on a move that cannot promote it is passed over.
    EXPECT_EQ(read(board, "b5b6q").first, makeMoveWord(0x41, 0x51));
    EXPECT_EQ(read(board, "b6n").first, makeMoveWord(0x41, 0x51));
}

TEST(IsMove, PiecesFilesAndAmbiguity) {
    Board board = *boardFrom(START_FEN);
    for (const char* text : {"d2d4", "e7e5", "g1f3", "d7d5"})
        board.lastMove = makeMove(board, isMove(board, text));
    // The candidates come in the order of the piece lists: b1's knight was set up first.
    EXPECT_EQ(read(board, "Nd2"),
              std::make_pair(NO_MOVE, std::string("ambiguous move: Nb1d2 _and_ Nf3d2\n")));
    EXPECT_EQ(moveFrom(read(board, "Nbd2").first), 0x01);
    EXPECT_EQ(moveFrom(read(board, "N3d2").first), 0x25);
    EXPECT_EQ(moveFrom(read(board, "Nf3-d2").first), 0x25);
    const Move capture = makeMoveWord(0x33, 0x44, board.at(0x44));
    for (const char* text : {"dxe5", "de", "de5", "d4e5", "d4xe5", "Pxe5", "dxe5!?"})
        EXPECT_EQ(read(board, text).first, capture) << text;
    EXPECT_EQ(read(board, "%").first, NO_MOVE);
    EXPECT_EQ(read(board, "ke2"), std::make_pair(NO_MOVE, std::string("illegal char in move ke2: k\n")));
    EXPECT_EQ(read(board, "Kd2").first, makeMoveWord(0x04, 0x13));
    for (const char* text : {"", "N", "e", "Nd", "Qe2e3", "e4e5e6", "d5"})
        EXPECT_EQ(read(board, text).first, NO_MOVE) << text;
}

void expectTextsReadBack(Board& board, const std::string& fen) {
    MoveList list;
    for (Move *move = list, *end = generateLegalMoves(board, list); move != end; ++move)
        EXPECT_EQ(isMove(board, textOf(board, *move).c_str()), *move)
            << textOf(board, *move) << " in " << fen;
}

// The console's self-check, over whole trees: each legal move's text reads back as the same move, and
// one ply further from the opponent's side.
TEST(IsMove, ReadsBackEveryTextTheBoardWrites) {
    for (const PerftCase& c : loadPerftCases()) {
        Board board = *boardFrom(c.fen.c_str());
        expectTextsReadBack(board, c.fen);
        forEachLegalMove(board, [&](Move) { expectTextsReadBack(board, c.fen); });
    }
}

}  // namespace

// The longest text a move can have: a piece letter, a capture, a promotion and a double check.
TEST(MoveToText, TheLongestTextFits) {
    Board board = *boardFrom("5rk1/6P1/8/8/8/8/8/K5R1 w - -");
    const Move made = makeMove(board, isMove(board, "g7f8q"));
    const std::string text = textOf(board, made);
    EXPECT_EQ(text, "Qg7xf8=Q++");
    EXPECT_LT(text.size(), static_cast<size_t>(MOVE_TEXT_SIZE));
}
