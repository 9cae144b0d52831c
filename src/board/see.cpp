// Static exchange evaluation with x-ray attackers behind the pieces that capture.
#include "board/see.h"

#include "board/movegen_helpers.h"
#include "board/tables.h"

using namespace movegen;

namespace {

// A list kept in falling value, so the cheapest attacker is at the end.
struct Attackers {
    SeeAttacker entry[MAX_SEE_ATTACKERS];
    int count = 0;

    void insert(int square, int value) {
        if (count == MAX_SEE_ATTACKERS) return;
        int i = count++;
        while (i > 0 && entry[i - 1].value < value) {
            entry[i] = entry[i - 1];
            --i;
        }
        entry[i] = {static_cast<uint8_t>(square), static_cast<uint8_t>(value)};
    }
};

// The first piece behind `square` seen from `to`, if it belongs to colour and attacks `to` along that
// line, joins the list.
[[gnu::always_inline]] inline void addXray(const Board& board, Attackers& list, int colour, int to,
                                           int square) {
    const int step = direction[square - to];
    if (!step) return;
    int behind = square + step;
    while (board.at(behind) == EMPTY) behind += step;
    const uint8_t slot = board.at(behind);
    if (isColour(slot, colourBase(colour)) && onBoard(board.pieceSquare[slot]) &&
        (attackMask[to - behind] & pieceCode[slot]))
        list.insert(behind, seeValue[slot & 63]);
}

// Whether colour's king stands next to square.
bool kingBeside(const Board& board, int colour, int square) {
    return (attackMask[square - board.kingSquare(colour)] & KING_BIT) != 0;
}

// One instance per colour, inlined into the exchange (the kinds' walks too): the calls and the colour's
// base and pawn step cost about as much as the walks themselves.
template <int colour>
[[gnu::always_inline]] inline int attackersOf(SeeAttacker* list, const Board& board, int square) {
    constexpr int base = colourBase(colour);
    const uint32_t material = board.material[colour];
    int count = 0;
    // One kind's list: every entry shares the kind's code and value, and a kind the material word
    // counts none of (captured pieces stay listed) is not walked at all.
    auto addKind = [&](int first, uint8_t code, int value) __attribute__((always_inline)) {
        int from;
        for (int slot = base + first; (from = board.pieceSquare[slot]) != NO_SQUARE; ++slot)
            if (onBoard(from) && (attackMask[square - from] & code) &&
                (code == KNIGHT_BIT || pathClear(board, square, from)) && count < MAX_SEE_ATTACKERS)
                list[count++] = {static_cast<uint8_t>(from), static_cast<uint8_t>(value)};
    };
    if (queenCount(material)) addKind(QUEEN_SLOT, QUEEN_BITS, 10);
    if (rookCount(material)) addKind(ROOK_SLOT, ROOK_BIT, 5);
    if (bishopCount(material)) addKind(BISHOP_SLOT, BISHOP_BIT, 3);
    if (knightCount(material)) addKind(KNIGHT_SLOT, KNIGHT_BIT, 3);
    for (int pawn : {square - pawnStep(colour) - 1, square - pawnStep(colour) + 1}) {
        const uint8_t slot = board.at(pawn);
        if (isPawnOf(slot, base) && onBoard(board.pieceSquare[slot]) && count < MAX_SEE_ATTACKERS)
            list[count++] = {static_cast<uint8_t>(pawn), 1};
    }
    return count;
}

// SEE value of the piece a promotion puts on the board, by promotion kind.
constexpr int PROMOTED_VALUE[8] = {0, 1, 3, 0, 0, 3, 5, 10};

// see for one side to move.
template <int side>
int exchange(Board& board, Move move) {
    const int from = moveFrom(move);
    const int to = moveTo(move);
    const uint8_t mover = board.at(from);

    // The opponent's attackers, with the moving piece lifted off its square.
    Attackers lists[2];
    board.at(from) = EMPTY;
    lists[side ^ 1].count = attackersOf<side ^ 1>(lists[side ^ 1].entry, board, to);
    board.at(from) = mover;

    // The first gain.
    const int promotion = promotionKind(move);
    int gain[2 * MAX_SEE_ATTACKERS + 4];
    gain[0] = seeValue[capturedSlot(move) & 63] + (promotion == QUEEN ? 8 : 0);

    // Nothing can take back.
    if (!lists[side ^ 1].count && !kingBeside(board, side ^ 1, to)) return gain[0];

    // The mover's further attackers, and the one behind the moving piece.
    board.pieceSquare[mover] = static_cast<uint8_t>(board.pieceSquare[mover] + SET_ASIDE);
    const int found = attackersOf<side>(lists[side].entry, board, to);
    board.pieceSquare[mover] = static_cast<uint8_t>(board.pieceSquare[mover] - SET_ASIDE);
    // attackersOf fills in falling value already; insert keeps that order.
    lists[side].count = found;
    addXray(board, lists[side], side, to, from);

    // Alternate captures with the cheapest attacker; a king takes last, and only when the other
    // side has nothing left.
    int standing = promotion ? PROMOTED_VALUE[promotion] : seeValue[mover & 63];
    int depth = 0;
    int turn = side ^ 1;
    while (true) {
        Attackers& own = lists[turn];
        int square;
        bool king = false;
        if (own.count) {
            square = own.entry[--own.count].square;
        } else if (!lists[turn ^ 1].count && kingBeside(board, turn, to) &&
                   !kingBeside(board, turn ^ 1, to)) {
            square = board.kingSquare(turn);
            king = true;
        } else {
            break;
        }
        ++depth;
        gain[depth] = standing - gain[depth - 1];
        if (king) break;
        standing = seeValue[board.at(square) & 63];
        addXray(board, own, turn, to, square);
        turn ^= 1;
    }

    // Each side stops where going on would lose.
    while (depth > 0) {
        --depth;
        if (-gain[depth + 1] < gain[depth]) gain[depth] = -gain[depth + 1];
    }
    return gain[0];
}

}  // namespace

int collectAttackers(SeeAttacker* list, const Board& board, int colour, int square) {
    return colour == WHITE ? attackersOf<WHITE>(list, board, square)
                           : attackersOf<BLACK>(list, board, square);
}

int see(Board& board, int side, Move move) {
    return side == WHITE ? exchange<WHITE>(board, move) : exchange<BLACK>(board, move);
}
