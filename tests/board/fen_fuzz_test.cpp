// Random and mutated FEN text: setFen must never misbehave, every position it accepts must pass
// check(), and make and take-back must cope with every such position, however odd (pawns on the last
// rank, en-passant squares without a pawn, many queens, checks no real game reaches).
#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "board/makemove.h"
#include "board/movegen.h"
#include "positions.h"

namespace {

std::mt19937 rng(20261122);

int below(int n) {
    return static_cast<int>(rng() % static_cast<unsigned>(n));
}

const std::string FEN_CHARS = "12345678pnbrqkPNBRQK/ wb-KQkqabcdefgh0123456789 /";

char anyFenChar() {
    return FEN_CHARS[below(static_cast<int>(FEN_CHARS.size()))];
}

// A board field with pieces on any square, both kings included, then the other fields at random.
std::string randomPosition() {
    std::string placement;
    const int whiteKing = below(64);
    const int blackKing = below(64);
    for (int rank = 7; rank >= 0; --rank) {
        int empty = 0;
        for (int file = 0; file < 8; ++file) {
            const int square = rank * 8 + file;
            const char piece = square == whiteKing   ? 'K'
                               : square == blackKing ? 'k'
                               : below(7) == 0       ? "PNBRQpnbrq"[below(10)]
                                                     : 0;
            if (!piece) {
                ++empty;
                continue;
            }
            if (empty) placement += static_cast<char>('0' + empty);
            empty = 0;
            placement += piece;
        }
        if (empty) placement += static_cast<char>('0' + empty);
        if (rank) placement += '/';
    }
    std::string castling;
    for (char right : {'K', 'Q', 'k', 'q'})
        if (below(2)) castling += right;
    std::string ep = "-";
    if (below(3) == 0) ep = {static_cast<char>('a' + below(8)), static_cast<char>('1' + below(8))};
    return placement + (below(2) ? " w " : " b ") + (castling.empty() ? "-" : castling) + " " + ep + " " +
           std::to_string(below(100)) + " " + std::to_string(below(100));
}

std::string mutate(std::string text) {
    for (int edits = 1 + below(4); edits > 0 && !text.empty(); --edits) {
        const int at = below(static_cast<int>(text.size()));
        switch (below(4)) {
            case 0:
                text[at] = below(4) ? anyFenChar() : static_cast<char>(1 + below(255));
                break;
            case 1:
                text.insert(text.begin() + at, anyFenChar());
                break;
            case 2:
                text.insert(at, text.substr(at, below(12)));
                break;
            default:
                text.erase(text.begin() + at, below(2) ? text.begin() + at + 1 : text.end());
        }
    }
    return text;
}

// Every move and every reply to it on one accepted board: the board stays whole, and no reply
// leaves the opponent able to take the king.
void exercise(Board& board) {
    MoveList list;
    Move* end = board.inCheck() ? generateEvasions(board, list) : generateMoves(board, list);
    const SavedState saved = saveState(board);
    const std::string before = fenOf(board);
    for (Move* move = list; move != end; ++move) {
        const Move made = makeMove(board, *move);
        if (!made) continue;
        ASSERT_TRUE(board.check("fuzz make")) << before;
        const Move lastMove = board.lastMove;
        board.lastMove = made;
        MoveList replies;
        Move* repliesEnd =
            made & MOVE_CHECKS ? generateEvasions(board, replies) : generateMoves(board, replies);
        const SavedState inner = saveState(board);
        for (Move* reply = replies; reply != repliesEnd; ++reply) {
            if (!makeMove(board, *reply)) continue;
            ASSERT_FALSE(isAttacked(board, static_cast<int>(board.sideToMove),
                                    board.kingSquare(static_cast<int>(board.sideToMove ^ 1))))
                << before;
            takeBack(board, *reply, inner);
        }
        board.lastMove = lastMove;
        takeBack(board, *move, saved);
        ASSERT_TRUE(board.check("fuzz take back")) << before;
    }
    EXPECT_EQ(fenOf(board), before);
}

TEST(FenFuzz, RandomAndMutatedTextNeverHurts) {
    std::vector<std::string> seeds{START_FEN, "8/8/8/KPp4r/8/8/8/7k w - c6"};
    for (const PerftCase& c : loadPerftCases()) seeds.push_back(c.fen);
    const int rounds = 1000000;
    // The sanitizer build also checks the whole board after every make and take-back: it exercises
    // fewer positions.
    const int exerciseEvery = sanitized() ? 192 : 8;
    int accepted = 0;
    Board board;
    testing::internal::CaptureStdout();  // the messages of refused text
    for (int round = 0; round < rounds && !testing::Test::HasFatalFailure(); ++round) {
        std::string text;
        if (round % 4 == 3)
            for (int length = below(90); length > 0; --length) text += anyFenChar();
        else
            text = round % 4 == 2 ? mutate(seeds[below(static_cast<int>(seeds.size()))])
                   : round % 4    ? mutate(randomPosition())
                                  : randomPosition();
        if (!board.setFen(text.c_str())) continue;
        ++accepted;
        ASSERT_TRUE(board.check("fuzz")) << text;
        if (accepted % exerciseEvery == 0) exercise(board);
    }
    // Failure reports went to the captured output with the engine's messages; show them.
    const std::string printed = testing::internal::GetCapturedStdout();
    const size_t failure = printed.find("Failure");
    if (failure != std::string::npos) std::fprintf(stderr, "%s\n", printed.substr(failure, 2000).c_str());
    EXPECT_GT(accepted, rounds / 50);
}

}  // namespace
