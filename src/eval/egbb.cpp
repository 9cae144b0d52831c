#include "eval/egbb.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "eval/evalboard.h"
#include "platform/platform.h"

using namespace eval;

EGBB egbb;

namespace {

constexpr int MIN_CACHE_MB = 16;
// The library takes its cache size in bytes as an int.
constexpr int MAX_CACHE_MB = 2047;
constexpr int LOAD_OPTIONS = 1;

// The library numbers squares 0..63 (a1 = 0, file + 8 * rank).
constexpr int librarySquare(int square) {
    return fileOf(square) + 8 * rankOf(square);
}

// Library piece codes by kind; Black's add 6.
constexpr int LIBRARY_QUEEN = 2;
constexpr int LIBRARY_ROOK = 3;
constexpr int LIBRARY_BISHOP = 4;
constexpr int LIBRARY_KNIGHT = 5;
constexpr int LIBRARY_PAWN = 6;
constexpr int LIBRARY_BLACK = 6;

// Bonus (values <= 0, subtracted) for the losing king's square: the edge in general, the corners of
// the bishop's colour with bishop and knight.
// clang-format off
constexpr int EDGE[8][8] = {
    {-75, -70, -65, -60, -60, -65, -70, -75},
    {-70, -40, -35, -30, -30, -35, -40, -70},
    {-65, -35, -5, 0, 0, -5, -35, -65},
    {-60, -30, 0, 10, 10, 0, -30, -60},
    {-60, -30, 0, 10, 10, 0, -30, -60},
    {-65, -35, -5, 0, 0, -5, -35, -65},
    {-70, -40, -35, -30, -30, -35, -40, -70},
    {-75, -70, -65, -60, -60, -65, -70, -75},
};
// clang-format on
int cornerDark(int square) {
    return -10 * std::abs(fileOf(square) + rankOf(square) - 7);
}
int cornerLight(int square) {
    return -10 * std::abs(fileOf(square) - rankOf(square));
}

bool endsInSeparator(const std::string& text) {
    return !text.empty() && (text.back() == '/' || text.back() == '\\');
}

}  // namespace

bool EGBB::load(const char* directory) {
    turnOff();
    path = directory && *directory ? directory : "egbb";
#ifndef _WIN32
    std::replace(path.begin(), path.end(), '\\', '/');  // a directory written for Windows
#endif
    if (!endsInSeparator(path)) path += '/';
    const std::string file = path + platform::bitbaseLibraryName();
    void* library = platform::loadLibrary(file);
    const std::string fallback = platform::bitbaseLibraryFallbackName();
    if (!library && !fallback.empty()) library = platform::loadLibrary(path + fallback);
    if (!library) {
        std::printf("egbb dll not found: %s\n", file.c_str());
        std::fflush(stdout);
        return false;
    }
    loadEntry = reinterpret_cast<LoadFunction>(platform::findSymbol(library, "load_egbb_5men"));
    if (!loadEntry) std::printf("EGBB: 5men load not supported\n");
    probeEntry = reinterpret_cast<ProbeFunction>(platform::findSymbol(library, "probe_egbb_5men"));
    if (!probeEntry) std::printf("EGBB: 5men probe not supported\n");
    std::fflush(stdout);
    if (!loadEntry || !probeEntry) return false;
    men = 5;
    loaded = true;
    return true;
}

void EGBB::turnOff() {
    loadEntry = nullptr;
    probeEntry = nullptr;
    loaded = false;
    initialised = false;
    men = 0;
}

