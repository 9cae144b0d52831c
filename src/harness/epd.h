// Reading EPD lines: the four position fields, then operations "opcode operand ...;". The harness uses
// bm (best moves), am (moves to avoid) and id; other opcodes are read over.
#pragma once

#include <string>
#include <vector>

#include "board/board.h"
#include "board/move.h"

struct EpdRecord {
    std::string fen;  // the position fields, with the two counters when the line has them
    std::vector<std::string> bestMoves;
    std::vector<std::string> avoidMoves;
    std::string id;  // empty when the line has none
};

enum class EpdLine { POSITION, SKIP, BAD };

// One line of an EPD file. Blank lines and lines starting with '#' are SKIP; a line that cannot be read
// is BAD with the reason in error.
EpdLine parseEpdLine(const char* line, EpdRecord& record, std::string& error);

struct EpdMoves {
    std::vector<Move> best;
    std::vector<Move> avoid;
};

// Sets board to the record's position; false with the reason when it is not one the engine can search.
bool setUpPosition(Board& board, const EpdRecord& record, std::string& error);

// Sets board to the record's position and reads its moves there; false with the reason when the
// position is not one the engine can search or a move is not legal in it.
bool setUpEpd(Board& board, const EpdRecord& record, EpdMoves& moves, std::string& error);

// Whether move answers the test: one of the best moves when there are any, and none of the moves to
// avoid.
bool isSolution(const EpdMoves& moves, Move move);
