// The book step of "go" through the real binary: book moves until the first search out of book, then
// searches until a new game.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "boards.h"
#include "book/scratch.h"
#include "uci_session.h"

namespace {

constexpr uint8_t square(char file, char rank) {
    return uint8_t((rank - '1') * 16 + (file - 'a'));
}

// A book with one move for the start position (e2e4) and one after 1.e4 e5 2.Nf3 Nc6 (f1b5); the
// first record holds no real position, since a probe never finds the records that begin the file.
std::string writeBook(const std::string& directory) {
    std::vector<BookEntry> entries = {
        {0, 0, 0, 0, 1, 0},
        {bookKey(*boardFrom(START_FEN)), square('e', '2'), square('e', '4'), 10, 5, 2},
        {bookKey(*boardAfter(START_FEN, "e2e4 e7e5 g1f3 b8c6")), square('f', '1'), square('b', '5'), 7, 7, 3},
    };
    std::sort(entries.begin(), entries.end(),
              [](const BookEntry& a, const BookEntry& b) { return a.key < b.key; });
    return saveBook(directory + "/test.bbk", entries);
}

bool searched(const std::string& answer) {
    return answer.find("info depth") < answer.find("bestmove ");
}

TEST(UciBook, ConsultedUntilTheFirstSearchOutOfBookAndAgainInANewGame) {
    std::string directory = scratchDirectory("uci_book_file");
    UciSession session("uci_book", "book.file=" + writeBook(directory) + "\n");
    const std::string ruyLopez = "position startpos moves e2e4 e7e5 g1f3 b8c6\n";

    std::string out = session.exchange("position startpos\ngo depth 2\n", "bestmove ");
    EXPECT_EQ(out, "bestmove e2e4\n");
    out = session.exchange("position startpos moves e2e4 e7e5\ngo depth 2\n", "bestmove ");
    EXPECT_TRUE(searched(out)) << out;
    session.settle("");  // the answer can overtake the flush of the log after "go"
    EXPECT_NE(session.logText().find("Uci:First search out of book is at 3 ply\n"), std::string::npos);

    // The game goes on through the position where it left the book: no book any more.
    out = session.exchange(ruyLopez + "go depth 2\n", "bestmove ");
    EXPECT_TRUE(searched(out)) << out;

    // Pondering never answers early, not even from the book.
    out = session.settle("ucinewgame\n" + ruyLopez + "go ponder\n");
    EXPECT_EQ(out.find("bestmove"), std::string::npos) << out;
    out = session.exchange("stop\n", "bestmove ");
    EXPECT_EQ(countOf(out, "bestmove "), 1u) << out;

    out = session.exchange(ruyLopez + "go depth 2\n", "bestmove ");
    EXPECT_EQ(out, "bestmove f1b5\n");

    // A new game without "ucinewgame": its moves never pass the position that left the book.
    out = session.exchange("position startpos moves d2d4\ngo depth 1\n", "bestmove ");
    EXPECT_TRUE(searched(out)) << out;
    out = session.exchange(ruyLopez + "go depth 2\n", "bestmove ");
    EXPECT_EQ(out, "bestmove f1b5\n");

    out = session.exchange("setoption name OwnBook value false\nucinewgame\nposition startpos\ngo depth 1\n",
                           "bestmove ");
    EXPECT_TRUE(searched(out)) << out;
}

// The book file set by the GUI is opened at once with the start-up message, and an empty one closes
// the book; a search among chosen moves never asks the book.
TEST(UciBook, BookFileOptionOpensTheBookAtOnce) {
    const std::string path = writeBook(scratchDirectory("uci_book_option_file"));
    UciSession session("uci_book_option");
    std::string out = session.settle("setoption name BookFile value " + path + "\n");
    EXPECT_NE(out.find("book found: " + path + ", 3 positions\n"), std::string::npos) << out;
    out = session.exchange("position startpos\ngo searchmoves d2d4 depth 2\n", "bestmove ");
    EXPECT_TRUE(searched(out)) << out;
    EXPECT_NE(out.find("bestmove d2d4"), std::string::npos) << out;
    out = session.exchange("go depth 2\n", "bestmove ");
    EXPECT_EQ(out, "bestmove e2e4\n");

    session.settle("setoption name BookFile value <empty>\nucinewgame\n");
    out = session.exchange("position startpos\ngo depth 1\n", "bestmove ");
    EXPECT_TRUE(searched(out)) << out;
}

}  // namespace
