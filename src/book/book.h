// The opening book: a sorted file of 16-byte records (see book/record.h) searched on disk at every
// probe, the weighted random choice among a position's moves, its display, and writing a book file.
#pragma once

#include <cstdint>
#include <cstdio>
#include <vector>

#include "board/board.h"
#include "board/move.h"
#include "book/record.h"

// The position's book key: the board key with the side to move folded into its low half (the board
// key itself has no side-to-move component).
inline uint64_t bookKey(const Board& board) {
    return board.hash ^ board.sideToMove;
}

class Book {
  public:
    Book() = default;
    Book(const Book&) = delete;
    Book& operator=(const Book&) = delete;
    ~Book() { close(); }

    // Closes any open file first. False when the file cannot be opened or sized.
    bool open(const char* path);
    void close();
    bool isOpen() const { return file != nullptr; }
    uint32_t records() const { return count; }

    // Positions the file at the first record of key. Deliberately reports a position whose records begin
    // at record 0 as absent; the book builder never lets a real position sort first.
    bool find(uint64_t key);
    // Fills the entry table with the board position's records (at most BOOK_MAX_ENTRIES); their number.
    int readEntries(const Board& board);
    // A move of the position chosen at random in proportion to its games, or 0.
    Move pick(Board& board);
    // Prints the position's book moves with their share, games, score and draws.
    void show(Board& board);
    // The next record at the file position, copied raw; false at the end or on a read error.
    bool readRecord(BookRecord record);

    const BookEntry* entries() const { return table; }
    int entryCount() const { return tableSize; }

    // Writes entries (sorted by key) as a book file, leaving out those without games.
    static bool save(const char* path, const std::vector<BookEntry>& entries);

  private:
    bool readKeyAt(uint32_t index, uint64_t& key);
    // The stored move as coordinate text (e2e4) and as the position's move (0 when it names none).
    static void coordinateText(const BookEntry& entry, char text[5]);
    static Move entryMove(Board& board, const BookEntry& entry);

    FILE* file = nullptr;
    uint32_t count = 0;
    BookEntry table[BOOK_MAX_ENTRIES] = {};
    int tableSize = 0;
};

// The engine's book, opened from the "book.file" setting or by the book commands.
extern Book book;

// The book step of a search request: when the engine's book holds a move for the position, shows the
// book's moves, prints "picked book move: " with the move and returns it; otherwise returns 0 quietly.
// The move is not played.
Move consoleBookMove(Board& board);
