// Move text: writing the board's own form, reading what people and programs type.
#include "board/notation.h"

#include <cstdio>
#include <cstring>

#include "board/makemove.h"
#include "board/movegen.h"
#include "board/tables.h"

void moveToText(const Board& board, char* text, Move move) {
    char* p = text;
    // No move.
    if (!move) {
        strcpy(text, "%");
        return;
    }
    const int from = moveFrom(move);
    const int to = moveTo(move);
    // Castling.
    if (move & MOVE_CASTLING) {
        strcpy(text, to > from ? "o-o" : "o-o-o");
        return;
    }
    // The piece letter; the from-square is empty once the move has been made, and the piece that
    // arrived names the move then: a promotion shows its new piece.
    if (onBoard(from)) {
        uint8_t slot = board.at(from);
        if (slot == EMPTY) slot = board.at(to);
        const uint8_t code = pieceCode[slot];
        const int kind = kindOfCode(code);
        if (kind && kind != PAWN) *p++ = static_cast<char>(PIECE_LETTERS[kind] & ~32);
    }
    // Squares, capture, promotion, check marks.
    *p++ = static_cast<char>('a' + fileOf(from));
    *p++ = static_cast<char>('1' + rankOf(from));
    if (isCapture(move)) *p++ = 'x';
    *p++ = static_cast<char>('a' + fileOf(to));
    *p++ = static_cast<char>('1' + rankOf(to));
    if (promotionKind(move)) {
        *p++ = '=';
        *p++ = static_cast<char>(PIECE_LETTERS[promotionKind(move)] & ~32);
    }
    if (move & MOVE_CHECK) *p++ = '+';
    if (move & MOVE_DISCOVERED) *p++ = '+';
    *p = 0;
}

namespace {

// What a move text says; -1 (or 0 for letters) where it says nothing.
struct MoveText {
    int toFile = -1;
    int toRank = -1;
    int fromFile = -1;
    int fromRank = -1;
    char piece = 0;      // capital letter of the moving piece
    char promotion = 0;  // capital letter of the promotion kind
    int castles = 0;     // count of 'O' and 'o'
};

// Reading: the text from its end back to its start. False (with the message) on a bad character.
bool readMoveText(const char* text, MoveText& m) {
    const int length = static_cast<int>(strlen(text));
    for (int i = length - 1; i >= 0; --i) {
        const char c = text[i];
        if (c == 'b' && i == length - 1 && length >= 5 && text[0] >= 'a' && text[0] <= 'h') {
            m.promotion = 'B';
            m.piece = 'P';
        } else if (c >= 'a' && c <= 'h') {
            if (m.toFile < 0)
                m.toFile = c - 'a';
            else if (m.fromFile < 0)
                m.fromFile = c - 'a';
        } else if (c >= '1' && c <= '8') {
            if (m.toRank < 0)
                m.toRank = c - '1';
            else if (m.fromRank < 0)
                m.fromRank = c - '1';
        } else if (strchr("BNQRnqr", c)) {
            const char capital = static_cast<char>(c & ~32);
            if (m.toFile < 0) {
                m.promotion = capital;
                m.piece = 'P';
            } else {
                m.piece = capital;
            }
        } else if (c == 'K' || c == 'P') {
            m.piece = c;
        } else if (c == 'O' || c == 'o') {
            m.castles += 1;
        } else if (!strchr("!#+-=?x", c)) {
            printf("illegal char in move %s: %c\n", text, c);
            return false;
        }
    }
    return true;
}

// Settling what kind of text it is; false when it cannot name a move.
bool settleMoveText(MoveText& m) {
    if (m.piece) return m.toFile >= 0 && m.toRank >= 0;
    if (m.castles == 2 || m.castles == 3) {
        m.piece = 'K';
        m.fromFile = 4;
        m.toFile = m.castles == 2 ? 6 : 2;
        return true;
    }
    if (m.castles) return false;
    if (m.fromFile >= 0 && m.fromRank >= 0 && m.toFile >= 0 && m.toRank >= 0) return true;
    m.piece = 'P';
    return (m.toFile >= 0 && m.toRank >= 0) || (m.fromFile >= 0 && m.toFile >= 0);
}

// Whether a generated move fits the text.
bool fits(const Board& board, const MoveText& m, Move move) {
    const int from = moveFrom(move);
    const int to = moveTo(move);
    if (m.piece) {
        const char letter = static_cast<char>(PIECE_LETTERS[kindOfCode(pieceCode[board.at(from)])] & ~32);
        if (letter != m.piece) return false;
    }
    // A promotion letter chooses among promotions only; a person may type e2e4q and mean e2e4.
    if (promotionKind(move)) {
        const char kind = static_cast<char>(PIECE_LETTERS[promotionKind(move)] & ~32);
        if (kind != (m.promotion ? m.promotion : 'Q')) return false;
    }
    return (m.toFile < 0 || m.toFile == fileOf(to)) && (m.toRank < 0 || m.toRank == rankOf(to)) &&
           (m.fromFile < 0 || m.fromFile == fileOf(from)) && (m.fromRank < 0 || m.fromRank == rankOf(from));
}

}  // namespace

Move isMove(Board& board, const char* text) {
    // The null move.
    if (text[0] == '%') return NO_MOVE;
    MoveText m;
    if (!readMoveText(text, m) || !settleMoveText(m)) return NO_MOVE;

    // Candidates that fit and that makeMove accepts; a second one makes the text ambiguous. Only the
    // moves that fit are tried on the board.
    MoveList moves;
    Move* end = board.inCheck() ? generateEvasions(board, moves) : generateMoves(board, moves);
    const SavedState saved = saveState(board);
    Move found = NO_MOVE;
    for (Move* move = moves; move != end; ++move) {
        if (!fits(board, m, *move)) continue;
        const Move made = makeMove(board, *move);
        if (made == NO_MOVE) continue;
        takeBack(board, made, saved);
        if (found) {
            char first[MOVE_TEXT_SIZE];
            char second[MOVE_TEXT_SIZE];
            moveToText(board, first, found);
            moveToText(board, second, made);
            printf("ambiguous move: %s _and_ %s\n", first, second);
            return NO_MOVE;
        }
        found = made;
    }
    // The one candidate, or none.
    return found;
}
