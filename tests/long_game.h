// A legal game longer than the board's history, built on the engine's own board for the tests that send
// such games through the binary. Quiet piece moves are drawn from a fixed pseudo-random sequence; a pawn
// move or a capture comes before the fifty-move count reaches 100, and no move leaves the opponent
// without a move. The replay board is set afresh from its own FEN now and then, so the game never
// depends on the history bound it is meant to test.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "board/board.h"
#include "board/legalmoves.h"
#include "board/makemove.h"
#include "board/notation.h"
#include "board/positions.h"

inline std::string protocolText(Move move) {
    std::string text;
    for (int square : {moveFrom(move), moveTo(move)}) {
        text += static_cast<char>('a' + fileOf(square));
        text += static_cast<char>('1' + rankOf(square));
    }
    if (promotionKind(move)) text += PIECE_LETTERS[promotionKind(move)];
    return text;
}

// Whether text names a legal move of the position.
inline bool isLegalIn(Board board, const std::string& text) {
    const Move move = isMove(board, text.c_str());
    return move != NO_MOVE && makeMove(board, move) != NO_MOVE;
}

inline size_t legalMoveCount(Board board) {
    MoveList list;
    return static_cast<size_t>(generateLegalMoves(board, list) - list);
}

struct LongGame {
    std::vector<std::string> moves;  // protocol texts from the start position
    Board end;                       // the position after them
    int fifty = 0;                   // plies since the last capture or pawn move
    std::string fen;                 // of the end position, with the fifty-move count and the ply count
};

inline LongGame buildLongGame(int plies) {
    LongGame game;
    Board& board = game.end;
    board.setFen(START_FEN);
    uint32_t random = 12345;
    for (int ply = 0; ply < plies; ++ply) {
        if (board.ply >= 256) {
            const std::string fen = fenOf(board);
            EXPECT_TRUE(board.setFen(fen.c_str())) << fen;
        }
        std::vector<Move> reversible, irreversible;
        MoveList list;
        for (Move *legal = list, *end = generateLegalMoves(board, list); legal != end; ++legal) {
            const Move move = plainMove(*legal);
            const bool pawn = isPawnSlot(board.at(moveFrom(move)));
            (pawn || isCapture(move) ? irreversible : reversible).push_back(move);
        }
        const bool due = game.fifty >= 95 && !irreversible.empty();
        std::vector<Move>& pool = due || reversible.empty() ? irreversible : reversible;
        Move chosen = NO_MOVE;
        // Candidates in pseudo-random order until one leaves the opponent a move.
        for (size_t tries = 0; tries < 2 * pool.size() && chosen == NO_MOVE; ++tries) {
            random = random * 1103515245 + 12345;
            const Move move = pool[(random >> 8) % pool.size()];
            const SavedState saved = saveState(board);
            makeMove(board, move);
            const bool opponentCanMove = hasLegalMove(board);
            takeBack(board, move, saved);
            if (opponentCanMove) chosen = move;
        }
        if (chosen == NO_MOVE) {
            ADD_FAILURE() << "the test game ran out of moves at ply " << ply << ": " << fenOf(board);
            break;
        }
        game.fifty = &pool == &irreversible ? 0 : game.fifty + 1;
        EXPECT_LT(game.fifty, 100) << "at ply " << ply;
        game.moves.push_back(protocolText(chosen));
        makeMove(board, chosen);
    }
    std::string fen = fenOf(board);
    fen.erase(fen.rfind(' ', fen.rfind(' ') - 1));
    game.fen = fen + " " + std::to_string(game.fifty) + " " + std::to_string(game.moves.size());
    return game;
}
