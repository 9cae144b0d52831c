// The staged move picker: hands a node its moves in batches, cheap and promising ones first, so that
// a cutoff early in the list saves generating the rest. There is no history table: quiet moves are
// ordered only by the killers and by the null-move threat.
//
//   Picker picker = Picker::interior(board, killer[ply][0], killer[ply][1]);
//   while (Move* batch = picker.next())
//       for (Move* m = batch; m < picker.end; ++m) if (*m) ...
//
// A slot holding 0 is to be skipped. The hash move of an interior node is searched before the picker
// and comes up again in a batch: the caller skips it there.
#pragma once

#include "board/board.h"
#include "board/move.h"

// The batches in delivery order; `stage` names the batch last delivered.
enum PickerStage : int {
    PICK_START = 0,
    PICK_GOOD_CAPTURES = 1,  // captures and promotions of every kind with SEE >= 0, best SEE first
    PICK_KILLER_1 = 2,       // a one-move batch when the killer is pseudo-legal here
    PICK_KILLER_2 = 3,
    PICK_QUIET = 4,            // quiet moves in generator order, killers blanked
    PICK_LOSING_CAPTURES = 5,  // SEE < 0, in the order they were set aside
    // No sixth batch: the capture and quiet generators between them yield every kind of move.
    PICK_INTERIOR_END = 6,
    PICK_EVASIONS = 8,  // a node in check: every evasion in one batch, ranked after the killer stages
    PICK_EVASIONS_END = 9,
    PICK_QUIESCENCE_CAPTURES = 10,  // captures through the quiescence filter, hash move first
    PICK_QUIET_CHECKS = 11,         // only with checks: quiet moves that give check
    PICK_PAWN_PUSHES = 12,          // only with checks: safe pushes to the seventh rank
    PICK_DONE = 13,
};

constexpr bool isKillerStage(int stage) {
    return stage == PICK_KILLER_1 || stage == PICK_KILLER_2;
}

struct Picker {
    Board* board;
    int stage;
    Move* end;  // one past the last move of the batch last delivered
    Move* deferredBegin;
    Move* deferredEnd;
    Move killers[2];  // cleared when not pseudo-legal here
    Move hashMove;    // quiescence only
    int deltaUnits;   // quiescence only: captures of less are dropped (0: keep all)
    bool withChecks;  // quiescence only
    // Lower half: the first batch. Upper half: the deferred captures, then the quiet moves (or the
    // quiescence checks and pushes).
    Move moves[2 * MAX_MOVES];

    // A node not in check.
    static Picker interior(Board& board, Move killer1, Move killer2);
    // A node in check: the evasions are generated at once, so that their number is known before
    // the first batch (which holds them all).
    static Picker evasions(Board& board);
    int evasionCount() const { return static_cast<int>(end - moves); }
    // A quiescence node not in check. hashMove (masked, or 0) sorts first among the captures. Where
    // deltaThreshold (centipawns) is above 0, captures that cannot lift the score near alpha are
    // dropped. withChecks keeps captures that give check past that filter and adds the batches of
    // quiet checks and pawn pushes.
    static Picker quiescence(Board& board, Move hashMove, int deltaThreshold, bool withChecks);

    Picker(const Picker&) = delete;
    Picker& operator=(const Picker&) = delete;

    // The first move of the next non-empty batch (it runs to `end`), or null when none is left.
    Move* next();
    // Moves the quiet batch's safe answers to the null-move threat to its front: steps of the
    // threatened piece, then interpositions on the threat's line, each in batch order.
    void orderThreatEvasions(Move threat);

  private:
    Picker(Board& board, int firstStage, Move killer1, Move killer2, Move hash, int delta, bool checks);
    Move* goodCaptures();
    Move* filteredCaptures();
    Move* quietMoves();
    Move* pawnPushes();
};
