// Reading PGN game collections as people and programs write them: tag pairs (with escaped quotes),
// movetext with move numbers, "..." continuations, brace and rest-of-line comments, nested variations,
// NAGs and glyphs, any line ends and stray non-ASCII bytes. Only the main line's moves are kept.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

struct PgnGame {
    unsigned number = 0;  // 1 for the file's first game
    std::vector<std::pair<std::string, std::string>> tags;
    // Main-line moves as written, without move numbers, glyphs or NAGs; castling with zeros is rewritten
    // with letters (0-0 -> O-O) and a null move ("--", "Z0") reads "--".
    std::vector<std::string> moves;
    std::string result;  // the termination marker ("1-0", "0-1", "1/2-1/2", "*"); empty when missing
    std::string error;   // why the game cannot be used; empty when it read cleanly

    // The value of the first tag of that name, or null.
    const std::string* tag(const char* name) const;
};

class PgnReader {
  public:
    // Moves past maxMoves are read and checked but not kept.
    explicit PgnReader(size_t movesKept = 1024) : maxMoves(movesKept) {}
    PgnReader(const PgnReader&) = delete;
    PgnReader& operator=(const PgnReader&) = delete;
    ~PgnReader();

    bool open(const char* path);
    // The next game; false at the end of the file. A damaged game still comes back, with its error set,
    // and reading goes on with the game after it.
    bool next(PgnGame& game);

  private:
    int get();
    int peek();
    void unget() { pos--; }
    bool lookingAt(const char* text);
    bool refill();
    void skipLine();
    bool skipComment(PgnGame& game);
    void readTag(PgnGame& game);
    // True when the token ended the game.
    bool takeToken(std::string& token, PgnGame& game);

    FILE* file = nullptr;
    size_t maxMoves;
    std::vector<char> buffer;
    size_t pos = 0;
    size_t len = 0;
    bool lineStart = true;
    unsigned gamesRead = 0;
};
