// The Polyglot import: the book is read whole into memory (16 bytes an entry), then the tree of its
// moves is walked depth first on the engine's own board, each position looked up by its Polyglot key
// and its moves written under the engine's book key.
//
// A Polyglot entry is 16 big-endian bytes, sorted by key, a position's entries adjacent:
//   0-7    the position's Polyglot key (book/polyglot_keys.h)
//   8-9    the move: bits 0-2 to-file, 3-5 to-rank, 6-8 from-file, 9-11 from-rank, 12-14 promotion
//          (0 none, 1 knight, 2 bishop, 3 rook, 4 queen); castling is the king taking its own rook
//   10-11  the weight: the move's share among the position's moves
//   12-15  learning data, unused here
#include "book/polyglot_import.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <memory>
#include <unordered_map>
#include <vector>

#include "board/makemove.h"
#include "board/notation.h"
#include "book/book.h"
#include "book/polyglot_keys.h"
#include "book/tally.h"
#include "platform/platform.h"

namespace {

constexpr int ENTRY_SIZE = 16;

struct PolyglotEntry {
    uint64_t key;
    uint16_t move;
    uint16_t weight;
};

// The file's entries in key order (a file out of order is sorted here; a trailing partial entry is
// ignored). False when the file cannot be read.
bool readEntries(const char* path, std::vector<PolyglotEntry>& entries) {
    FILE* file = std::fopen(path, "rb");
    if (!file) return false;
    uint8_t bytes[ENTRY_SIZE];
    while (std::fread(bytes, 1, ENTRY_SIZE, file) == ENTRY_SIZE)
        entries.push_back({uint64_t{readBig32(bytes)} << 32 | readBig32(bytes + 4), readBig16(bytes + 8),
                           readBig16(bytes + 10)});
    const bool failed = std::ferror(file) != 0;
    std::fclose(file);
    auto byKey = [](const PolyglotEntry& a, const PolyglotEntry& b) { return a.key < b.key; };
    if (!std::is_sorted(entries.begin(), entries.end(), byKey))
        std::stable_sort(entries.begin(), entries.end(), byKey);
    return !failed;
}

// Raises a move's weight, halving all three counts first whenever the sum would pass 65535.
void addWeight(BookEntry& entry, uint16_t weight) {
    while (uint32_t{entry.drawn} + weight > UINT16_MAX) {
        entry.won >>= 1;
        entry.drawn >>= 1;
        entry.lost >>= 1;
    }
    entry.drawn = static_cast<uint16_t>(entry.drawn + weight);
}

class Walk {
  public:
    Walk(const std::vector<PolyglotEntry>& source, int plies, uint32_t started)
        : entries(source), maxPly(plies), start(started), lastReport(started) {}

    const Tally& run() {
        board->setFen(START_FEN);
        visit(0);
        return tally;
    }

    size_t reached = 0;       // entries looked up in the positions walked
    unsigned illegal = 0;     // entries naming no legal move of their position
    unsigned promotions = 0;  // promotions, which a record cannot hold

  private:
    void visit(int ply) {
        // A position met again is walked again only when met nearer the start, so that its moves
        // still get their full depth; its records are written the first time only.
        const uint64_t key = bookKey(*board);
        const auto [explored, fresh] = depths.try_emplace(key, ply);
        if (!fresh) {
            if (explored->second <= ply) return;
            explored->second = ply;
        }
        const uint64_t polyglot = polyglotKey(*board);
        const auto first = std::lower_bound(entries.begin(), entries.end(), polyglot,
                                            [](const PolyglotEntry& e, uint64_t k) { return e.key < k; });
        for (auto entry = first; entry != entries.end() && entry->key == polyglot; ++entry) {
            const Move move = legalMove(entry->move);
            if (fresh) count(key, move, entry->weight);
            if (move == NO_MOVE || ply + 1 >= maxPly) continue;
            const SavedState saved = saveState(*board);
            if (makeMove(*board, plainMove(move)) == NO_MOVE) continue;
            visit(ply + 1);
            takeBack(*board, plainMove(move), saved);
        }
        if (fresh) reportProgress();
    }

