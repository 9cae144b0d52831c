// The perft positions with their counts, and small helpers the board tests share.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <ostream>
#include <string>
#include <vector>

#include "board/board.h"
#include "environment.h"
#include "frontend/util/log.h"

struct PerftCase {
    std::string fen;
    std::vector<uint64_t> counts;  // counts[d - 1] for depth d
};

// How a parameterised test names its case when it fails.
inline void PrintTo(const PerftCase& c, std::ostream* out) {
    *out << c.fen;
}

// perft.epd: a FEN, then ";D<depth> <count>" fields.
inline std::vector<PerftCase> loadPerftCases() {
    std::vector<PerftCase> cases;
    std::ifstream in(testData("perft.epd"));
    std::string line;
    while (std::getline(in, line)) {
        const size_t semicolon = line.find(';');
        if (semicolon == std::string::npos) continue;
        PerftCase c;
        c.fen = line.substr(0, semicolon);
        for (size_t at = semicolon; at != std::string::npos; at = line.find(';', at + 1))
            c.counts.push_back(std::strtoull(line.c_str() + line.find(' ', at) + 1, nullptr, 10));
        cases.push_back(c);
    }
    return cases;
}

// A board set from a FEN that the test expects to be accepted.
inline Board boardFrom(const char* fen) {
    Board board;
    if (!board.setFen(fen)) {
        fprintf(stderr, "FEN refused: %s\n", fen);
        std::abort();
    }
    return board;
}

// What `run` writes to the log.
template <typename Run>
std::string logOf(const Run& run) {
    char* buffer = nullptr;
    size_t size = 0;
    FILE* stream = open_memstream(&buffer, &size);
    FILE* previous = Log::stream();
    Log::setStream(stream);
    run();
    Log::setStream(previous);
    fclose(stream);
    std::string text(buffer, size);
    free(buffer);
    return text;
}

// The FEN text writeFen gives.
inline std::string fenOf(const Board& board) {
    char* buffer = nullptr;
    size_t size = 0;
    FILE* stream = open_memstream(&buffer, &size);
    board.writeFen(stream);
    fclose(stream);
    std::string text(buffer, size);
    free(buffer);
    return text;
}
