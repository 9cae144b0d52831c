// Lines that no command took: a bare FEN board, else moves to play on the game board.
#include <cstdio>
#include <cstring>
#include <string>

#include "board/board.h"
#include "board/gamemove.h"
#include "board/notation.h"
#include "frontend/console_commands.h"
#include "frontend/position_commands.h"

namespace {

// A board field alone (both kings, at least one '/') is taken as the start of a FEN.
bool looksLikeFen(const char* word) {
    int kings = 0;
    bool slash = false;
    for (const char* c = word; *c; ++c) {
        if (!strchr("12345678pnbrqkPNBRQK/", *c)) return false;
        kings += *c == 'k' || *c == 'K';
        slash |= *c == '/';
    }
    return slash && kings == 2;
}

bool looksLikeMove(const std::string& word) {
    return word == "o-o" || word == "o-o-o" || word.find_first_of("12345678") != std::string::npos;
}

// Plays one word; false (after its message) when it is no move or not legal here.
bool playWord(const std::string& word) {
    if (!looksLikeMove(word)) return false;
    const Move move = isMove(gameBoard, word.c_str());
    if (!move) {
        printf("not a valid move: %s\n", word.c_str());
        return false;
    }
    if (!playGameMove(gameBoard, move)) {
        printf("move not accepted: %s\n", word.c_str());
        return false;
    }
    return true;
}

}  // namespace

void readUncommandedLine(const char* command, const char* rest) {
    const std::string line = *rest ? std::string(command) + " " + rest : std::string(command);
    if (looksLikeFen(command)) {
        setGameBoardFromFen(line.c_str());
        gameBoard.print(stdout, 0);
        return;
    }
    // Moves separated by blanks or tabs; the words before a failing one stay played.
    const char* separators = " \t";
    for (size_t start = line.find_first_not_of(separators); start != std::string::npos;
         start = line.find_first_not_of(separators, start)) {
        const size_t end = line.find_first_of(separators, start);
        const std::string word =
            line.substr(start, end == std::string::npos ? std::string::npos : end - start);
        if (!playWord(word)) {
            printf("no such command: %s\n", command);
            return;
        }
        start = end;
    }
    gameBoard.print(stdout, 0);
    gameBoard.compactPieceLists();
}
