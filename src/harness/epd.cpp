#include "harness/epd.h"

#include <algorithm>
#include <cctype>
#include <cstring>

#include "board/notation.h"

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

void skipBlanks(const char*& p) {
    while (isBlank(*p)) ++p;
}

std::string nextField(const char*& p) {
    skipBlanks(p);
    const char* start = p;
    while (*p && !isBlank(*p) && *p != ';') ++p;
    return std::string(start, p);
}

bool allDigits(const std::string& text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// Operands up to the ';' that ends the operation (or the end of the line); a quoted operand may hold
// blanks and semicolons.
bool readOperands(const char*& p, std::vector<std::string>& operands, std::string& error) {
    for (;;) {
        skipBlanks(p);
        if (!*p || *p == ';') return true;
        if (*p == '"') {
            const char* close = std::strchr(p + 1, '"');
            if (!close) {
                error = "string without its closing quote";
                return false;
            }
            operands.emplace_back(p + 1, close);
            p = close + 1;
        } else {
            operands.push_back(nextField(p));
        }
    }
}

// The engine's board has a fixed number of slots per kind and no guard against more; a position
// beyond them, or one no game can reach in the ways the search relies on, is refused here.
bool checkPlacement(const std::string& placement, std::string& error) {
    constexpr const char* KINDS = "KQRBNPkqrbnp";
    constexpr int MOST[] = {1, 9, 10, 10, 10, 8, 1, 9, 10, 10, 10, 8};
    int count[12] = {};
    int rank = 7, file = 0, perSide[2] = {};
    for (char c : placement) {
        if (c == '/') {
            // An empty rank written as nothing between slashes is the engine's own form.
            if (file != 8 && file != 0) break;
            --rank;
            file = 0;
            if (rank < 0) break;
            continue;
        }
        if (c >= '1' && c <= '8') {
            file += c - '0';
        } else if (const char* kind = std::strchr(KINDS, c); kind && c) {
            if ((c == 'P' || c == 'p') && (rank == 0 || rank == 7)) {
                error = "pawn on the first or last rank";
                return false;
            }
            ++count[kind - KINDS];
            ++perSide[std::isupper(static_cast<unsigned char>(c)) ? WHITE : BLACK];
            ++file;
        } else {
            error = std::string("bad character in the position: ") + c;
            return false;
        }
        if (file > 8) break;
    }
    if (rank != 0 || (file != 8 && file != 0)) {
        error = "the position does not have 8 ranks of 8 squares";
        return false;
    }
    if (count[0] != 1 || count[6] != 1) {
        error = "the position needs one king of each colour";
        return false;
    }
    for (int i = 0; i < 12; ++i)
        if (count[i] > MOST[i] || perSide[i / 6] > 16) {
            error = "too many pieces";
            return false;
        }
    return true;
}

bool readMoves(Board& board, const std::vector<std::string>& texts, const char* opcode,
               std::vector<Move>& out, std::string& error) {
    for (const std::string& text : texts) {
        const Move move = isMove(board, text.c_str());
        if (move == NO_MOVE) {
            error = std::string("not a legal move in ") + opcode + ": " + text;
            return false;
        }
        out.push_back(move);
    }
    return true;
}

bool sameMove(Move a, Move b) {
    return moveFrom(a) == moveFrom(b) && moveTo(a) == moveTo(b) && promotionKind(a) == promotionKind(b);
}

bool contains(const std::vector<Move>& moves, Move move) {
    return std::any_of(moves.begin(), moves.end(), [move](Move m) { return sameMove(m, move); });
}

}  // namespace

EpdLine parseEpdLine(const char* line, EpdRecord& record, std::string& error) {
    record = EpdRecord();
    const char* p = line;
    skipBlanks(p);
    if (!*p || *p == '#') return EpdLine::SKIP;

    // Placement, side to move, castling, en passant; then the counters if the line has them.
    std::string fields[4];
    for (std::string& field : fields) {
        field = nextField(p);
        if (field.empty()) {
            error = "fewer than four position fields";
            return EpdLine::BAD;
        }
    }
    record.fen = fields[0] + " " + fields[1] + " " + fields[2] + " " + fields[3];
    for (int counter = 0; counter < 2; ++counter) {
        const char* after = p;
        const std::string field = nextField(after);
        if (!allDigits(field)) break;
        record.fen += " " + field;
        p = after;
    }
    if (!checkPlacement(fields[0], error)) return EpdLine::BAD;

    // The operations.
    for (;;) {
        while (isBlank(*p) || *p == ';') ++p;
        if (!*p) break;
        const std::string opcode = nextField(p);
        if (!std::isalpha(static_cast<unsigned char>(opcode[0]))) {
            error = "bad opcode: " + opcode;
            return EpdLine::BAD;
        }
        std::vector<std::string> operands;
        if (!readOperands(p, operands, error)) return EpdLine::BAD;
        if (opcode == "bm") {
            record.bestMoves.insert(record.bestMoves.end(), operands.begin(), operands.end());
        } else if (opcode == "am") {
            record.avoidMoves.insert(record.avoidMoves.end(), operands.begin(), operands.end());
        } else if (opcode == "id" && !operands.empty()) {
            record.id = operands[0];
        }
    }
    return EpdLine::POSITION;
}

bool setUpPosition(Board& board, const EpdRecord& record, std::string& error) {
    // setFen has said why on standard output.
    if (board.setFen(record.fen.c_str())) return true;
    error = "bad position: " + record.fen;
    return false;
}

bool setUpEpd(Board& board, const EpdRecord& record, EpdMoves& moves, std::string& error) {
    moves = EpdMoves();
    return setUpPosition(board, record, error) &&
           readMoves(board, record.bestMoves, "bm", moves.best, error) &&
           readMoves(board, record.avoidMoves, "am", moves.avoid, error);
}

bool isSolution(const EpdMoves& moves, Move move) {
    if (move == NO_MOVE || contains(moves.avoid, move)) return false;
    return moves.best.empty() || contains(moves.best, move);
}
