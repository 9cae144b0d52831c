// Playing moves on the board, and putting special moves back.
#include "board/makemove.h"

#include <cassert>

#include "board/movegen.h"
#include "board/movegen_helpers.h"

namespace {

// Whether the first piece met walking from `king` through `square` is a slider of the colour with
// `colourBitOfSlider` that moves along that line. Inlined by force, like movePiece: with play compiled
// twice (with and without check bits) the compiler stops inlining them, and a call for every move made
// costs more than the copies.
[[gnu::always_inline]] inline bool sliderBehind(const Board& board, int king, int square,
                                                uint8_t colourBitOfSlider) {
    const int step = direction[square - king];
    if (!step) return false;
    int s = king + step;
    while (board.at(s) == EMPTY) s += step;
    const uint8_t bit = movegen::lineBit(step);
    return (pieceCode[board.at(s)] & (WHITE_BIT | BLACK_BIT | bit)) == (colourBitOfSlider | bit);
}

// The check bits of the move just made, for the side now to move.
Move checkBits(const Board& board, Move move, int from, int to) {
    const int king = board.kingSquare(static_cast<int>(board.sideToMove));
    const uint8_t mover = colourBit(static_cast<int>(board.sideToMove ^ 1));
    Move bits = 0;
    if (move & MOVE_CASTLING) {
        if (movegen::pieceAttacks(board, (from + to) / 2, king)) bits |= MOVE_CHECK;
        return bits;
    }
    const int step = direction[from - king];
    if (step && direction[to - king] != step && sliderBehind(board, king, from, mover))
        bits |= MOVE_DISCOVERED;
    if ((move & MOVE_EN_PASSANT) && sliderBehind(board, king, to ^ 16, mover)) bits |= MOVE_DISCOVERED;
    if (movegen::pieceAttacks(board, to, king)) bits |= MOVE_CHECK;
    return bits;
}

[[gnu::always_inline]] inline void movePiece(Board& board, int from, int to) {
    const uint8_t slot = board.at(from);
    board.at(from) = EMPTY;
    board.at(to) = slot;
    board.pieceSquare[slot] = static_cast<uint8_t>(to);
    board.hash ^= pieceKey(slot, from) ^ pieceKey(slot, to);
}

// The castling key table ORs the keys of the rights, so a change of rights swaps whole entries: the
// key stays a function of the position whatever order the rights are lost in.
void setCastling(Board& board, uint8_t rights) {
    board.hash ^= castlingKey[board.castling] ^ castlingKey[rights];
    board.castling = rights;
}

void clearEpSquare(Board& board) {
    if (board.epSquare) board.hash ^= epKey(static_cast<int>(board.epSquare));
    board.epSquare = 0;
}

// The rook's corner for a castling move, from the square the king passes over.
constexpr int rookCorner(int passed) {
    return passed ^ 2 ^ ((passed & 2) >> 1);
}

// Undoes the common start of makeMove for a refused move.
Move refuse(Board& board) {
    board.ply -= 1;
    return NO_MOVE;
}

// The move as returned: its check bits worked out, or cleared for a leaf.
template <bool CHECKS>
Move withCheckBits(const Board& board, Move move, int from, int to) {
    return (move & ~MOVE_CHECKS) | (CHECKS ? checkBits(board, move, from, to) : 0);
}

template <bool CHECKS>
Move makeEnPassant(Board& board, Move move, int from, int to) {
    const int side = static_cast<int>(board.sideToMove);
    const int taken = to ^ 16;
    const uint8_t takenSlot = board.at(taken);
    const uint8_t pawn = board.at(from);
    const int king = board.kingSquare(side);
    const uint8_t enemy = colourBit(side ^ 1);
    // With the taken pawn lifted, leaving the from-square must not open a line to the king;
    // this catches the rank where both pawns stood between king and rook. The taken pawn's own line is
    // tested too, for positions set up with an en-passant square no real game could reach.
    board.at(taken) = EMPTY;
    board.at(from) = EMPTY;
    board.at(to) = pawn;
    const int step = direction[from - king];
    const bool opensFromLine = step && direction[to - king] != step && sliderBehind(board, king, from, enemy);
    const bool opensTakenLine = sliderBehind(board, king, taken, enemy);
    board.at(to) = EMPTY;
    board.at(from) = pawn;
    if (opensFromLine || opensTakenLine) {
        board.at(taken) = takenSlot;
        return refuse(board);
    }
    board.pieceSquare[takenSlot] = static_cast<uint8_t>(board.pieceSquare[takenSlot] + SET_ASIDE);
    board.hash ^= pieceKey(takenSlot, taken);
    board.pawnHash ^= pieceKey(takenSlot, taken) ^ pieceKey(pawn, from) ^ pieceKey(pawn, to);
    clearEpSquare(board);
    board.material[side ^ 1] -= PAWN_MATERIAL;
    movePiece(board, from, to);
    board.lastIrreversible = static_cast<uint16_t>(board.ply);
    board.sideToMove ^= 1;
    return withCheckBits<CHECKS>(board, move, from, to);
}

template <bool CHECKS>
Move makeCastling(Board& board, Move move, int from, int to) {
    const int side = static_cast<int>(board.sideToMove);
    const int passed = (from + to) / 2;
    if (isAttacked(board, side ^ 1, to) || isAttacked(board, side ^ 1, passed)) return refuse(board);
    setCastling(board, board.castling & castleKeep[from]);
    movePiece(board, from, to);
    movePiece(board, rookCorner(passed), passed);
    clearEpSquare(board);
    board.sideToMove ^= 1;
    return withCheckBits<CHECKS>(board, move, from, to);
}

template <bool CHECKS>
Move play(Board& board, Move move) {
    // The history has a fixed size; a line that would run past it is refused.
    if (board.ply >= MAX_PLY_HISTORY) return NO_MOVE;
    board.moves[board.ply] = move;
    board.hashHistory[board.ply] = board.hash;
    board.ply += 1;
    const int from = moveFrom(move);
    const int to = moveTo(move);
    if (move & MOVE_EN_PASSANT) return makeEnPassant<CHECKS>(board, move, from, to);
    if (move & MOVE_CASTLING) return makeCastling<CHECKS>(board, move, from, to);

    const int side = static_cast<int>(board.sideToMove);
    const int promotion = promotionKind(move);
    uint8_t newSlot = 0;
    if (promotion) {
        // The first free slot of the kind; a full kind or a full stack refuses the move (no legal game
        // gets there: these guard set-up positions with many promoted pieces).
        const int base = colourBase(side);
        newSlot = static_cast<uint8_t>(base + FIRST_SLOT[promotion]);
        while (board.pieceSquare[newSlot] != NO_SQUARE) ++newSlot;
        const uint8_t limit =
            static_cast<uint8_t>(base + (promotion == QUEEN ? QUEEN_END : FIRST_SLOT[promotion] + 10));
        if (newSlot >= limit || board.promotionCount >= PROMOTION_STACK_SIZE) return refuse(board);
    }

    // Castling rights, capture, promotion, en-passant square, the move itself.
    const uint8_t keep = castleKeep[from] & castleKeep[to];
    if (board.castling & ~keep) setCastling(board, board.castling & keep);
    const int captured = capturedSlot(move);
    if (captured) {
        board.pieceSquare[captured] = static_cast<uint8_t>(board.pieceSquare[captured] + SET_ASIDE);
        board.hash ^= pieceKey(captured, to);
        if (isPawnSlot(captured)) board.pawnHash ^= pieceKey(captured, to);
        board.material[side ^ 1] -= materialWord[captured & 63];
        board.lastIrreversible = static_cast<uint16_t>(board.ply);
    }
    clearEpSquare(board);
    const uint8_t slot = board.at(from);
    if (promotion) {
        board.promotionStack[board.promotionCount++] = slot;
        board.pieceSquare[slot] = static_cast<uint8_t>(from + SET_ASIDE);
        board.pieceSquare[newSlot + 1] = NO_SQUARE;
        board.hash ^= pieceKey(slot, from) ^ pieceKey(newSlot, to);
        board.pawnHash ^= pieceKey(slot, from);
        board.material[side] += materialWord[newSlot & 63] - PAWN_MATERIAL;
        board.at(from) = EMPTY;
        board.at(to) = newSlot;
        board.pieceSquare[newSlot] = static_cast<uint8_t>(to);
        board.lastIrreversible = static_cast<uint16_t>(board.ply);
    } else {
        if (isPawnSlot(slot)) {
            board.pawnHash ^= pieceKey(slot, from) ^ pieceKey(slot, to);
            board.lastIrreversible = static_cast<uint16_t>(board.ply);
            // Only a pawn that can take en passant makes the square (and its key) exist.
            if (move & MOVE_DOUBLE_PUSH) {
                const uint8_t enemyPawns = static_cast<uint8_t>(colourBase(side ^ 1) + PAWN_SLOT);
                if (static_cast<uint8_t>(board.at(to - 1) - enemyPawns) < 8 ||
                    static_cast<uint8_t>(board.at(to + 1) - enemyPawns) < 8) {
                    board.epSquare = static_cast<uint32_t>(to ^ 16);
                    board.hash ^= epKey(to ^ 16);
                }
            }
        }
        movePiece(board, from, to);
    }
    board.sideToMove ^= 1;
    return withCheckBits<CHECKS>(board, move, from, to);
}

template <bool CHECKS>
Move playAndRecord(Board& board, Move move) {
    const Move made = play<CHECKS>(board, move);
    if (made) board.lastMove = made;
    assert(board.check("make"));
    return made;
}

}  // namespace

