// The start-up steps of main that reach into the other subsystems, in the order main calls them.
#pragma once

// The transposition table at its start-up size. The board and evaluation tables are built by the
// compiler, and the pawn hash tables come with the search thread slots.
void initTables();

// Starts the search thread, which then sleeps until a search is requested.
void bootSearchThread();

// Sets the board to the start position and prints it.
void setStartPosition();
