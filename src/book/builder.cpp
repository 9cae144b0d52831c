// The book builder: replays the main line of every usable game through the move parser and counts
// each position-move pair by the game's result from the mover's side.
#include "book/builder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <vector>

#include "board/board.h"
#include "board/makemove.h"
#include "board/notation.h"
#include "book/book.h"
#include "book/pgn.h"
#include "book/tally.h"
#include "platform/platform.h"

namespace {

// Broken games listed one by one before the rest are only counted.
constexpr unsigned LISTED_BROKEN = 20;

struct Played {
    uint64_t key;
    uint8_t from;
    uint8_t to;
    bool white;
};

int numberOr(const std::string& text, int fallback) {
    return text.empty() ? fallback : std::atoi(text.c_str());
}

// The default book name: the PGN file's own name, extension replaced, in the current directory.
std::string defaultBookPath(const char* pgnPath) {
    std::string name = pgnPath;
    const size_t slash = name.find_last_of("/\\");
    if (slash != std::string::npos) name.erase(0, slash + 1);
    const size_t dot = name.find_last_of('.');
    if (dot != std::string::npos && dot > 0) name.erase(dot);
    return name + ".bbk";
}

int elo(const PgnGame& game, const char* tag) {
    const std::string* value = game.tag(tag);
    return value ? std::atoi(value->c_str()) : 0;
}

// A position without exactly one king of each colour cannot be played from.
bool hasBothKings(const std::string& fen) {
    const std::string placement = fen.substr(0, fen.find(' '));
    return std::count(placement.begin(), placement.end(), 'K') == 1 &&
           std::count(placement.begin(), placement.end(), 'k') == 1;
}

// Replays the game's first plies into played; stops at a null move or the first promotion (a record
// cannot hold the promoted piece). An empty text when the game replays, else why it does not.
std::string replay(Board& board, const PgnGame& game, int maxPly, std::vector<Played>& played) {
    played.clear();
    const std::string* fen = game.tag("FEN");
    if (fen && !hasBothKings(*fen)) return "bad FEN";
    if (!board.setFen(fen ? fen->c_str() : START_FEN)) return "bad FEN";
    const size_t plies = std::min(game.moves.size(), static_cast<size_t>(maxPly));
    for (size_t ply = 0; ply < plies; ply++) {
        const std::string& text = game.moves[ply];
        if (text == "--") break;
        const Move move = isMove(board, text.c_str());
        if (move == NO_MOVE) return "illegal move '" + text + "' at ply " + std::to_string(ply + 1);
        if (move & MOVE_PROMOTION) break;
        const bool white = board.sideToMove == WHITE;
        // A game set up from a FEN counts its plies from the first move of the game it came from, so
        // the odd-ply mark is simply the mover's colour.
        played.push_back({bookKey(board), static_cast<uint8_t>(moveFrom(move) | (white ? 0 : BOOK_ODD_PLY)),
                          static_cast<uint8_t>(moveTo(move)), white});
        if (makeMove(board, plainMove(move)) == NO_MOVE)
            return "move '" + text + "' refused at ply " + std::to_string(ply + 1);
    }
    return "";
}

}  // namespace

BookBuildOptions readBuildOptions(const std::function<std::string(const char*)>& lookup) {
    BookBuildOptions options;
    options.file = lookup("book.build.file");
    const int maxPly = numberOr(lookup("book.build.maxply"), options.maxPly);
    options.maxPly = maxPly < 1 ? BookBuildOptions{}.maxPly : std::min(maxPly, MAX_BOOK_PLY);
    options.minGames = numberOr(lookup("book.build.mingames"), options.minGames);
    options.minElo = numberOr(lookup("book.build.minelo"), options.minElo);
    options.minScore = numberOr(lookup("book.build.minscore"), options.minScore);
    const std::string results = lookup("book.build.results");
    if (!results.empty()) {
        options.whiteWins = results.find("1-0") != std::string::npos;
        options.blackWins = results.find("0-1") != std::string::npos;
        options.draws = results.find("1/2") != std::string::npos;
    }
    return options;
}

