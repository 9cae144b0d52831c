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
#include "platform/platform.h"

namespace {

// Plies a game may enter: the board's history holds MAX_PLY_HISTORY moves.
constexpr int MAX_BOOK_PLY = 1000;
// Broken games listed one by one before the rest are only counted.
constexpr unsigned LISTED_BROKEN = 20;
constexpr uint32_t PROGRESS_MS = 2000;

// The book's first record is never found by a probe. The builder puts this record there, under key 0
// (no real position has it), so that every real position is reachable.
constexpr BookEntry FIRST_RECORD = {0, 0, 0, 0, 1, 0};

// Counts per position and move, gathered game by game. Positions live in an open-addressing table
// (the keys are random, so their low bits index it well); each keeps a chain of its moves.
class Tally {
  public:
    Tally() : slots(1024, Slot{0, NONE}) {}

    void add(uint64_t key, uint8_t from, uint8_t to, Outcome outcome) {
        uint32_t* link = &slotOf(key).head;
        while (*link != NONE) {
            Node& node = nodes[*link];
            if ((node.entry.from & 127) == (from & 127) && node.entry.to == to) {
                countGame(node.entry, outcome);
                return;
            }
            link = &node.next;
        }
        *link = static_cast<uint32_t>(nodes.size());
        nodes.push_back({BookEntry{key, from, to, 0, 0, 0}, NONE});
        countGame(nodes.back().entry, outcome);
    }

    size_t positions() const { return used; }
    size_t moves() const { return nodes.size(); }

    // The book: sorted by key, a position's moves most played first, at most BOOK_MAX_ENTRIES of them
    // (a probe reads no more), after the options' thresholds.
    std::vector<BookEntry> entries(const BookBuildOptions& options) const {
        std::vector<Slot> positions;
        positions.reserve(used);
        for (const Slot& slot : slots)
            if (slot.head != NONE) positions.push_back(slot);
        std::sort(positions.begin(), positions.end(),
                  [](const Slot& a, const Slot& b) { return a.key < b.key; });
        std::vector<BookEntry> book{FIRST_RECORD};
        std::vector<BookEntry> moves;
        for (const Slot& position : positions) {
            moves.clear();
            for (uint32_t i = position.head; i != NONE; i = nodes[i].next) {
                const BookEntry& entry = nodes[i].entry;
                const uint32_t games = entry.games();
                const uint32_t points = 2u * entry.won + entry.drawn;
                if (games >= static_cast<uint32_t>(std::max(options.minGames, 1)) &&
                    points * 50 >= static_cast<uint32_t>(std::max(options.minScore, 0)) * games)
                    moves.push_back(entry);
            }
            std::stable_sort(moves.begin(), moves.end(),
                             [](const BookEntry& a, const BookEntry& b) { return a.games() > b.games(); });
            if (moves.size() > BOOK_MAX_ENTRIES) moves.resize(BOOK_MAX_ENTRIES);
            book.insert(book.end(), moves.begin(), moves.end());
        }
        return book;
    }

  private:
    static constexpr uint32_t NONE = UINT32_MAX;
    struct Slot {
        uint64_t key;
        uint32_t head;  // NONE while the slot is free
    };
    struct Node {
        BookEntry entry;
        uint32_t next;
    };

    // The slot of key; a new key gets a free slot, whose empty chain the caller fills.
    Slot& slotOf(uint64_t key) {
        if (2 * (used + 1) > slots.size()) grow();
        const size_t mask = slots.size() - 1;
        size_t i = key & mask;
        while (slots[i].head != NONE && slots[i].key != key) i = (i + 1) & mask;
        if (slots[i].head == NONE) {
            // A new position: add() hangs its first move on the slot at once.
            used++;
            slots[i].key = key;
        }
        return slots[i];
    }

    void grow() {
        std::vector<Slot> old(slots.size() * 2, Slot{0, NONE});
        old.swap(slots);
        const size_t mask = slots.size() - 1;
        for (const Slot& slot : old) {
            if (slot.head == NONE) continue;
            size_t i = slot.key & mask;
            while (slots[i].head != NONE) i = (i + 1) & mask;
            slots[i] = slot;
        }
    }

    std::vector<Slot> slots;
    size_t used = 0;
    std::vector<Node> nodes;
};

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
        if (makeMove(board, move & ~MOVE_CHECKS) == NO_MOVE)
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
    bookPath = options.file.empty() ? defaultBookPath(pgnPath) : options.file;
    std::error_code ignored;
    if (std::filesystem::equivalent(pgnPath, bookPath, ignored)) {
        std::printf("cannot write book %s over its PGN file\n", bookPath.c_str());
        return false;
    }
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
            if (now - lastReport >= PROGRESS_MS) {
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
            tally.add(move.key, move.from, move.to, outcome);
        }
    }

    // Report, sort and write.
    const uint32_t elapsed = platform::getTickCount() - start;
    std::printf("%u games read: %u used, %u without result, %u filtered out, %u without moves, %u broken\n",
                read, used, unfinished, filtered, empty, broken);
    std::printf("%zu positions, %zu moves in %.1f s (%.0f games/s)\n", tally.positions(), tally.moves(),
                elapsed / 1000.0, rate(start + elapsed));
    if (tally.moves() == 0) {
        std::printf("no book moves found in %s\n", pgnPath);
        return false;
    }
    return Book::save(bookPath.c_str(), tally.entries(options));
}