Move makeMove(Board& board, Move move) {
    return playAndRecord<true>(board, move);
}

Move makeLeafMove(Board& board, Move move) {
    return playAndRecord<false>(board, move);
}

void unmakeMove(Board& board, Move move) {
    const int from = moveFrom(move);
    const int to = moveTo(move);
    const int side = static_cast<int>(board.sideToMove);
    if (move & MOVE_EN_PASSANT) {
        const int taken = to ^ 16;
        const int takenSlot = capturedSlot(move);
        const uint8_t pawn = board.at(to);
        board.at(to) = EMPTY;
        board.at(from) = pawn;
        board.pieceSquare[pawn] = static_cast<uint8_t>(from);
        board.at(taken) = static_cast<uint8_t>(takenSlot);
        board.pieceSquare[takenSlot] = static_cast<uint8_t>(board.pieceSquare[takenSlot] + SET_ASIDE);
        board.material[side ^ 1] += PAWN_MATERIAL;
        return;
    }
    if (move & MOVE_CASTLING) {
        const int passed = (from + to) / 2;
        const int corner = rookCorner(passed);
        const uint8_t king = board.at(to);
        const uint8_t rook = board.at(passed);
        board.at(to) = EMPTY;
        board.at(passed) = EMPTY;
        board.at(from) = king;
        board.at(corner) = rook;
        board.pieceSquare[king] = static_cast<uint8_t>(from);
        board.pieceSquare[rook] = static_cast<uint8_t>(corner);
        return;
    }
    // A promotion (possibly capturing).
    const uint8_t promoted = board.at(to);
    board.pieceSquare[promoted] = NO_SQUARE;
    board.material[side] += PAWN_MATERIAL - materialWord[promoted & 63];
    const uint8_t pawn = board.promotionStack[--board.promotionCount];
    board.at(from) = pawn;
    board.pieceSquare[pawn] = static_cast<uint8_t>(from);
    const int captured = capturedSlot(move);
    board.at(to) = static_cast<uint8_t>(captured);
    if (captured) {
        board.pieceSquare[captured] = static_cast<uint8_t>(board.pieceSquare[captured] + SET_ASIDE);
        board.material[side ^ 1] += materialWord[captured & 63];
    }
}

bool makeNullMove(Board& board) {
    if (board.ply >= MAX_PLY_HISTORY) return false;
    board.moves[board.ply] = NO_MOVE;
    board.hashHistory[board.ply] = board.hash;
    board.ply += 1;
    clearEpSquare(board);
    board.sideToMove ^= 1;
    board.lastMove = NO_MOVE;
    assert(board.check("null move"));
    return true;
}

void takeBackNullMove(Board& board, const SavedState& saved) {
    board.sideToMove ^= 1;
    board.epSquare = saved.epSquare;
    board.lastMove = saved.lastMove;
    board.ply -= 1;
    board.hash = board.hashHistory[board.ply];
    assert(board.check("null move taken back"));
}
