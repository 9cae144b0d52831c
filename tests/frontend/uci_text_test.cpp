// The protocol's score texts, and the clock it hands to the time control.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "frontend/uci.h"
#include "search/timecontrol.h"

namespace {

std::string scoreText(int score) {
    char text[24];
    uciScoreText(text, score);
    return text;
}

TEST(UciText, ScoresBeyondTheMateBoundsAreMovesToMate) {
    EXPECT_EQ(scoreText(29997), " score mate 2");  // mate at ply 3
    EXPECT_EQ(scoreText(29001), " score mate 500");
    EXPECT_EQ(scoreText(-29998), " score mate -1");  // mated at ply 2
    EXPECT_EQ(scoreText(29000), " score cp 29000");
    EXPECT_EQ(scoreText(-29000), " score cp -29000");
}

// With the clock down to a few increments no phase, panic included, may plan on more than half of
// what is left, or a tenth of a second on the shortest clocks: spending the whole clock plus the
// increment each move ends in a time forfeit.
TEST(UciText, ShortClockKeepsHalfInReserveWhateverTheIncrement) {
    for (int clock : {0, 1, 10, 44, 100, 150, 199, 200, 1000, 5000}) {
        for (int increment : {0, 10, 50, 1000}) {
            timeControl.setClock(0, usableClock(clock), increment);
            for (int limit : timeControl.phaseLimit)
                EXPECT_LE(limit, std::max(clock / 2, 100)) << clock << "+" << increment;
        }
    }
}

}  // namespace
