// Building a book from a PGN game collection.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "book/record.h"

// Plies a game may enter: the board's history holds MAX_PLY_HISTORY moves.
constexpr int MAX_BOOK_PLY = 1000;
// Long builds report their progress this often.
constexpr uint32_t BUILD_PROGRESS_MS = 2000;

// What the builder takes from the ini file. Every key begins with "book.build."; an empty or missing
// value keeps the default, numbers read like atoi.
//   book.build.file      the book to write; default: the PGN file's name with ".bbk" in the current
//                        directory
//   book.build.maxply    plies of each game that enter the book (1..1000); default 40
//   book.build.mingames  a move stays only with at least this many games; default 1
//   book.build.minelo    a game counts only when both players are rated at least this; default 0
//                        (unrated games count only while this is 0)
//   book.build.minscore  a move stays only when its mover scored at least this percentage; default 0
//   book.build.results   the results that count, any of "1-0 0-1 1/2-1/2"; default all three
// Games without a result ("*" or none) never count: they say nothing about the moves.
struct BookBuildOptions {
    std::string file;
    int maxPly = 40;
    int minGames = 1;
    int minElo = 0;
    int minScore = 0;
    bool whiteWins = true;
    bool blackWins = true;
    bool draws = true;
};

// Reads the options through lookup, which gives a key's value (empty when absent).
BookBuildOptions readBuildOptions(const std::function<std::string(const char*)>& lookup);

// A game's result for the side that played a move.
enum class Outcome { WIN, DRAW, LOSS };

// Adds one game to a record's counts; a count about to pass 65535 first halves all three.
void countGame(BookEntry& entry, Outcome outcome);

// Where the book built from sourcePath goes: the options' file, else the source's own name with ".bbk"
// in the current directory. False, with a message, when that would overwrite the source.
bool chooseBookPath(const char* sourcePath, const BookBuildOptions& options, std::string& bookPath);

// Reads the games of pgnPath (at most maxGames, 0 for all) and writes the book, reporting progress and
// broken games as it goes. On success bookPath names the file written.
bool buildBook(const char* pgnPath, const BookBuildOptions& options, unsigned maxGames,
               std::string& bookPath);
