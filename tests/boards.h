// Boards from FEN and back, for the tests of every folder.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "board/board.h"

// A board set from a FEN the test expects to be accepted; on the heap, as a board with its history is
// large.
inline std::unique_ptr<Board> boardFrom(const std::string& fen) {
    auto board = std::make_unique<Board>();
    EXPECT_TRUE(board->setFen(fen.c_str())) << fen;
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
