#include "search/picker.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>

#include "board/movegen.h"
#include "board/see.h"
#include "board/tables.h"
#include "search/tt.h"

namespace {

constexpr int HASH_MOVE_KEY = 0x7FFFFFFF;
// Below this many non-pawn units the opponent is weak enough that smaller captures may still matter.
constexpr int DELTA_MATERIAL = 9;

// Puts the moves in order of their keys, highest first; of equal keys the one met first goes first.
void selectionSort(Move* moves, int* keys, int count) {
    for (int i = 0; i < count - 1; i++) {
        int best = i;
        for (int j = i + 1; j < count; j++)
            if (keys[j] > keys[best]) best = j;
        std::swap(moves[i], moves[best]);
        std::swap(keys[i], keys[best]);
    }
}

// The first occupied square from `from` along step.
int firstPieceFrom(const Board& board, int from, int step) {
    int square = from + step;
    while (board.at(square) == EMPTY) square += step;
    return square;
}

// Whether moving the piece on from to to uncovers an attack by a slider of the side to move on the
// enemy king.
bool discoversCheck(const Board& board, int enemyKing, int from, int to) {
    const int step = direction[from - enemyKing];
    if (step == 0 || direction[to - enemyKing] == step) return false;
    if (firstPieceFrom(board, enemyKing, step) != from) return false;
    const int behind = firstPieceFrom(board, from, step);
    if (!onBoard(behind)) return false;
    const uint8_t lineBit = (step == 1 || step == -1 || step == 16 || step == -16) ? ROOK_BIT : BISHOP_BIT;
    const uint8_t own = colourBit(static_cast<int>(board.sideToMove));
    return (pieceCode[board.at(behind)] & (own | lineBit)) == (own | lineBit);
}

// Whether the capturing piece gives check from its new square.
bool checksFrom(const Board& board, Move move, int enemyKing) {
    const int from = moveFrom(move);
    const int to = moveTo(move);
    const int slot = board.at(from);
    if (!(attackMask[enemyKing - to] & pieceCode[slot])) return false;
    if (!isSliderSlot(slot)) return true;
    // The mover has left its square, which may lie between its target and the king.
    const int step = direction[enemyKing - to];
    int square = to + step;
    while (square != enemyKing && (board.at(square) == EMPTY || square == from)) square += step;
    return square == enemyKing;
}

int kingDistance(int a, int b) {
    return std::max(std::abs(fileOf(a) - fileOf(b)), std::abs(rankOf(a) - rankOf(b)));
}

}  // namespace

Picker::Picker(Board& b, int firstStage, Move killer1, Move killer2, Move hash, int delta, bool checks)
    : board(&b),
      stage(firstStage),
      end(moves),
      deferredBegin(moves + MAX_MOVES),
      deferredEnd(moves + MAX_MOVES),
      killers{killer1, killer2},
      hashMove(hash),
      deltaUnits(delta),
      withChecks(checks) {
    // The evasions are generated at once: the search needs their number before the first batch.
    if (firstStage == PICK_EVASIONS - 1) end = generateEvasions(b, moves);
}

Picker Picker::interior(Board& board, Move killer1, Move killer2) {
    return Picker(board, PICK_START, killer1, killer2, NO_MOVE, 0, false);
}

Picker Picker::evasions(Board& board) {
    return Picker(board, PICK_EVASIONS - 1, NO_MOVE, NO_MOVE, NO_MOVE, 0, false);
}

Picker Picker::quiescence(Board& board, Move hashMove, int deltaThreshold, bool withChecks) {
    // The threshold in pawn units; a poorer opponent lowers it by one.
    int units = 0;
    if (deltaThreshold > 0) {
        units = deltaThreshold / 100;
        if (static_cast<int>(board.material[board.sideToMove ^ 1] & 255) < DELTA_MATERIAL) units--;
    }
    return Picker(board, PICK_QUIESCENCE_CAPTURES - 1, NO_MOVE, NO_MOVE, hashMove, units, withChecks);
}

Move* Picker::next() {
    [[maybe_unused]] const int previous = stage;
    while (stage != PICK_DONE) {
        Move* batch = nullptr;
        switch (++stage) {
            case PICK_GOOD_CAPTURES:
                batch = moves;
                end = goodCaptures();
                break;
            case PICK_KILLER_1:
            case PICK_KILLER_2: {
                // The killer update never leaves one move in both slots, so each is offered once.
                Move& killer = killers[stage - PICK_KILLER_1];
                if (killer != NO_MOVE && !isValidMove(*board, killer)) killer = NO_MOVE;
                batch = &killer;
                end = killer != NO_MOVE ? &killer + 1 : &killer;
                break;
            }
            case PICK_QUIET:
                batch = deferredEnd;
                end = quietMoves();
                break;
            case PICK_LOSING_CAPTURES:
                batch = deferredBegin;
                end = deferredEnd;
                break;
            case PICK_EVASIONS:
                batch = moves;
                break;
            case PICK_QUIESCENCE_CAPTURES:
                batch = moves;
                end = filteredCaptures();
                break;
            case PICK_QUIET_CHECKS:
                if (!withChecks) {
                    stage = PICK_DONE;
                    return nullptr;
                }
                batch = moves + MAX_MOVES;
                end = generateChecks(*board, batch);
                break;
            case PICK_PAWN_PUSHES:
                batch = end;
                end = pawnPushes();
                break;
            default:  // past the last batch of the node's kind
                stage = PICK_DONE;
                return nullptr;
        }
        if (batch != end) {
            // The search reads the stage as the batch's kind: stages only rise, each batch comes once,
            // and no batch runs past the picker's room.
            assert(stage > previous && stage < PICK_DONE);
            assert(isKillerStage(stage) || (moves <= batch && batch < end && end <= moves + 2 * MAX_MOVES));
            return batch;
        }
    }
    return nullptr;
}

