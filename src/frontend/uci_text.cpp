// The protocols' texts for moves and scores.
#include <cstdio>

#include "frontend/protocol.h"

void uciMoveText(char* text, Move move) {
    if (move == NO_MOVE) {
        snprintf(text, 6, "0000");
        return;
    }
    const int from = moveFrom(move), to = moveTo(move);
    text[0] = char('a' + (from & 7));
    text[1] = char('1' + (from >> 4));
    text[2] = char('a' + (to & 7));
    text[3] = char('1' + (to >> 4));
    text[4] = promotionKind(move) ? " pnk?brq"[promotionKind(move)] : 0;
    text[5] = 0;
}

void uciScoreText(char* text, int score) {
    if (score > 29000)
        snprintf(text, 24, " score mate %i", (30001 - score) / 2);
    else if (score < -29000)
        snprintf(text, 24, " score mate %i", (-30000 - score) / 2);
    else
        snprintf(text, 24, " score cp %i", score);
}
