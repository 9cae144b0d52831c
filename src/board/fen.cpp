// Reading and writing positions as FEN text.
#include <algorithm>
#include <cctype>
#include <utility>

#include "board/board.h"
#include "board/movegen_helpers.h"
#include "board/notation.h"
#include "board/tables.h"
#include "frontend/util/log.h"

namespace {

// Letter -> kind index, 0 for a character that names no piece.
int kindOfLetter(char letter) {
    switch (letter | 32) {
        case 'p':
            return PAWN;
        case 'n':
            return KNIGHT;
        case 'k':
            return KING;
        case 'b':
            return BISHOP;
        case 'r':
            return ROOK;
        case 'q':
            return QUEEN;
        default:
            return 0;
    }
}

// One past the last slot offset of each kind, by kind index.
constexpr int KIND_END[8] = {0, PAWN_END, KNIGHT_END, KING_END, 0, BISHOP_END, ROOK_END, QUEEN_END};

bool placePiece(Board& board, char letter, int square) {
    const int kind = kindOfLetter(letter);
    const int colour = std::isupper(static_cast<unsigned char>(letter)) ? WHITE : BLACK;
    const int base = colourBase(colour);
    int slot = base + FIRST_SLOT[kind];
    while (board.pieceSquare[slot] != NO_SQUARE) ++slot;
    // A kind's range holds every piece a legal game can have; more would run into the next kind.
    if (slot >= base + KIND_END[kind]) {
        printf("Illegal FEN: too many pieces: %c\n", letter);
        return false;
    }
    board.at(square) = static_cast<uint8_t>(slot);
    board.pieceSquare[slot] = static_cast<uint8_t>(square);
    board.pieceSquare[slot + 1] = NO_SQUARE;
    board.material[colour] += materialWord[slot & 63];
    board.hash ^= pieceKey(slot, square);
    if (isPawnSlot(slot)) board.pawnHash ^= pieceKey(slot, square);
    return true;
}

const char* skipBlanks(const char* p) {
    while (*p == ' ') ++p;
    return p;
}

// Squares of the pieces of `colour` that attack `target`, up to `max`; returns how many were found.
int findAttackers(const Board& board, int colour, int target, int* found, int max) {
    int count = 0;
    const int base = colourBase(colour);
    for (int slot = base; slot < base + 64; ++slot) {
        const uint8_t square = board.pieceSquare[slot];
        if (!onBoard(square)) continue;
        if (movegen::pieceAttacks(board, square, target)) {
            if (count < max) found[count] = square;
            ++count;
        }
    }
    return count;
}

// The pseudo last move that tells the generators about a check in the position as given.
// The double push of the en-passant field explains the check only when its pawn is the checker or
// it uncovered the checker's line; otherwise the checker alone is named.
bool explainCheck(Board& board) {
    const int side = static_cast<int>(board.sideToMove);
    const int king = board.kingSquare(side);
    int checkers[3];
    const int count = findAttackers(board, side ^ 1, king, checkers, 3);
    if (count == 0) return true;
    if (count >= 3) {
        printf("Illegal FEN: triple check?!\n");
        return false;
    }
    if (count == 2) {
        if (isSliderSlot(board.at(checkers[0]))) std::swap(checkers[0], checkers[1]);
        if (isSliderSlot(board.at(checkers[0]))) {
            printf("Illegal FEN: double slider attack not possible\n");
            return false;
        }
        // Two pieces that do not move along lines cannot check at once.
        if (!isSliderSlot(board.at(checkers[1]))) {
            printf("Illegal FEN: double check without a slider\n");
            return false;
        }
        const int from = checkers[1] + direction[king - checkers[1]];
        board.lastMove = makeMoveWord(from, checkers[0], 0, MOVE_CHECKS);
        return true;
    }
    const int checker = checkers[0];
    const Move push = board.lastMove;
    if (push) {
        const int from = moveFrom(push);
        const bool direct = isPawnSlot(board.at(checker)) && checker == moveTo(push);
        const bool discovered = isSliderSlot(board.at(checker)) && direction[from - king] != 0 &&
                                direction[from - king] == direction[checker - king];
        if (direct || discovered) {
            board.lastMove = push | (direct ? MOVE_CHECK : MOVE_DISCOVERED);
            return true;
        }
    }
    board.lastMove = makeMoveWord(checker, checker, 0, MOVE_CHECK);
    return true;
}

// Reads a number field; the value is not kept. Returns the position after the field.
const char* skipNumberField(const char* p, const char* message) {
    p = skipBlanks(p);
    if (!std::isdigit(static_cast<unsigned char>(*p))) {
        while (*p && *p != ' ') ++p;
        return p;
    }
    while (std::isdigit(static_cast<unsigned char>(*p))) ++p;
    if (*p && *p != ' ') {
        Log().info(message, *p);
        while (*p && *p != ' ') ++p;
    }
    return p;
}

}  // namespace

