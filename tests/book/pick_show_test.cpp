// Choosing book moves: the share of each move.
#include <gtest/gtest.h>

#include <memory>

#include "board/board.h"
#include "board/notation.h"
#include "book/book.h"
#include "platform/platform.h"
#include "scratch.h"

namespace {

constexpr uint8_t E2 = 0x14, E4 = 0x34, D2 = 0x13, D4 = 0x33;

class BookMoves : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(board->setFen(START_FEN)); }

    // Opens a book of the start position's moves (after a first record, which no probe finds).
    void openBook(Book& target, std::vector<BookEntry> moves) {
        for (BookEntry& move : moves) move.key = bookKey(*board);
        moves.insert(moves.begin(), BookEntry{0, 0, 0, 0, 1, 0});
        ASSERT_TRUE(target.open(saveBook(dir.file("moves.bbk"), moves).c_str()));
    }

    ScratchDir dir;
    std::unique_ptr<Board> board = std::make_unique<Board>();
};

TEST_F(BookMoves, PickChoosesMovesInProportionToTheirGames) {
    Book book;
    openBook(book, {{0, E2, E4, 100, 200, 100}, {0, D2, D4, 0, 0, 600}});
    platform::seedRandom(20260101);
    const Move e4 = isMove(*board, "e2e4");
    const Move d4 = isMove(*board, "d2d4");
    int e4Picks = 0;
    const int picks = 20000;
    for (int i = 0; i < picks; i++) {
        const Move move = book.pick(*board);
        ASSERT_TRUE(move == e4 || move == d4) << move;
        e4Picks += move == e4;
    }
    EXPECT_NEAR(e4Picks / double(picks), 0.4, 0.02) << "a loss counts as much as a win";

    board->sideToMove = BLACK;
    EXPECT_EQ(book.pick(*board), NO_MOVE);
}

}  // namespace