// Captures and promotions that do not lose material, best exchange first; losing ones are set aside
// for a later batch. An underpromotion is an exchange like any other: it gains nothing, and it keeps
// its place among the moves searched early and in full when the piece it makes is safe.
Move* Picker::goodCaptures() {
    Board& b = *board;
    const int side = static_cast<int>(b.sideToMove);
    Move* last = generateCaptures(b, moves);
    int keys[MAX_MOVES];
    Move* m = moves;
    while (m < last) {
        const int value = see(b, side, *m);
        if (value < 0) {
            *deferredEnd++ = *m;
            *m = *--last;
            continue;
        }
        keys[m - moves] = value;
        // A capture that will be searched: its child's table entry loads while the rest are sorted.
        tt.prefetchAfter(b, *m);
        ++m;
    }
    selectionSort(moves, keys, static_cast<int>(last - moves));
    return last;
}

// The quiescence capture filter. Captures that uncover a check keep their place near the top without
// an exchange test; where the delta threshold applies, captures of pieces worth less than it are
// dropped unless they give check and checks are wanted; the rest must not lose material.
Move* Picker::filteredCaptures() {
    Board& b = *board;
    const int side = static_cast<int>(b.sideToMove);
    const int enemyKing = b.kingSquare(side ^ 1);
    Move* last = generateCaptures(b, moves);
    int keys[MAX_MOVES];
    Move* m = moves;
    while (m < last) {
        const Move move = *m;
        const int victim = seeValue[capturedSlot(move) & 63];
        int key;
        if (hashMove != NO_MOVE && move == hashMove) {
            key = HASH_MOVE_KEY;
        } else if (discoversCheck(b, enemyKing, moveFrom(move), moveTo(move))) {
            key = victim + 1;
        } else {
            const bool tooSmall = deltaUnits > 0 && promotionKind(move) == 0 && victim < deltaUnits;
            key = tooSmall && !(withChecks && checksFrom(b, move, enemyKing)) ? -1 : see(b, side, move);
        }
        if (key < 0) {
            *m = *--last;
            continue;
        }
        keys[m - moves] = key;
        // A capture that will be searched: its child's table entry loads while the rest are sorted.
        tt.prefetchAfter(b, move);
        ++m;
    }
    selectionSort(moves, keys, static_cast<int>(last - moves));
    return last;
}

// The quiet moves, written behind the deferred captures; the killers, already tried, are blanked.
Move* Picker::quietMoves() {
    Move* last = generateQuiet(*board, deferredEnd);
    for (const Move killer : killers) {
        if (killer == NO_MOVE) continue;
        for (Move* m = deferredEnd; m < last; m++)
            if (*m == killer) *m = NO_MOVE;
    }
    return last;
}

// Quiescence with checks: pawns stepping to the seventh rank, one step from promotion, when the step
// neither gives check (the previous batch had those) nor loses the pawn. The pawn the enemy king is
// farthest from goes first.
Move* Picker::pawnPushes() {
    Board& b = *board;
    const int side = static_cast<int>(b.sideToMove);
    const int forward = pawnStep(side);
    const int ownKing = b.kingSquare(side);
    const int enemyKing = b.kingSquare(side ^ 1);
    const int sixthRank = side == WHITE ? 5 : 2;
    Move* checksBegin = moves + MAX_MOVES;
    Move* checksEnd = end;
    Move* last = end;
    int keys[MAX_MOVES];
    const int base = colourBase(side) + PAWN_SLOT;
    for (int slot = base; b.pieceSquare[slot] != NO_SQUARE; slot++) {
        const int from = b.pieceSquare[slot];
        if (!onBoard(from) || rankOf(from) != sixthRank) continue;
        const int to = from + forward;
        if (b.at(to) != EMPTY || exposesKing(b, ownKing, from, to)) continue;
        const Move move = makeMoveWord(from, to);
        if (std::any_of(checksBegin, checksEnd, [&](Move c) { return plainMove(c) == move; })) continue;
        if (see(b, side, move) < 0) continue;
        keys[last - checksEnd] = kingDistance(enemyKing, to + forward);
        *last++ = move;
    }
    selectionSort(checksEnd, keys, static_cast<int>(last - checksEnd));
    return last;
}

void Picker::orderThreatEvasions(Move threat) {
    if (threat == NO_MOVE) return;
    Board& b = *board;
    const int side = static_cast<int>(b.sideToMove);
    const int threatFrom = moveFrom(threat);
    const int threatTo = moveTo(threat);
    const int line = direction[threatTo - threatFrom];
    // Each move's group: 0 the threatened piece stepping away, 1 a piece stepping into the threat's
    // line, 2 the rest. Saving the piece outright is tried before blocking, and the rest keep the
    // generator's order.
    const int count = static_cast<int>(end - deferredEnd);
    Move batch[MAX_MOVES];
    int group[MAX_MOVES];
    for (int i = 0; i < count; i++) {
        const Move m = batch[i] = deferredEnd[i];
        group[i] = 2;
        if (m == NO_MOVE) continue;
        const int from = moveFrom(m);
        const int to = moveTo(m);
        const bool stepsAway = from == threatTo;
        const bool interposes =
            line != 0 && direction[to - threatFrom] == line && direction[threatTo - to] == line;
        if ((stepsAway || interposes) && see(b, side, m) >= 0) group[i] = stepsAway ? 0 : 1;
    }
    Move* out = deferredEnd;
    for (int g = 0; g < 3; g++)
        for (int i = 0; i < count; i++)
            if (group[i] == g) *out++ = batch[i];
}