bool chooseBookPath(const char* sourcePath, const BookBuildOptions& options, std::string& bookPath) {
    bookPath = options.file.empty() ? defaultBookPath(sourcePath) : options.file;
    std::error_code ignored;
    if (std::filesystem::equivalent(sourcePath, bookPath, ignored)) {
        std::printf("cannot write book %s over its source file\n", bookPath.c_str());
        return false;
    }
    return true;
}

void countGame(BookEntry& entry, Outcome outcome) {
    uint16_t& count = outcome == Outcome::WIN    ? entry.won
                      : outcome == Outcome::DRAW ? entry.drawn
                                                 : entry.lost;
    if (count == UINT16_MAX) {
        entry.won >>= 1;
        entry.drawn >>= 1;
        entry.lost >>= 1;
    }
    count++;
}

bool buildBook(const char* pgnPath, const BookBuildOptions& options, unsigned maxGames,
               std::string& bookPath) {
    // Open the games.
    const int maxPly = std::clamp(options.maxPly, 1, MAX_BOOK_PLY);
    PgnReader reader(static_cast<size_t>(maxPly));
    if (!reader.open(pgnPath)) {
        std::printf("could not open file: %s\n", pgnPath);
        return false;
    }
    if (!chooseBookPath(pgnPath, options, bookPath)) return false;
    std::printf("reading %s...\n", pgnPath);
    std::fflush(stdout);

    // Count every usable game's moves.
    auto board = std::make_unique<Board>();
    Tally tally;
    PgnGame game;
    std::vector<Played> played;
    unsigned read = 0, used = 0, unfinished = 0, filtered = 0, empty = 0, broken = 0;
    const uint32_t start = platform::getTickCount();
    uint32_t lastReport = start;
    auto rate = [&](uint32_t now) { return read * 1000.0 / std::max<uint32_t>(now - start, 1); };
    while ((maxGames == 0 || read < maxGames) && reader.next(game)) {
        read++;
        if ((read & 1023) == 0) {
            const uint32_t now = platform::getTickCount();
            if (now - lastReport >= BUILD_PROGRESS_MS) {
                std::printf("%u games, %zu positions, %.0f games/s\n", read, tally.positions(), rate(now));
                std::fflush(stdout);
                lastReport = now;
            }
        }
        std::string why = game.error;
        const std::string* tagResult = game.tag("Result");
        const std::string result = !game.result.empty() ? game.result : tagResult ? *tagResult : "";
        const bool whiteWon = result == "1-0";
        const bool blackWon = result == "0-1";
        const bool drawn = result == "1/2-1/2";
        if (why.empty()) {
            if (!whiteWon && !blackWon && !drawn) {
                unfinished++;
                continue;
            }
            if ((whiteWon && !options.whiteWins) || (blackWon && !options.blackWins) ||
                (drawn && !options.draws) ||
                (options.minElo > 0 &&
                 std::min(elo(game, "WhiteElo"), elo(game, "BlackElo")) < options.minElo)) {
                filtered++;
                continue;
            }
            if (game.moves.empty()) {
                empty++;
                continue;
            }
            why = replay(*board, game, maxPly, played);
        }
        if (!why.empty()) {
            if (++broken <= LISTED_BROKEN) std::printf("game %u: %s, skipped\n", game.number, why.c_str());
            if (broken == LISTED_BROKEN + 1) std::printf("more broken games are counted but not listed\n");
            continue;
        }
        used++;
        for (const Played& move : played) {
            const Outcome outcome = drawn                    ? Outcome::DRAW
                                    : move.white == whiteWon ? Outcome::WIN
                                                             : Outcome::LOSS;
            countGame(tally.at(move.key, move.from, move.to), outcome);
        }
    }

    // Report, sort and write.
    const uint32_t elapsed = platform::getTickCount() - start;
    std::printf("%u games read: %u used, %u without result, %u filtered out, %u without moves, %u broken\n",
                read, used, unfinished, filtered, empty, broken);
    std::printf("%zu positions, %zu moves in %.1f s (%.0f games/s)\n", tally.positions(), tally.moves(),
                elapsed / 1000.0, rate(start + elapsed));
    return tally.write(pgnPath, bookPath, options);
}