bool Board::setFen(const char* text) {
    // Clear.
    for (auto& s : squares) s = OFF_BOARD;
    for (int rank = 0; rank < 8; ++rank)
        for (int file = 0; file < 8; ++file) at(makeSquare(file, rank)) = EMPTY;
    for (auto& s : pieceSquare) s = NO_SQUARE;
    pieceSquare[0] = 0;
    hash = 0;
    pawnHash = 0;
    sideToMove = 0;
    ply = 0;
    droppedPlies = 0;
    castling = 0;
    lastIrreversible = 0;
    epSquare = 0;
    lastMove = 0;
    promotionCount = 0;
    material[WHITE] = material[BLACK] = 0;

    // Placement.
    const char* p = text;
    int row = 7;
    int file = 0;
    for (; *p && *p != ' '; ++p) {
        if (row < 0) {
            printf("Illegal FEN: too many rows\n");
            return false;
        }
        const char c = *p;
        if (c == '/') {
            --row;
            file = 0;
        } else if (c >= '1' && c <= '8') {
            file += c - '0';
        } else if (kindOfLetter(c)) {
            if (file > 7) {
                printf("Illegal FEN: row too long\n");
                return false;
            }
            if (!placePiece(*this, c, makeSquare(file, row))) return false;
            ++file;
        } else {
            printf("invalid char in fen: %c\n", c);
            return false;
        }
    }

    // Pieces beyond the first set must come from promotions: this keeps every position within what a
    // game can reach, and so every move list within MAX_MOVES.
    for (int colour = WHITE; colour <= BLACK; ++colour) {
        const uint32_t word = material[colour];
        const int promoted = std::max(knightCount(word) - 2, 0) + std::max(bishopCount(word) - 2, 0) +
                             std::max(rookCount(word) - 2, 0) + std::max(queenCount(word) - 1, 0);
        if (pawnCount(word) + promoted > 8) {
            printf("Illegal FEN: more pieces than promotions allow\n");
            return false;
        }
    }

    // Side to move.
    p = skipBlanks(p);
    if (*p) {
        if (*p == 'b') {
            sideToMove = BLACK;
        } else if (*p != 'w') {
            printf("fen: invalid stm: %c\n", *p);
            return false;
        }
        ++p;
    }

    // Castling rights, kept only where king and rook stand on their squares.
    p = skipBlanks(p);
    const uint8_t whiteKing = WHITE_BASE + KING_SLOT;
    const uint8_t blackKing = BLACK_BASE + KING_SLOT;
    for (; *p && *p != '-' && *p != ' '; ++p) {
        switch (*p) {
            case 'K':
                if (at(0x04) == whiteKing && pieceCode[at(0x07)] == (WHITE_BIT | ROOK_BIT))
                    castling |= WHITE_SHORT;
                else
                    Log().info("castling K invalid\n");
                break;
            case 'Q':
                if (at(0x04) == whiteKing && pieceCode[at(0x00)] == (WHITE_BIT | ROOK_BIT))
                    castling |= WHITE_LONG;
                else
                    Log().info("castling Q invalid\n");
                break;
            case 'k':
                if (at(0x74) == blackKing && pieceCode[at(0x77)] == (BLACK_BIT | ROOK_BIT))
                    castling |= BLACK_SHORT;
                else
                    Log().info("castling k invalid\n");
                break;
            case 'q':
                if (at(0x74) == blackKing && pieceCode[at(0x70)] == (BLACK_BIT | ROOK_BIT))
                    castling |= BLACK_LONG;
                else
                    Log().info("castling q invalid\n");
                break;
            default:
                Log().info("setFen(): illegal castling char: %c\n", *p);
        }
    }
    if (*p == '-') ++p;
    hash ^= castlingKey[castling];

    // En passant.
    p = skipBlanks(p);
    if (*p == '-') {
        ++p;
    } else if (*p) {
        const int fileChar = static_cast<unsigned char>(p[0]);
        const int rankChar = static_cast<unsigned char>(p[1]);
        p += rankChar ? 2 : 1;
        const int square = rankChar * 16 + fileChar - 881;
        // Off-board results would index past the key table; they are as invalid as a1.
        if (square < 1 || square > 0x77 || !onBoard(square)) {
            Log().info("FEN: invalid ep square: %x\n", square);
        } else {
            if (rankOf(square) == 2)
                lastMove = makeMoveWord(square - 16, square + 16, 0, MOVE_DOUBLE_PUSH);
            else if (rankOf(square) == 5)
                lastMove = makeMoveWord(square + 16, square - 16, 0, MOVE_DOUBLE_PUSH);
            else
                Log().info("setFen() ep square on wrong row: %i\n", rankOf(square));
            epSquare = static_cast<uint32_t>(square);
            hash ^= epKey(square);
        }
    }

    // Fifty-move count and move number: read, but the record always starts counting at 0.
    p = skipNumberField(p, "illegal char in fifty: %c\n");
    p = skipNumberField(p, "illegal char in move nr: %c\n");
    p = skipBlanks(p);
    if (*p) Log().info("fenfields: %s\n", p);

    // Both kings must be there and the side not to move must not be in check: the generators
    // and makeMove rely on it, and a king that could be taken would leave its list.
    if (kingSquare(WHITE) == NO_SQUARE || kingSquare(BLACK) == NO_SQUARE) {
        printf("Illegal FEN: a king is missing\n");
        return false;
    }
    int attacker;
    if (findAttackers(*this, static_cast<int>(sideToMove), kingSquare(static_cast<int>(sideToMove ^ 1)),
                      &attacker, 1)) {
        printf("Illegal FEN: the side not to move is in check\n");
        return false;
    }
    if (!explainCheck(*this)) return false;
    if (lastMove) {
        char moveText[MOVE_TEXT_SIZE];
        moveToText(*this, moveText, lastMove);
        Log().info("fen: pseudo last move=%s\n", moveText);
    }
    return true;
}

void Board::writeFen(FILE* stream) const {
    for (int rank = 7; rank >= 0; --rank) {
        int empty = 0;
        for (int file = 0; file < 8; ++file) {
            const uint8_t code = pieceCode[at(makeSquare(file, rank))];
            if (!code) {
                ++empty;
                continue;
            }
            if (empty) fputc('0' + empty, stream);
            empty = 0;
            fputc(pieceLetter(code), stream);
        }
        if (empty) fputc('0' + empty, stream);
        if (rank) fputc('/', stream);
    }
    fputs(sideToMove ? " b " : " w ", stream);
    if (!castling) fputc('-', stream);
    if (castling & WHITE_SHORT) fputc('K', stream);
    if (castling & WHITE_LONG) fputc('Q', stream);
    if (castling & BLACK_SHORT) fputc('k', stream);
    if (castling & BLACK_LONG) fputc('q', stream);
    if (epSquare)
        fprintf(stream, " %c%c", 'a' + fileOf(static_cast<int>(epSquare)),
                '1' + rankOf(static_cast<int>(epSquare)));
    else
        fputs(" -", stream);
    fprintf(stream, " %i %i", static_cast<int>(ply - lastIrreversible), static_cast<int>(gamePly()));
}
