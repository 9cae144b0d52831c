// Random and mutated FEN text: setFen must never misbehave, every position it accepts must pass
// check(), and the generators, make and take-back, SEE and the move reader must cope with every such
// position, however odd (pawns on the last rank, en-passant squares without a pawn, many queens).
#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "board/makemove.h"
#include "board/movegen.h"
#include "board/notation.h"
#include "board/see.h"
#include "positions.h"

namespace {

std::mt19937 rng(20261122);

int below(int n) {
    return static_cast<int>(rng() % static_cast<unsigned>(n));
}

const std::string FEN_CHARS = "12345678pnbrqkPNBRQK/ wb-KQkqabcdefgh0123456789 /";

// A board field with pieces on any square, both kings included, then the other fields at random.
std::string randomPosition() {
    std::string placement;
    const int whiteKing = below(64);
    const int blackKing = below(64);
    for (int rank = 7; rank >= 0; --rank) {
        int empty = 0;
        for (int file = 0; file < 8; ++file) {
            const int square = rank * 8 + file;
            char piece = 0;
            if (square == whiteKing)
                piece = 'K';
            else if (square == blackKing)
                piece = 'k';
            else if (below(7) == 0)
                piece = "PNBRQpnbrq"[below(10)];
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
    if (castling.empty()) castling = "-";
    std::string ep = "-";
    if (below(3) == 0)
        ep = std::string(1, static_cast<char>('a' + below(8))) + static_cast<char>('1' + below(8));
    return placement + (below(2) ? " w " : " b ") + castling + " " + ep + " " + std::to_string(below(100)) +
           " " + std::to_string(below(100));
}

std::string mutate(std::string text) {
    const int edits = 1 + below(4);
    for (int i = 0; i < edits; ++i) {
        const int at = text.empty() ? 0 : below(static_cast<int>(text.size()));
        switch (below(6)) {
            case 0:
                if (!text.empty()) text[at] = FEN_CHARS[below(static_cast<int>(FEN_CHARS.size()))];
                break;
            case 1:
                text.insert(text.begin() + at, FEN_CHARS[below(static_cast<int>(FEN_CHARS.size()))]);
                break;
            case 2:
                if (!text.empty()) text.erase(text.begin() + at);
                break;
            case 3:
                text.insert(at, text.substr(at, below(12)));
                break;
            case 4:
                text.resize(at);
                break;
            default:
                if (!text.empty()) text[at] = static_cast<char>(1 + below(255));
                break;
        }
    }
    return text;
}

// Everything the engine does with a position, on one accepted board.
void exercise(Board& board) {
    MoveList list;
    Move* end = board.inCheck() ? generateEvasions(board, list) : generateMoves(board, list);
    const SavedState saved = saveState(board);
    const std::string before = fenOf(board);
    for (Move* move = list; move != end; ++move) {
        const bool valid = isValidMove(board, *move);
        const Move made = makeMove(board, *move);
        if (!made) continue;
        ASSERT_TRUE(valid) << before;
        ASSERT_TRUE(board.check("fuzz make")) << before;
        const Move lastMove = board.lastMove;
        board.lastMove = made;
        MoveList replies;
        Move* repliesEnd =
            made & MOVE_CHECKS ? generateEvasions(board, replies) : generateMoves(board, replies);
        const SavedState inner = saveState(board);
        for (Move* reply = replies; reply != repliesEnd; ++reply) {
            if (!makeMove(board, *reply)) continue;
            // The opponent must never be able to take the king.
            ASSERT_FALSE(isAttacked(board, static_cast<int>(board.sideToMove),
                                    board.kingSquare(static_cast<int>(board.sideToMove ^ 1))))
                << before;
            takeBack(board, *reply, inner);
        }
        board.lastMove = lastMove;
        takeBack(board, *move, saved);
        ASSERT_TRUE(board.check("fuzz take back")) << before;
        char text[MOVE_TEXT_SIZE];
        moveToText(board, text, made);
        EXPECT_EQ(isMove(board, text), made) << text << " in " << before;
        if (isCapture(*move)) see(board, static_cast<int>(board.sideToMove), *move);
    }
    if (!board.inCheck()) {
        generateCaptures(board, list);
        generateQuiet(board, list);
        generateChecks(board, list);
        generateKingMoves(board, list);
    }
    EXPECT_EQ(fenOf(board), before);
}

TEST(FenFuzz, RandomAndMutatedTextNeverHurts) {
    std::vector<std::string> seeds{START_FEN, "4k3/8/8/8/8/8/8/4K3 w - -", "8/8/8/KPp4r/8/8/8/7k w - c6"};
    for (const PerftCase& c : loadPerftCases()) seeds.push_back(c.fen);
    const int rounds = 1000000;
    // The deep exercise is the expensive part; the sanitizer build, which also checks the whole board
    // after every make and take-back, runs it on fewer positions.
    const int exerciseEvery = sanitized() ? 192 : 8;
    int accepted = 0;
    Board board;
    testing::internal::CaptureStdout();
    for (int round = 0; round < rounds && !testing::Test::HasFatalFailure(); ++round) {
        std::string text;
        switch (round % 4) {
            case 0:
                text = randomPosition();
                break;
            case 1:
                text = mutate(randomPosition());
                break;
            case 2:
                text = mutate(seeds[below(static_cast<int>(seeds.size()))]);
                break;
            default:
                for (int length = below(90); length > 0; --length)
                    text += FEN_CHARS[below(static_cast<int>(FEN_CHARS.size()))];
        }
        if (!board.setFen(text.c_str())) continue;
        ++accepted;
        ASSERT_TRUE(board.check("fuzz")) << text;
        if (accepted % exerciseEvery == 0) exercise(board);
    }
    // Failure reports went to the captured output with the engine's messages; show them.
    const std::string printed = testing::internal::GetCapturedStdout();
    const size_t failure = printed.find("Failure");
    if (failure != std::string::npos) fprintf(stderr, "%s\n", printed.substr(failure, 2000).c_str());
    EXPECT_GT(accepted, rounds / 50);
}

}  // namespace