bool EGBB::init(int cacheMb) {
    if (initialised || !loaded) return loaded;
    initialised = true;
    const int cache = std::clamp(cacheMb, MIN_CACHE_MB, MAX_CACHE_MB);
    loadEntry(path.data(), cache * 1048576, LOAD_OPTIONS);

    // White to move, kings a1 and h8: one, two and three more men.
    const int a1 = 0, h8 = 63, a3 = 16, b3 = 17, h7 = 55;
    const bool three = probeEntry(WHITE, a1, h8, LIBRARY_PAWN, a3, 0, 0, 0, 0) != EGBB_NOT_AVAILABLE;
    const bool four =
        probeEntry(WHITE, a1, h8, LIBRARY_PAWN, a3, LIBRARY_PAWN, b3, 0, 0) != EGBB_NOT_AVAILABLE;
    const bool five = probeEntry(WHITE, a1, h8, LIBRARY_PAWN, a3, LIBRARY_PAWN, b3,
                                 LIBRARY_PAWN + LIBRARY_BLACK, h7) != EGBB_NOT_AVAILABLE;
    std::printf("egbb.3men=%i\n", three ? 1 : 0);
    std::printf("egbb.4men=%i\n", four ? 1 : 0);
    std::printf("egbb.5men=%i\n", five ? 1 : 0);
    men = five ? 5 : four ? 4 : three ? 3 : 0;
    std::printf("EGBB: loaded, maxmen=%i, ram=%i\n", men, cache);
    std::fflush(stdout);
    return loaded;
}

bool EGBB::probe(const Board& board, int& score) const {
    // No library, no probe.
    if (!probeEntry) return false;

    // Kings are not counted.
    const uint32_t w = board.material[WHITE], b = board.material[BLACK];
    const int count = pieceCount(w) + pieceCount(b) + pawnCount(w) + pawnCount(b);
    if (count > men - 2) return false;

    // Queens, rooks, bishops, knights, pawns; White before Black within each kind.
    int pieces[3] = {0, 0, 0}, squares[3] = {0, 0, 0}, n = 0;
    const std::pair<int, int> kinds[5] = {{QUEEN_SLOT, LIBRARY_QUEEN},
                                          {ROOK_SLOT, LIBRARY_ROOK},
                                          {BISHOP_SLOT, LIBRARY_BISHOP},
                                          {KNIGHT_SLOT, LIBRARY_KNIGHT},
                                          {PAWN_SLOT, LIBRARY_PAWN}};
    for (const auto& [slot, code] : kinds)
        for (int colour = WHITE; colour <= BLACK; ++colour)
            forEachPiece(board, colour, slot, [&](int square) {
                if (n == 3) return;
                pieces[n] = code + (colour == BLACK ? LIBRARY_BLACK : 0);
                squares[n++] = librarySquare(square);
            });
    const int stm = static_cast<int>(board.sideToMove);
    const int answer =
        probeEntry(stm, librarySquare(board.kingSquare(WHITE)), librarySquare(board.kingSquare(BLACK)),
                   pieces[0], squares[0], pieces[1], squares[1], pieces[2], squares[2]);

    // A win becomes a score that still shows progress; with pawns the library's own stands.
    if (answer == EGBB_NOT_AVAILABLE) return false;
    if (answer == 0) {
        score = 0;
    } else if (answer > 0) {
        const int win = winScore(board, stm);
        score = win ? win : answer;
    } else {
        const int win = winScore(board, stm ^ 1);
        score = win ? -win : answer;
    }
    return true;
}

int winScore(const Board& board, int winner) {
    const int loser = winner ^ 1;
    const uint32_t won = board.material[winner], lost = board.material[loser];
    if (pawnCount(won) || pawnCount(lost)) return 0;
    int value = 100 * static_cast<int>(won & 255) + 5000 - 100 * static_cast<int>(lost & 255) -
                200 * pieceCount(lost);
    const int loserKing = board.kingSquare(loser);
    if (won == BISHOP_MATERIAL + KNIGHT_MATERIAL) {
        int bishop = 0;
        forEachPiece(board, winner, BISHOP_SLOT, [&](int square) { bishop = square; });
        value -= squareColour(bishop) ? cornerLight(loserKing) : cornerDark(loserKing);
    } else {
        value -= EDGE[rankOf(loserKing)][fileOf(loserKing)];
    }
    // The winning king closes in.
    value -= 10 * distance(board.kingSquare(winner), loserKing);
    return value;
}
