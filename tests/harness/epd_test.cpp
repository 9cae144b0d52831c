// Reading EPD lines and setting up their positions and moves, including damaged input.
#include "harness/epd.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "board/notation.h"

namespace {

EpdRecord parsed(const char* line) {
    EpdRecord record;
    std::string error;
    EXPECT_EQ(parseEpdLine(line, record, error), EpdLine::POSITION) << line << ": " << error;
    return record;
}

TEST(EpdLine, ReadsFieldsCountersAndOperations) {
    // Several moves per opcode, repeated opcodes, no final semicolon, a quoted id with ';' and blanks.
    EpdRecord r = parsed("4k3/8/8/8/8/8/4P3/4K3 w - - bm e4 e3;am Kd1 Kf1; bm Kd2 ;id \"a; b c\";c1 x y");
    EXPECT_EQ(r.fen, "4k3/8/8/8/8/8/4P3/4K3 w - -");
    EXPECT_EQ(r.bestMoves, (std::vector<std::string>{"e4", "e3", "Kd2"}));
    EXPECT_EQ(r.avoidMoves, (std::vector<std::string>{"Kd1", "Kf1"}));
    EXPECT_EQ(r.id, "a; b c");
    // Counters after the position fields belong to the position; tabs and a carriage return separate.
    EXPECT_EQ(parsed("8/8/8/8/8/8/k7/K7 w - - 0 1 ;D1 3").fen, "8/8/8/8/8/8/k7/K7 w - - 0 1");
    EXPECT_EQ(parsed("8/8/8/8/8/8/k7/K7\tb - -\r").fen, "8/8/8/8/8/8/k7/K7 b - -");
}

// Sets up the line's position and reads its moves; the reason when that fails.
struct Prepared {
    bool ok;
    EpdMoves moves;
    std::string error;
    std::unique_ptr<Board> board = std::make_unique<Board>();
};

Prepared setUp(const char* line) {
    Prepared s;
    s.ok = setUpEpd(*s.board, parsed(line), s.moves, s.error);
    return s;
}

TEST(EpdSetUp, SanCoordinateAndCastlingMovesAreRead) {
    Prepared s = setUp("r3k2r/1P6/8/8/8/8/8/R3K2R w KQkq - bm O-O e1c1 b7b8n; am Rxa8+ b8=Q;");
    ASSERT_TRUE(s.ok) << s.error;
    ASSERT_EQ(s.moves.best.size(), 3u);
    ASSERT_EQ(s.moves.avoid.size(), 2u);
    EXPECT_EQ(moveTo(s.moves.best[0]), makeSquare(6, 0));
    EXPECT_EQ(moveTo(s.moves.best[1]), makeSquare(2, 0));
    EXPECT_EQ(promotionKind(s.moves.best[2]), KNIGHT);
    EXPECT_EQ(moveTo(s.moves.avoid[0]), makeSquare(0, 7));
    EXPECT_EQ(promotionKind(s.moves.avoid[1]), QUEEN);
}

TEST(EpdSetUp, UnusablePositionsAndMovesAreReported) {
    const std::pair<const char*, const char*> cases[] = {
        {"4k3/8/8/8/8/8/8/4K3 w - - bm Kd1; am Ke3;", "not a legal move in am: Ke3"},
        // Legal looking text, but not legal here: the king would walk into check.
        {"4k3/8/8/8/8/8/3r4/4K3 w - - bm Kxd2;", ""},
        {"4k3/8/8/8/8/8/3r4/4K3 w - - bm Ke2;", "not a legal move in bm: Ke2"},
        {"4k3/8/8/8/8/8/8/4K3 x - - bm Kd1;", "bad position: 4k3/8/8/8/8/8/8/4K3 x - -"},
        // White to move while Black's king is attacked: the search would capture a king.
        {"4k3/8/8/8/8/8/8/R3K2R w - - bm Ra8;", ""},
        {"4k3/8/8/8/8/8/8/4R1K1 w - - bm Kg2;", "bad position: 4k3/8/8/8/8/8/8/4R1K1 w - -"},
    };
    for (const auto& [line, error] : cases) {
        const Prepared s = setUp(line);
        EXPECT_EQ(s.ok, !*error) << line;
        EXPECT_EQ(s.error, error) << line;
    }
}

// Whole runs check best moves and moves to avoid; here the check and reduction marks a searched move
// carries must not matter.
TEST(EpdSetUp, SolutionsIgnoreTheMarksOfASearchedMove) {
    const Prepared s = setUp("4k3/8/8/8/8/8/8/R3K3 w - - bm Ra8+;");
    ASSERT_TRUE(s.ok) << s.error;
    const Move check = isMove(*s.board, "Ra1a8");
    EXPECT_TRUE(isSolution(s.moves, (check & ~MOVE_CHECKS) | MOVE_REDUCED));
    EXPECT_FALSE(isSolution(s.moves, NO_MOVE));
}

}  // namespace
