// Score and node-type conventions shared by the whole search. Scores are centipawns from the side to
// move's point of view; a side mated at ply p scores p - MATE.
#pragma once

constexpr int MATE = 30000;
constexpr int MATE_BOUND = 29001;  // s >= MATE_BOUND: the side to move mates; s <= -MATE_BOUND: it is mated
constexpr int WON_BOUND = 3000;    // |s| >= WON_BOUND: decided (bitbase wins and mates)
constexpr int DRAW = 0;

// Node types are passed down negated for each child.
constexpr int NODE_PV = 0;
constexpr int NODE_CUT = 1;
constexpr int NODE_ALL = -1;

constexpr int MAX_DEPTH = 120;  // deepest iteration
constexpr int MAX_PLY = 128;    // plies the pv and killer arrays cover; quiescence stops at ply 120

constexpr bool isMateScore(int score) {
    return score >= MATE_BOUND || score <= -MATE_BOUND;
}

// The table keeps mate scores relative to the node that stored them, so that a mate found along one
// path reads right when the position is reached at another ply.
constexpr int scoreToTt(int score, int ply) {
    return score >= MATE_BOUND ? score + ply : score <= -MATE_BOUND ? score - ply : score;
}
constexpr int scoreFromTt(int score, int ply) {
    return score >= MATE_BOUND ? score - ply : score < -(MATE_BOUND - 1) ? score + ply : score;
}
