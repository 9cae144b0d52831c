#include "harness/vflip.h"

#include <cctype>
#include <memory>
#include <sstream>
#include <vector>

#include "eval/evaluate.h"
#include "harness/epd.h"
#include "harness/textinput.h"

namespace {

std::string swapCase(std::string text) {
    for (char& c : text) {
        const unsigned char u = static_cast<unsigned char>(c);
        c = static_cast<char>(std::isupper(u) ? std::tolower(u) : std::toupper(u));
    }
    return text;
}

std::string flipPlacement(const std::string& placement) {
    std::vector<std::string> ranks;
    std::stringstream in(placement);
    for (std::string rank; std::getline(in, rank, '/');) ranks.push_back(rank);
    if (!placement.empty() && placement.back() == '/') ranks.emplace_back();
    std::string flipped;
    for (size_t i = ranks.size(); i-- > 0;) {
        if (i + 1 != ranks.size()) flipped += '/';
        flipped += swapCase(ranks[i]);
    }
    return flipped;
}

std::string flipCastling(const std::string& castling) {
    if (castling == "-") return castling;
    std::string flipped;
    for (char right : std::string("KQkq"))
        if (castling.find(swapCase(std::string(1, right))) != std::string::npos) flipped += right;
    return flipped.empty() ? "-" : flipped;
}

std::string flipEnPassant(const std::string& square) {
    if (square.size() != 2) return square;
    return std::string(1, square[0]) + static_cast<char>('1' + '8' - square[1]);
}

// Each side evaluated from scratch: the evaluation cache must not hand one twin the other's score.
int evaluateFresh(EvalContext& context, Board& board) {
    context.useCache = false;
    return evaluate(context, board);
}

}  // namespace

std::string flipFen(const std::string& fen) {
    std::istringstream in(fen);
    std::string placement, side, castling, enPassant;
    in >> placement >> side >> castling >> enPassant;
    std::string flipped = flipPlacement(placement) + " " + (side == "b" ? "w" : "b");
    if (!castling.empty()) flipped += " " + flipCastling(castling);
    if (!enPassant.empty()) flipped += " " + flipEnPassant(enPassant);
    for (std::string counter; in >> counter;) flipped += " " + counter;
    return flipped;
}

bool vflipFile(const std::string& path, VflipCount& count, FILE* out) {
    std::ifstream in;
    if (!openText(path, in)) return false;
    count = VflipCount();
    auto context = std::make_unique<EvalContext>();
    auto board = std::make_unique<Board>();
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        EpdRecord record;
        std::string error;
        const EpdLine kind = parseEpdLine(line.c_str(), record, error);
        if (kind == EpdLine::SKIP) continue;
        if (kind == EpdLine::POSITION && setUpPosition(*board, record, error)) {
            const int score = evaluateFresh(*context, *board);
            EpdRecord twin = record;
            twin.fen = flipFen(record.fen);
            if (setUpPosition(*board, twin, error)) {
                const int flippedScore = evaluateFresh(*context, *board);
                ++count.positions;
                if (score != flippedScore) {
                    ++count.differences;
                    std::fprintf(out, "VFLIP EVAL NOT EQUAL: %s (%i) / %s (%i)\n", record.fen.c_str(), score,
                                 twin.fen.c_str(), flippedScore);
                }
                continue;
            }
        }
        ++count.errors;
        std::fprintf(out, "vflip: line %i: %s\n", number, error.c_str());
    }
    std::fprintf(out, "vflip: %i positions, %i not equal", count.positions, count.differences);
    if (count.errors) std::fprintf(out, ", %i lines in error", count.errors);
    std::fprintf(out, "\n");
    return true;
}
