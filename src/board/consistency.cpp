// The consistency test: everything kept incrementally, recomputed from the squares.
#include "board/board.h"
#include "board/tables.h"
#include "frontend/util/log.h"

namespace {

// One past the last slot offset of each kind's range, in slot order.
struct KindRange {
    int first;
    int end;
};
constexpr KindRange KIND_RANGES[6] = {{KING_SLOT, KING_END},     {PAWN_SLOT, PAWN_END},
                                      {KNIGHT_SLOT, KNIGHT_END}, {BISHOP_SLOT, BISHOP_END},
                                      {ROOK_SLOT, ROOK_END},     {QUEEN_SLOT, QUEEN_END}};

}  // namespace

bool Board::check(const char* label) const {
    Log log;
    bool ok = true;
    // Off-board bytes hold the off-board slot; real squares and lists point at each other.
    uint8_t offBoard = 0;
    for (int index = 0; index < SQUARES_OFFSET; ++index) offBoard |= squares[index] ^ OFF_BOARD;
    for (int index = SQUARES_OFFSET + 128; index < 256; ++index) offBoard |= squares[index] ^ OFF_BOARD;
    for (int rank = 0; rank < 8; ++rank)
        for (int file = 8; file < 16; ++file) offBoard |= at(rank * 16 + file) ^ OFF_BOARD;
    if (offBoard) {
        log.warning(" %s wrong index: sq=%x, col=%x, i=%x, ix=%x=%x\n", label, 0x88, 2, offBoard ^ OFF_BOARD,
                    0, 0);
        ok = false;
    }
    for (int rank = 0; rank < 8; ++rank) {
        for (int file = 0; file < 8; ++file) {
            const int square = makeSquare(file, rank);
            const uint8_t slot = at(square);
            if (slot == EMPTY) continue;
            if (slot >= 192 || !(pieceCode[slot] & 63) || pieceSquare[slot] != square) {
                log.warning(" %s wrong index: sq=%x, col=%x, i=%x, ix=%x=%x\n", label, square, slot >> 7,
                            slot, slot < 192 ? pieceSquare[slot] : 0, slot);
                ok = false;
            }
        }
    }
    for (int colour = WHITE; colour <= BLACK; ++colour) {
        const int base = colourBase(colour);
        for (const KindRange& range : KIND_RANGES) {
            // A list runs from the kind's first slot to its end mark; entries of captured pieces and
            // pawns that promoted stay in it with the set-aside bit.
            bool ended = false;
            for (int slot = base + range.first; slot <= base + range.end; ++slot) {
                const uint8_t square = pieceSquare[slot];
                if (square == NO_SQUARE) {
                    ended = true;
                    continue;
                }
                const bool wrong = ended || slot == base + range.end ||
                                   (onBoard(square) ? at(square) != slot : !onBoard(square ^ SET_ASIDE));
                if (wrong) {
                    log.warning(" %s wrong index: sq=%x, col=%x, i=%x, ix=%x=%x\n", label, square, colour,
                                slot, square, onBoard(square) ? at(square) : 0);
                    ok = false;
                }
            }
        }
    }
    if (pieceSquare[0] != 0 || kingSquare(WHITE) == NO_SQUARE || kingSquare(BLACK) == NO_SQUARE ||
        !onBoard(kingSquare(WHITE)) || !onBoard(kingSquare(BLACK))) {
        log.warning(" %s wrong index: sq=%x, col=%x, i=%x, ix=%x=%x\n", label, 0, 0, 0, pieceSquare[0], 0);
        ok = false;
    }

    // Keys and material.
    uint64_t key = castlingKey[castling & 15];
    uint64_t pawnKey = 0;
    uint32_t words[2] = {0, 0};
    if (epSquare) key ^= epKey(static_cast<int>(epSquare & 127));
    for (int rank = 0; rank < 8; ++rank) {
        for (int file = 0; file < 8; ++file) {
            const int square = makeSquare(file, rank);
            const uint8_t slot = at(square);
            if (slot == EMPTY || slot >= 192) continue;
            key ^= pieceKey(slot, square);
            if (isPawnSlot(slot)) pawnKey ^= pieceKey(slot, square);
            words[colourOfSlot(slot)] += materialWord[slot & 63];
        }
    }
    if (key != hash || pawnKey != pawnHash) {
        log.warning(": hash not ok: %s\n", label);
        ok = false;
    }
    if (words[WHITE] != material[WHITE]) {
        log.warning("%s: WhiteMaterial not ok: %x!=%x\n", label, material[WHITE], words[WHITE]);
        ok = false;
    }
    if (words[BLACK] != material[BLACK]) {
        log.warning("%s: BlackMaterial not ok: %x!=%x\n", label, material[BLACK], words[BLACK]);
        ok = false;
    }
    return ok;
}
