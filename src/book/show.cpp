// The book display: each move's share of the position's games, its games, the mover's score and the
// draw rate, then a totals line.
#include <cstdio>

#include "board/notation.h"
#include "book/book.h"

void Book::show(Board& board) {
    const int n = readEntries(board);
    if (n == 0) {
        std::printf("position not in book\n");
        return;
    }
    uint32_t total = 0;
    for (int i = 0; i < n; i++) total += table[i].games();
    std::printf(" Pick   Move      games    score    draws\n");
    std::printf("-----------------------------------------\n");
    // The totals are kept in 16 bits and wrap above 65535, as the display always has.
    uint16_t sumWon = 0;
    uint16_t sumDrawn = 0;
    uint16_t sumLost = 0;
    for (int i = 0; i < n; i++) {
        const BookEntry& entry = table[i];
        const uint32_t games = entry.games();
        char text[MOVE_TEXT_SIZE];
        const Move move = entryMove(board, entry);
        // A record naming no move of the position (a damaged book) still shows what it holds.
        if (move == NO_MOVE)
            coordinateText(entry, text);
        else
            moveToText(board, text, move);
        std::printf("%5.1f%%  ", 100.0 * games / total);
        std::printf("%-6s %8u %8.3f %8.3f\n", text, games,
                    100.0 * (2.0 * entry.won + entry.drawn) / (2.0 * games), 100.0 * entry.drawn / games);
        sumWon = static_cast<uint16_t>(sumWon + entry.won);
        sumDrawn = static_cast<uint16_t>(sumDrawn + entry.drawn);
        sumLost = static_cast<uint16_t>(sumLost + entry.lost);
    }
    if (n < 2) return;
    const unsigned sumGames = unsigned{sumWon} + sumDrawn + sumLost;
    std::printf("------------------------------------------\n");
    std::printf("%-6s %8u %8.3f %8.3f\n", "100.0%        ", sumGames,
                100.0 * (2.0 * sumWon + sumDrawn) / (2.0 * sumGames), 100.0 * sumDrawn / sumGames);
}
