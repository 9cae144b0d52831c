#include "eval/imbalance.h"

#include <algorithm>
#include <array>

namespace {

// A table read past its listed entries gives 0, so counts from odd positions stay harmless.
template <std::size_t N>
constexpr int entry(const std::array<int, N>& table, int index) {
    return index >= 0 && index < static_cast<int>(N) ? table[index] : 0;
}

// Indexed by own pawns.
constexpr std::array<int, 9> KNIGHT_BY_PAWNS = {0, 5, 10, 15, 20, 25, 30, 35, 40};
constexpr std::array<int, 9> ROOK_BY_PAWNS = {50, 40, 30, 20, 10, 0, -10, -20, -30};
// Indexed by the heavy-piece index h of the side named first.
constexpr std::array<int, 6> BISHOP_VS_BISHOP_KNIGHT = {64, 82, 71, 75, 64, 56};
constexpr std::array<int, 6> BISHOP_VS_KNIGHT_ONLY = {0, 11, 15, 15, 22, 27};
constexpr std::array<int, 6> BISHOP_VS_BISHOP_NO_KNIGHT = {75, 88, 76, 62, 71, 53};
constexpr std::array<int, 6> BISHOP_PAIR_ONLY = {101, 112, 120, 102, 85, 80};
constexpr std::array<int, 6> SINGLE_BISHOP = {-6, 2, 4, -7, 13, 16};
constexpr std::array<int, 5> MINORS_FOR_ROOK2 = {-20, 48, 0, 32, 26};
constexpr std::array<int, 6> EXCHANGE_A = {0, 142, 21, 0, 35, -23};
constexpr std::array<int, 6> EXCHANGE_B = {0, 125, 33, 0, 45, -12};
constexpr std::array<int, 9> EXCHANGE_PAWNS = {0, -100, -60, -4, 12, 16, 20, 32, 32};
constexpr std::array<int, 6> EXCHANGE_BIG_A = {0, 60, -37, 0, -27, -52};
constexpr std::array<int, 6> EXCHANGE_BIG_B = {0, 36, -65, 0, -20, -70};
constexpr std::array<int, 7> EXCHANGE_BIG_PAWNS = {-50, -40, -15, 10, 20, 25, 30};
constexpr std::array<int, 2> QUEEN_VS_ROOK = {50, -16};
constexpr std::array<int, 7> QUEEN_VS_ROOK_PAWNS = {-50, 0, 5, 15, 20, 0, -20};
constexpr std::array<int, 5> QUEEN_VS_TWO_ROOKS = {-5, 43, 74, 84, 94};
constexpr std::array<int, 9> MINORS_PAWNS_A = {-100, -50, -10, 5, 15, 10, 15, 20, 25};
constexpr std::array<int, 6> MINORS_HEAVY_A = {24, 55, 38, 49, -16, 33};
constexpr std::array<int, 9> MINORS_PAWNS_B = {-100, -50, 12, 12, 12, 25, 30, 35, 40};
constexpr std::array<int, 6> MINORS_HEAVY_B = {-5, 60, -25, 50, 0, -20};

struct Side {
    int pawns, knights, bishops, rooks, queens, minors, heavy;

    explicit Side(uint32_t word)
        : pawns(pawnCount(word)),
          knights(knightCount(word)),
          bishops(bishopCount(word)),
          rooks(rookCount(word)),
          queens(queenCount(word)),
          minors(knights + bishops),
          heavy(std::min(3 * queens + rooks, 7)) {}
};

// The bishops' term for the side x with more bishops than y, from x's view.
int bishopTerm(const Side& x, const Side& y) {
    if (x.knights) return entry(y.bishops ? BISHOP_VS_BISHOP_KNIGHT : BISHOP_VS_KNIGHT_ONLY, x.heavy);
    if (y.bishops) return entry(BISHOP_VS_BISHOP_NO_KNIGHT, x.heavy);
    return entry(x.bishops <= 1 ? SINGLE_BISHOP : BISHOP_PAIR_ONLY, x.heavy);
}

// A minor piece against the exchange: what the side with the extra rook (y) gets, from y's view, when
// x has the extra minor.
int exchangeTerm(const Side& x, const Side& y) {
    const bool knightsEqual = x.knights == y.knights;
    if (x.pawns > y.pawns + 1)
        return entry(knightsEqual ? EXCHANGE_BIG_B : EXCHANGE_BIG_A, y.heavy) +
               entry(EXCHANGE_BIG_PAWNS, y.pawns);
    return entry(knightsEqual ? EXCHANGE_B : EXCHANGE_A, y.heavy) + entry(EXCHANGE_PAWNS, y.pawns);
}

// The queen against rooks, from the view of x, which has the queen that y lacks.
int queenTerm(const Side& x, const Side& y) {
    if (y.rooks - x.rooks == 1) return entry(QUEEN_VS_ROOK, x.rooks) + entry(QUEEN_VS_ROOK_PAWNS, x.pawns);
    if (y.rooks - x.rooks == 2) return entry(QUEEN_VS_TWO_ROOKS, x.minors);
    if (y.rooks == x.rooks && y.minors - x.minors >= 3) return -50;
    return 0;
}

// Extra minor pieces with equal rooks and queens, from the view of x, which has more of them.
int minorsTerm(const Side& x, const Side& y) {
    if (x.bishops > y.bishops) return entry(MINORS_PAWNS_A, x.pawns) + entry(MINORS_HEAVY_A, x.heavy);
    return entry(MINORS_PAWNS_B, x.pawns) + entry(MINORS_HEAVY_B, x.heavy);
}

}  // namespace

int evalImbalance(const Board& board) {
    if (board.material[WHITE] == board.material[BLACK]) return 0;
    const Side w(board.material[WHITE]);
    const Side b(board.material[BLACK]);

    // Knights gain and rooks lose as pawns are added.
    int v = w.knights * entry(KNIGHT_BY_PAWNS, w.pawns) + w.rooks * entry(ROOK_BY_PAWNS, w.pawns) -
            b.rooks * entry(ROOK_BY_PAWNS, b.pawns) - b.knights * entry(KNIGHT_BY_PAWNS, b.pawns);

    // Bishops.
    if (w.bishops != b.bishops) {
        v += 25 * (w.bishops - b.bishops);
        v += w.bishops > b.bishops ? bishopTerm(w, b) : -bishopTerm(b, w);
    }

    // Rooks and queens that differ.
    if (w.rooks != b.rooks || w.queens != b.queens) {
        const bool queensAlike = (w.queens > 0) == (b.queens > 0);
        if (queensAlike) {
            switch (w.minors - b.minors) {
                case 2:
                    v += entry(MINORS_FOR_ROOK2, w.heavy);
                    break;
                case -2:
                    v -= entry(MINORS_FOR_ROOK2, b.heavy);
                    break;
                case 1:
                    v -= exchangeTerm(w, b);
                    break;
                case -1:
                    v += exchangeTerm(b, w);
                    break;
                default:
                    break;
            }
        } else if (w.queens) {
            v += queenTerm(w, b);
        } else {
            v -= queenTerm(b, w);
        }
    } else if (w.minors != b.minors) {
        // Only the minor pieces differ.
        v += w.minors > b.minors ? minorsTerm(w, b) : -minorsTerm(b, w);
    }
    return v;
}
