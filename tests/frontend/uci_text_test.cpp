// The protocol's texts for moves and scores, and the clock it hands to the time control.
#include <gtest/gtest.h>

#include <string>

#include "frontend/uci.h"
#include "search/timecontrol.h"

namespace {

constexpr int square(char file, char rank) {
    return (rank - '1') * 16 + (file - 'a');
}

std::string moveText(Move move) {
    char text[8];
    uciMoveText(text, move);
    return text;
}

std::string scoreText(int score) {
    char text[24];
    uciScoreText(text, score);
    return text;
}

TEST(UciText, MovesAreCoordinatesWithASmallPromotionLetter) {
    EXPECT_EQ(moveText(NO_MOVE), "0000");
    EXPECT_EQ(moveText(makeMoveWord(square('e', '2'), square('e', '4'), 0, MOVE_DOUBLE_PUSH)), "e2e4");
    EXPECT_EQ(moveText(makeMoveWord(square('a', '1'), square('h', '8'), 17)), "a1h8");
    // Castling is the king's own step; check and reduction marks never show.
    EXPECT_EQ(moveText(makeMoveWord(square('e', '8'), square('c', '8'), 0, MOVE_CASTLING | MOVE_CHECK)),
              "e8c8");
    EXPECT_EQ(moveText(makeMoveWord(square('g', '1'), square('f', '3'), 0, MOVE_REDUCED | MOVE_CHECKS)),
              "g1f3");
    const Move push = makeMoveWord(square('e', '7'), square('d', '8'), 20);
    EXPECT_EQ(moveText(push | promotionFlag(7)), "e7d8q");
    EXPECT_EQ(moveText(push | promotionFlag(2)), "e7d8n");
}

TEST(UciText, ScoresBeyondTheMateBoundsAreMovesToMate) {
    EXPECT_EQ(scoreText(29997), " score mate 2");  // mate at ply 3
    EXPECT_EQ(scoreText(29001), " score mate 500");
    EXPECT_EQ(scoreText(-29998), " score mate -1");  // mated at ply 2
    EXPECT_EQ(scoreText(29000), " score cp 29000");
    EXPECT_EQ(scoreText(-29000), " score cp -29000");
}

// With the clock down to a few increments no phase, panic included, may plan on more than half of
// what is left: spending the whole clock plus the increment each move ends in a time forfeit.
TEST(UciText, ShortClockKeepsHalfInReserveWhateverTheIncrement) {
    for (int clock : {0, 1, 10, 44, 100, 150, 199, 1000, 5000}) {
        for (int increment : {0, 10, 50, 1000}) {
            timeControl.setClock(0, usableClock(clock), increment);
            for (int limit : timeControl.phaseLimit) EXPECT_LE(limit, clock / 2) << clock << "+" << increment;
        }
    }
}

}  // namespace
