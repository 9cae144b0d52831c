#include "board/flipfen.h"

#include <cctype>
#include <sstream>
#include <vector>

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
