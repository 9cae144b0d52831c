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
    int lines = 0;
    int moves = 0;
    int depth = 0;
    int score = 0;
    Move best = NO_MOVE;

    void finish(int d, int s, Move b) override {
        ++finishes;
        depth = d;
        score = s;
        best = b;
    }
    void reportLine(int, int, Move) override { ++lines; }
    void reportMove(int, int, Move) override { ++moves; }
};

struct SearchOutcome {
    Move best;
    int score;
    int depth;
    std::string reason;
    std::string bestText;
    int finishes;
};

// Searches the game board as it stands on the search thread's own stack, synchronously; echoLines
// prints the search's lines on the standard output.
inline SearchOutcome searchGameBoard(int maxDepth, int moveTimeMs, bool echoLines = false) {
    RecordingListener listener;
    searchThread.listener = &listener;
    searchThread.printStatistics = false;
    searchThread.echoLines = echoLines;
    searchThread.maxDepth = maxDepth;
    timeControl.infinite.store(false);
    timeControl.setMoveTime(moveTimeMs);
    searchThread.startSearch(true);
    searchThread.listener = nullptr;
    searchThread.echoLines = false;
    char text[MOVE_TEXT_SIZE];
    moveToText(gameBoard, text, listener.best);
    return {listener.best, listener.score, listener.depth, searchThread.endingReason, text, listener.finishes};
}

// Searches fen like searchGameBoard, from an empty table.
inline SearchOutcome searchPosition(const char* fen, int maxDepth, int moveTimeMs, bool clearTable = true) {
    EXPECT_TRUE(gameBoard.setFen(fen)) << fen;
    if (clearTable) tt.clear();
    return searchGameBoard(maxDepth, moveTimeMs);
}

// Whether move is one of the legal moves of the game board.
inline bool isLegalHere(Move move) {
    MoveList list;
    Move* end = generateLegalMoves(gameBoard, list);
    return std::find_if(list, end, [&](Move m) { return plainMove(m) == plainMove(move); }) != end;
}
