// The board as ASCII art with material and a score sheet of the moves played.
#include <algorithm>
#include <cstring>

#include "board/board.h"
#include "board/notation.h"
#include "board/tables.h"

namespace {

constexpr int SHEET_LINES = 12;  // rows 15 down to 4

// One score-sheet line: move pair `pair` (0 = first) of the game; moves the history no longer holds
// show as "...".
void printSheetLine(const Board& board, FILE* stream, int pair) {
    // The game may begin with Black's move; White's entry is then empty.
    const int firstMover = static_cast<int>((board.sideToMove ^ board.gamePly()) & 1);
    const int whitePly = 2 * pair - firstMover - static_cast<int>(board.droppedPlies);
    char text[MOVE_TEXT_SIZE];
    if (whitePly >= 0)
        moveToText(board, text, board.moves[whitePly]);
    else
        strcpy(text, "...");
    fprintf(stream, "  %2i. %-6s", pair + 1, text);
    if (whitePly + 1 >= 0 && whitePly + 1 < static_cast<int>(board.ply)) {
        moveToText(board, text, board.moves[whitePly + 1]);
        fprintf(stream, " %-6s", text);
    } else {
        fprintf(stream, " ...");
    }
}

}  // namespace

void Board::print(FILE* stream, int mode) const {
    const int plies = static_cast<int>(gamePly());
    const int firstMover = static_cast<int>((sideToMove ^ plies) & 1);
    const int pairs = plies ? (plies + firstMover + 1) / 2 : 0;
    // The last lines of the sheet, and none whose moves the history has dropped.
    const int firstHeld = (static_cast<int>(droppedPlies) + firstMover) / 2;
    const int firstPair = std::max(pairs - SHEET_LINES, firstHeld);
    for (int row = 16; row >= 0; --row) {
        if (row % 2 == 0) {
            fprintf(stream, "   +---+---+---+---+---+---+---+---+");
        } else {
            const int rank = row / 2;
            fprintf(stream, " %i ", rank + 1);
            for (int file = 0; file < 8; ++file) {
                const uint8_t slot = at(makeSquare(file, rank));
                const uint8_t code = pieceCode[slot];
                if (mode == 1)
                    fprintf(stream, "| %2x", code);
                else if (mode == 2)
                    fprintf(stream, "| %2x", slot);
                else if (!code)
                    fprintf(stream, "|   ");
                else if (code & WHITE_BIT)
                    fprintf(stream, "|(%c)", pieceLetter(code));
                else
                    fprintf(stream, "|*%c*", pieceLetter(code));
            }
            fprintf(stream, "|");
        }
        if (row == 1) {
            const int white = materialUnits(material[WHITE]);
            const int black = materialUnits(material[BLACK]);
            fprintf(stream, "  %i-%i=%i ", white, black, white - black);
        }
        if (row >= 4 && row <= 15) {
            const int pair = firstPair + (15 - row);
            if (pair < pairs) printSheetLine(*this, stream, pair);
        }
        fprintf(stream, "\n");
    }
    fprintf(stream, "     a   b   c   d   e   f   g   h\n\n");
    writeFen(stream);
    fprintf(stream, "\n hash=%08x%08x\n", highHalf(hash), lowHalf(hash));
    fprintf(stream, "phash=%08x%08x\n", highHalf(pawnHash), lowHalf(pawnHash));
}
