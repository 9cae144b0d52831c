#include "frontend/go_limits.h"

#include <cstdlib>
#include <cstring>

#include "board/legalmoves.h"
#include "frontend/protocol.h"

namespace {

// The legal move the word names in the protocol's form (e7e8q); no move for any other word. Nothing
// is printed: most words after the moves are the other words of "go".
Move legalMove(Board& board, const String& word) {
    Move named = NO_MOVE;
    forEachLegalMove(board, [&](Move made) {
        char text[8];
        uciMoveText(text, made);
        if (std::strcmp(text, word.c_str()) == 0) named = made;
    });
    return named;
}

}  // namespace

GoLimits readGoWords(String words, Board& board) {
    GoLimits limits;
    const struct {
        const char* word;
        int GoLimits::*value;
    } numbers[] = {{"wtime", &GoLimits::wtime},         {"btime", &GoLimits::btime},
                   {"winc", &GoLimits::winc},           {"binc", &GoLimits::binc},
                   {"depth", &GoLimits::depth},         {"movetime", &GoLimits::movetime},
                   {"movestogo", &GoLimits::movesToGo}, {"mate", &GoLimits::mate}};
    auto next = [&words] { return String::nextWord(words, " \t"); };
    String word = next();
    while (!word.empty() || !words.empty()) {
        if (word == "searchmoves") {
            for (word = next(); !word.empty() || !words.empty(); word = next()) {
                if (word.empty()) continue;
                const Move move = legalMove(board, word);
                if (move == NO_MOVE) break;
                limits.searchMoves.push_back(move);
            }
            continue;
        }
        if (word == "infinite") {
            limits.infinite = true;
        } else if (word == "ponder") {
            limits.infinite = true;
            limits.ponder = true;
        } else if (word == "nodes") {
            next();
        } else {
            for (const auto& number : numbers)
                if (word == number.word) limits.*number.value = atoi(next().c_str());
        }
        word = next();
    }
    if (limits.mate > 0 && limits.wtime < 0 && limits.btime < 0 && limits.movetime < 0)
        limits.infinite = true;
    return limits;
}
