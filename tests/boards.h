// Boards from FEN and back, for the tests of every folder.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>

#include "board/board.h"
#include "board/makemove.h"
#include "board/notation.h"

// A board set from a FEN the test expects to be accepted; on the heap, as a board with its history is
// large.
inline std::unique_ptr<Board> boardFrom(const std::string& fen) {
    auto board = std::make_unique<Board>();
    EXPECT_TRUE(board->setFen(fen.c_str())) << fen;
    return board;
}

// The board after moves (in any form the move reader takes, separated by blanks) played from fen; each
// must be legal.
inline std::unique_ptr<Board> boardAfter(const std::string& fen, const std::string& moves) {
    auto board = boardFrom(fen);
    std::istringstream words(moves);
    for (std::string word; words >> word;) {
        const Move made = makeMove(*board, plainMove(isMove(*board, word.c_str())));
        EXPECT_NE(made, NO_MOVE) << word;
        board->lastMove = made;
    }
    return board;
}

// The FEN text writeFen gives.
inline std::string fenOf(const Board& board) {
    char* buffer = nullptr;
    size_t size = 0;
    FILE* stream = open_memstream(&buffer, &size);
    board.writeFen(stream);
    std::fclose(stream);
    std::string text(buffer, size);
    std::free(buffer);
    return text;
}
