// Endgame bitbases: positions of up to five men scored by an external library loaded at run time.
#pragma once

#include <string>

#include "board/board.h"

class EGBB {
  public:
    // Loads the library from directory (default "egbb"); prints what is missing. True when both entry
    // points were found.
    bool load(const char* directory);
    // Hands the library its directory and cache (at least 16 MB) and finds out which sets it has by
    // probing three test positions; prints the result. Runs once per load; later calls return whether
    // it loaded.
    bool init(int cacheMb);
    // No more probes until the next load. The library stays mapped: a search that has just ended may
    // still be on its way out of a probe.
    void turnOff();
    // Fills score (side to move's view) and returns true when the library knows the position. Only
    // positions with at most maxMen - 2 pieces and pawns are probed.
    bool probe(const Board& board, int& score) const;

    int maxMen() const { return men; }
    bool isLoaded() const { return loaded; }

    using LoadFunction = void (*)(char* path, int cacheBytes, int loadOptions);
    using ProbeFunction = int (*)(int player, int wKing, int bKing, int piece1, int square1, int piece2,
                                  int square2, int piece3, int square3);

  private:
    std::string path;  // the directory with its trailing separator
    LoadFunction loadEntry = nullptr;
    ProbeFunction probeEntry = nullptr;
    bool loaded = false;
    bool initialised = false;
    int men = 0;
};

// The one bitbase connection of the engine, set up at start-up and read by every search thread.
extern EGBB egbb;

// The library's answer for a position it does not have.
constexpr int EGBB_NOT_AVAILABLE = 99999;

// A won pawnless ending's score for winner (0 when either side has a pawn): material, a bonus for
// the losing king near the edge (or the right corner with bishop and knight) and near the winning king.
int winScore(const Board& board, int winner);