    // Adds an entry of the position to the tally, unless nothing could pick it.
    void count(uint64_t key, Move move, uint16_t weight) {
        reached++;
        if (move == NO_MOVE) {
            illegal++;
        } else if (move & MOVE_PROMOTION) {
            promotions++;
        } else if (weight > 0) {
            const uint8_t odd = board->sideToMove == WHITE ? 0 : BOOK_ODD_PLY;
            addWeight(
                tally.at(key, static_cast<uint8_t>(moveFrom(move) | odd), static_cast<uint8_t>(moveTo(move))),
                weight);
        }
    }

    // The legal move a Polyglot move word names here, or NO_MOVE.
    Move legalMove(uint16_t word) {
        const int to = makeSquare(word & 7, (word >> 3) & 7);
        const int from = makeSquare((word >> 6) & 7, (word >> 9) & 7);
        const int promotion = (word >> 12) & 7;
        int target = to;
        // Castling is stored as the king taking its own rook; the engine's move is the king's two steps.
        const int side = static_cast<int>(board->sideToMove);
        if (from == board->kingSquare(side) && fileOf(from) == 4 && rankOf(to) == rankOf(from) &&
            isColour(board->at(to), colourBase(side)))
            target = to > from ? from + 2 : from - 2;
        char text[6] = {static_cast<char>('a' + fileOf(from)),
                        static_cast<char>('1' + rankOf(from)),
                        static_cast<char>('a' + fileOf(target)),
                        static_cast<char>('1' + rankOf(target)),
                        promotion >= 1 && promotion <= 4 ? "nbrq"[promotion - 1] : '\0',
                        '\0'};
        return isMove(*board, text);
    }

    void reportProgress() {
        if ((depths.size() & 1023) != 0) return;
        const uint32_t now = platform::getTickCount();
        if (now - lastReport < BUILD_PROGRESS_MS) return;
        std::printf("%zu positions, %zu moves, %.0f positions/s\n", tally.positions(), tally.moves(),
                    tally.positions() * 1000.0 / std::max<uint32_t>(now - start, 1));
        std::fflush(stdout);
        lastReport = now;
    }

    const std::vector<PolyglotEntry>& entries;
    const int maxPly;
    const uint32_t start;
    uint32_t lastReport;
    std::unique_ptr<Board> board = std::make_unique<Board>();
    Tally tally;
    // Each position walked, by its book key, with the nearest ply it was walked from.
    std::unordered_map<uint64_t, int> depths;
};

}  // namespace

bool isPolyglotBook(const char* path) {
    const std::string name = path;
    if (name.size() < 4) return false;
    std::string extension = name.substr(name.size() - 4);
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return extension == ".bin";
}

bool importPolyglot(const char* polyglotPath, const BookBuildOptions& options, std::string& bookPath) {
    const uint32_t start = platform::getTickCount();
    std::vector<PolyglotEntry> entries;
    if (!readEntries(polyglotPath, entries)) {
        std::printf("could not open file: %s\n", polyglotPath);
        return false;
    }
    if (!chooseBookPath(polyglotPath, options, bookPath)) return false;
    std::printf("walking Polyglot book %s...\n", polyglotPath);
    std::fflush(stdout);

    Walk walk(entries, std::clamp(options.maxPly, 1, MAX_BOOK_PLY), start);
    const Tally& tally = walk.run();
    std::printf(
        "%zu entries read: %zu reached from the start position, %u not legal there, "
        "%u promotions left out\n",
        entries.size(), walk.reached, walk.illegal, walk.promotions);
    std::printf("%zu positions, %zu moves in %.1f s\n", tally.positions(), tally.moves(),
                (platform::getTickCount() - start) / 1000.0);
    // Weights are not game results: a score threshold would judge every move at 50%.
    BookBuildOptions weights = options;
    weights.minScore = 0;
    return tally.write(polyglotPath, bookPath, weights);
}
