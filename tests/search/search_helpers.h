// Running real searches from tests: a table of moderate size, synchronous searches of FEN positions
// under a depth and time limit, and a listener that records what the search reported.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>

#include "board/board.h"
#include "board/legalmoves.h"
#include "board/notation.h"
#include "environment.h"
#include "search/searchthread.h"
#include "search/timecontrol.h"
#include "search/tt.h"

struct RecordingListener : SearchListener {
    int finishes = 0;
    int depth = 0;
    int score = 0;
    Move best = NO_MOVE;

    void finish(const SearchReport& report) override {
        ++finishes;
        depth = report.depth;
        score = report.score;
        best = report.best;
    }
    void reportLine(const SearchReport&) override {}
    void reportMove(const SearchReport&, int, Move) override {}
};

struct SearchOutcome {
    Move best;
    int score;
    int depth;
    std::string reason;
    std::string bestText;
    int finishes;
};

// Searches the game board as it stands on the search thread's own stack, synchronously.
inline SearchOutcome searchGameBoard(int maxDepth, int moveTimeMs) {
    RecordingListener listener;
    SearchRequest request;
    request.board = gameBoard;
    request.maxDepth = maxDepth;
    request.clock = ClockLimits{.moveTimeMs = moveTimeMs};
    request.listener = &listener;
    request.statistics = false;
    searchThread.startSearch(request, true);
    char text[MOVE_TEXT_SIZE];
    moveToText(gameBoard, text, listener.best);
    return {listener.best, listener.score,   listener.depth, searchThread.endingReason(),
            text,          listener.finishes};
}

// An analysis of the game board that reports to listener, for searches on the thread.
inline SearchRequest analysisOfGameBoard(SearchListener& listener) {
    SearchRequest request;
    request.board = gameBoard;
    request.infinite = true;
    request.listener = &listener;
    return request;
}

// Searches fen like searchGameBoard, from an empty table.
inline SearchOutcome searchPosition(const char* fen, int maxDepth, int moveTimeMs) {
    EXPECT_TRUE(gameBoard.setFen(fen)) << fen;
    tt.clear();
    return searchGameBoard(maxDepth, moveTimeMs);
}

// Whether move is one of the legal moves of the game board.
inline bool isLegalHere(Move move) {
    MoveList list;
    Move* end = generateLegalMoves(gameBoard, list);
    return std::find_if(list, end, [&](Move m) { return plainMove(m) == plainMove(move); }) != end;
}
