// What the position commands share with the reader of bare FEN lines.
#pragma once

// setFen on the game board; on failure prints "setfen failed" and keeps the position as it was.
void setGameBoardFromFen(const char* text);
