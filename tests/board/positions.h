// The perft positions with their counts, and what the board tests share besides.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <ostream>
#include <string>
#include <vector>

#include "board/board.h"
#include "boards.h"
#include "environment.h"

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
