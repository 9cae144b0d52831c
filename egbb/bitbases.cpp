// The endgame bitbase library that the engine loads at run time (egbbso64.so), answering from the
// Gaviota endgame tables through the Gaviota probing library.
//
// Its two entry points take positions as the engine passes them: side to move (0 White, 1 Black),
// the two kings, then up to three (piece, square) pairs, a pair without a piece being 0. Squares are
// 0..63 (a1 = 0, file + 8 * rank), as the tables number them. Piece codes: White queen 2, rook 3,
// bishop 4, knight 5, pawn 6; Black's the same plus 6. Answers are from the side to move's view.
#include <gtb-probe.h>

#include <mutex>
#include <shared_mutex>
#include <string>

#define BITBASES_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

constexpr int NOT_AVAILABLE = 99999;
// A win in n plies scores WIN - n, a loss n - WIN: the engine counts scores of 3000 and more as decided,
// and its own scores for won endings without pawns start near 4700, so a pawn ending that reaches one
// of those (a promotion, the last pawn taken) still looks like progress.
constexpr int WIN = 4000;

constexpr int BLACK_CODES = 6;
constexpr int PAWN_CODE = 6;

// The tables' cache holds distances to mate only: every probe asks for one.
constexpr int WDL_FRACTION = 0;

// Loading replaces the tables and their cache, which no probe may be reading meanwhile; probes
// share the lock because the probing library guards its own state across threads.
std::shared_mutex tablesLock;
bool ready = false;
// The probing library keeps the list of folders while the tables are in use.
const char** folders = nullptr;
std::string folderNames[2];

// Kings first, then the pieces in the order given, each side's list ending in the tables' markers.
struct Position {
    unsigned squares[2][5];
    unsigned char pieces[2][5];
    int counts[2] = {0, 0};

    void add(int colour, unsigned square, unsigned char piece) {
        squares[colour][counts[colour]] = square;
        pieces[colour][counts[colour]++] = piece;
    }
    void close() {
        for (int colour = 0; colour < 2; ++colour) {
            squares[colour][counts[colour]] = tb_NOSQUARE;
            pieces[colour][counts[colour]] = tb_NOPIECE;
        }
    }
};

bool onBoard(int square) {
    return square >= 0 && square < 64;
}

// Fills position from the entry point's arguments; false for a square off the board or taken twice
// and for an unknown piece code, which the probing library must never see (it answers illegal
// positions, such as a pawn on the first or last rank, itself).
bool describe(int player, const int (&men)[8], Position& position) {
    if (player != 0 && player != 1) return false;
    bool taken[64] = {};
    for (int colour = 0; colour < 2; ++colour) {
        if (!onBoard(men[colour]) || taken[men[colour]]) return false;
        taken[men[colour]] = true;
        position.add(colour, static_cast<unsigned>(men[colour]), tb_KING);
    }
    for (int i = 2; i < 8; i += 2) {
        const int code = men[i], square = men[i + 1];
        if (code == 0) continue;
        const int colour = code > BLACK_CODES ? 1 : 0;
        const int kind = code - colour * BLACK_CODES;
        if (kind < 2 || kind > PAWN_CODE || !onBoard(square) || taken[square]) return false;
        taken[square] = true;
        // Queen 2 .. pawn 6 become the tables' queen 5 .. pawn 1.
        position.add(colour, static_cast<unsigned>(square), static_cast<unsigned char>(7 - kind));
    }
    position.close();
    return true;
}

void unload() {
    ready = false;
    if (tbcache_is_on()) tbcache_done();
    if (tb_is_initialized()) tb_done();
    if (folders) folders = tbpaths_done(folders);
}

}  // namespace

// Opens the tables in path and, after them, in the folder where Debian installs its own, with a
// cache of cacheBytes. The tables are read on demand whatever the load option says.
BITBASES_EXPORT void load_egbb_5men(char* path, int cacheBytes, int /*loadOptions*/) {
    std::unique_lock lock(tablesLock);
    unload();
    folderNames[0] = path ? path : "";
    folderNames[1] = GAVIOTA_DEBIAN_TABLES;
    folders = tbpaths_init();
    for (const std::string& name : folderNames)
        if (!name.empty()) folders = tbpaths_add(folders, name.c_str());
    tb_init(0, tb_CP4, folders);
    tbcache_init(cacheBytes > 0 ? static_cast<size_t>(cacheBytes) : 0, WDL_FRACTION);
    ready = tb_is_initialized() != 0;
}

BITBASES_EXPORT int probe_egbb_5men(int player, int wKing, int bKing, int piece1, int square1, int piece2,
                                    int square2, int piece3, int square3) {
    const int men[8] = {wKing, bKing, piece1, square1, piece2, square2, piece3, square3};
    Position position;
    if (!describe(player, men, position)) return NOT_AVAILABLE;
    unsigned info = tb_UNKNOWN, plies = 0;
    {
        std::shared_lock lock(tablesLock);
        if (!ready ||
            !tb_probe_hard(static_cast<unsigned>(player), tb_NOSQUARE, tb_NOCASTLE, position.squares[0],
                           position.squares[1], position.pieces[0], position.pieces[1], &info, &plies))
            return NOT_AVAILABLE;
    }
    if (info == tb_DRAW) return 0;
    if (info != tb_WMATE && info != tb_BMATE) return NOT_AVAILABLE;  // an illegal position
    const bool moverWins = (info == tb_WMATE) == (player == 0);
    const int score = WIN - static_cast<int>(plies);
    return moverWins ? score : -score;
}
