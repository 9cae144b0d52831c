// The PGN reader on the forms of movetext people write and on damaged or hostile input; real
// collections go through it in the builder tests.
#include "book/pgn.h"

#include <gtest/gtest.h>

#include <random>

#include "environment.h"
#include "scratch.h"

namespace {

std::vector<PgnGame> readAll(const std::string& path, size_t maxMoves = 1024) {
    PgnReader reader(maxMoves);
    EXPECT_TRUE(reader.open(path.c_str())) << path;
    std::vector<PgnGame> games;
    PgnGame game;
    while (reader.next(game)) games.push_back(game);
    return games;
}

std::vector<PgnGame> readText(const std::string& text, size_t maxMoves = 1024) {
    ScratchDir dir;
    writeText(dir.file("games.pgn"), text);
    return readAll(dir.file("games.pgn"), maxMoves);
}

TEST(PgnReader, FormsOfMovetextPeopleWrite) {
    const std::vector<PgnGame> games = readText(
        "% an escape line\n"
        "[White \"a\\\\b\"][Black \"x ] y\"]\r\n\r\n"
        "1.e4 $1 e5!? 2 . Nf3 (2. f4 exf4 (2... d5) 3. Nf3) 2...Nc6 3.Bb5 a6 4.Ba4 e.p. -- 5. 0-0+ {a} ; b "
        "{\n"
        "6. Qd1}\n"
        "0-1\n"
        "1. d4 d5 1/2\n"
        "{only a comment}\n");
    ASSERT_EQ(games.size(), 2u);
    EXPECT_EQ(*games[0].tag("White"), "a\\b");
    EXPECT_EQ(*games[0].tag("Black"), "x ] y");
    EXPECT_EQ(games[0].moves,
              (std::vector<std::string>{"e4", "e5", "Nf3", "Nc6", "Bb5", "a6", "Ba4", "--", "O-O+", "Qd1"}))
        << "a brace inside a rest-of-line comment opens nothing";
    EXPECT_EQ(games[0].result, "0-1");
    EXPECT_EQ(games[1].moves.size(), 2u);
    EXPECT_EQ(games[1].result, "1/2-1/2");
}

TEST(PgnReader, HostileInputEndsWithoutHangingOrGrowing) {
    const size_t big = sanitized() ? 2000000 : 10000000;
    std::mt19937 random(7);
    std::string bytes(big / 10, '\0');
    for (char& c : bytes) c = static_cast<char>(random());
    for (const PgnGame& game : readText(bytes)) {
        EXPECT_LE(game.tags.size(), 128u);
        EXPECT_LE(game.moves.size(), 1024u);
    }

    std::string line;
    while (line.size() < big) line += "e4 Nf3 ";
    std::vector<PgnGame> games = readText(line, 40);
    ASSERT_EQ(games.size(), 1u);
    EXPECT_EQ(games[0].moves.size(), 40u);

    games = readText("[Event \"" + std::string(big, 'x') + "\"]\n" + std::string(big, 'a') + " 1-0");
    ASSERT_EQ(games.size(), 1u);
    EXPECT_LE(games[0].tag("Event")->size(), 255u);
    EXPECT_NE(games[0].error, "");

    EXPECT_EQ(readText("1. e4 {" + std::string(big, '{')).size(), 1u);
    EXPECT_EQ(readText(std::string(big, '(')).size(), 1u);
    EXPECT_EQ(readText("").size(), 0u);
    games = readText("{never closed\n[Event \"x\"]\n1. e4 1-0\n");
    ASSERT_EQ(games.size(), 1u) << "a lost comment before the first game hides nothing";
    EXPECT_EQ(games[0].error, "");
    EXPECT_EQ(games[0].moves.size(), 1u);
}

}  // namespace
