#include "board/board.h"

Board gameBoard;
