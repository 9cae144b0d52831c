// The recursive tree search below the root: principal-variation alpha-beta with null move, internal
// iterative deepening, check, single-reply, pawn-ending and recapture extensions, late-move reductions
// guarded by threat tests, futility pruning near the leaves and a mate killer.
#include <algorithm>
#include <cassert>
#include <optional>

#include "board/legalmoves.h"
#include "board/makemove.h"
#include "board/movegen.h"
#include "board/see.h"
#include "board/tables.h"
#include "eval/egbb.h"
#include "eval/evaluate.h"
#include "search/drawrules.h"
#include "search/movesearch.h"
#include "search/node.h"
#include "search/parallel.h"
#include "search/picker.h"
#include "search/searchthread.h"
#include "search/timecontrol.h"
#include "search/tt.h"

namespace {

// Futility margins by remaining depth (index 1 to 4).
constexpr int FUTILITY_MARGIN[5] = {0, 50, 150, 450, 1150};
// The null move searches this many plies less than the node (R = 3, plus the move itself).
constexpr int NULL_REDUCTION = 4;

// Value class of a captured piece: pawn 1, knight and bishop 3, rook 5, queen 10; 0 for no capture.
int capturedValue(Move move) {
    return isCapture(move) ? seeValue[capturedSlot(move) & 63] : 0;
}

// Extensions decided once the move is on the board (only when the node has not been extended already
// and enough depth is left for them to matter).
int moveExtension(const Board& board, Move move, Move lastMove, int newDepth) {
    if (newDepth < 3) return 0;
    const uint32_t white = board.material[WHITE];
    const uint32_t black = board.material[BLACK];
    // A capture of a piece that leaves only kings and pawns: pawn endings need exact calculation.
    if (pieceCount(white) + pieceCount(black) == 0 && isCapture(move) && !isPawnSlot(capturedSlot(move)))
        return 3;
    // A recapture, when the material is about even for the depth left.
    if ((isCapture(lastMove) || promotionKind(lastMove) != 0) && moveTo(move) == moveTo(lastMove)) {
        const int balance = materialUnits(white) - materialUnits(black);
        if (std::abs(balance) <= newDepth) return 1;
    }
    return 0;
}

// Whether a rook or queen moving from `from` to `to` attacks an enemy rook or queen along a clear line.
bool attacksHeavyPiece(const Board& board, int from, int to, uint8_t code, int enemy) {
    const int base = colourBase(enemy);
    for (int first : {ROOK_SLOT, QUEEN_SLOT}) {
        for (int slot = base + first; board.pieceSquare[slot] != NO_SQUARE; ++slot) {
            const int target = board.pieceSquare[slot];
            if (!onBoard(target) || target == to || !(attackMask[target - to] & code)) continue;
            const int step = direction[target - to];
            int square = to + step;
            while (square != target && (square == from || board.at(square) == EMPTY)) square += step;
            if (square == target) return true;
        }
    }
    return false;
}

// Whether a quiet move is one that late-move reductions must leave alone: passed-pawn pushes, pawns
// stepping under the cover of their own pieces, knight forks and slider attacks on heavy pieces, and
// the threatened piece stepping away. The move is not yet made.
bool isExemptFromReduction(SearchThread& thread, Move move, int threatSquare) {
    Board& board = thread.board;
    const int side = static_cast<int>(board.sideToMove);
    const int from = moveFrom(move);
    const int to = moveTo(move);
    const uint8_t slot = board.at(from);
    const uint8_t code = pieceCode[slot];
    const uint8_t enemy = colourBit(side ^ 1);
    bool worthExchange = from == threatSquare;
    if (isPawnSlot(slot)) {
        if (passedPawnFiles(thread, side) & (1 << fileOf(from))) return true;
        // A piece of the own side standing diagonally behind the target square guards it.
        const int behind = to - pawnStep(side);
        for (int guard : {behind - 1, behind + 1}) {
            const uint8_t occupant = board.at(guard);
            if (occupant != EMPTY && occupant != OFF_BOARD && colourOfSlot(occupant) == side)
                worthExchange = true;
        }
    } else if (code & KNIGHT_BIT) {
        for (int step : KNIGHT_STEPS) {
            const uint8_t target = pieceCode[board.at(to + step)];
            if ((target & enemy) && (target & (ROOK_BIT | BISHOP_BIT))) worthExchange = true;
        }
    } else if (code & ROOK_BIT) {
        if (attacksHeavyPiece(board, from, to, code, side ^ 1)) worthExchange = true;
    }
    // Each of these is only worth a full search when the piece is not simply lost on its square.
    return worthExchange && see(board, side, move) >= 0;
}

bool stopped(const SearchThread& thread) {
    return thread.stop.load(std::memory_order_relaxed);
}

// The cut-off of the node, for a move that reached beta: remember it in the table, the killers and
// the line.
int failHigh(SearchThread& thread, const NodeState& node, Move move, Move made, int v, bool first,
             int stage) {
    SearchStats& stats = thread.stats;
    storeEntry(thread, node.ply, move, v, node.depth, TT_LOWER);
    if (v > MATE_BOUND - 1) thread.mateKiller[node.ply] = plainMove(move);
    stats.cutNodes.add();
    if (first) stats.firstCuts.add();
    if (isKillerStage(stage)) stats.killerCuts.add();
    if (isQuiet(move) && !node.inCheck) updateKillers(thread, node.ply, move);
    setLine(thread, node.ply, made);
    return v;
}

// Makes move, searches the child to depth with the window (alpha, beta) of this node, and takes the
// move back. The move as made, or NO_MOVE when it is illegal.
Move searchOnce(SearchThread& thread, int ply, Move move, int alpha, int beta, int depth, int childType,
                int& v) {
    Board& board = thread.board;
    const SavedState saved = saveState(board);
    const Move made = makeMove(board, move);
    if (made == NO_MOVE) return NO_MOVE;
    tt.prefetch(board);
    v = -alphaBeta(thread, ply + 1, -beta, -alpha, depth, made, childType);
    takeBack(board, made, saved);
    return made;
}

// Probes the table for the node: the score when an entry settles it, else the hash move it offers
// (left as it was when there is none).
std::optional<int> probeTable(SearchThread& thread, const NodeState& node, int alpha, int nodeType,
                              Move& hashMove) {
    Board& board = thread.board;
    SearchStats& stats = thread.stats;
    stats.ttProbes.add();
    TtEntry entry;
    if (!tt.probe(board, entry)) return std::nullopt;
    stats.ttHits.add();
    const int score = scoreFromTt(entry.score, node.ply);
    if (nodeType != NODE_PV && settlesNode(entry, score, node.depth, alpha, node.beta)) {
        stats.ttCuts.add();
        setLine(thread, node.ply, entry.move);
        return score;
    }
    const Move stored = plainMove(entry.move);
    if (stored != NO_MOVE && entry.depth >= node.depth - 2 &&
        !(entry.type == TT_UPPER && nodeType == NODE_PV) && isValidMove(board, stored)) {
        hashMove = stored;
        tt.prefetchAfter(board, hashMove);
    }
    return std::nullopt;
}

// Endgame bitbases: the score of a position with few enough men, when it settles the node. Beyond the
// probe ply only the smallest endings are probed; a decided result found at an odd ply is searched on,
// so that the side that wins finds the way.
std::optional<int> probeBitbases(SearchThread& thread, const NodeState& node, int alpha) {
    const Board& board = thread.board;
    const int ply = node.ply;
    const int men = pieceCount(board.material[WHITE]) + pieceCount(board.material[BLACK]) +
                    pawnCount(board.material[WHITE]) + pawnCount(board.material[BLACK]);
    const int probeLimit = egbb.maxMen() - 2;
    const int alwaysProbeLimit = probeLimit - 1;
    if (men > probeLimit || board.epSquare != 0 || (men > alwaysProbeLimit && ply >= thread.probePlyLimit))
        return std::nullopt;
    int s;
    if (!egbb.probe(board, s)) return std::nullopt;
    if (s < -WON_BOUND && node.inCheck && alpha < -WON_BOUND && !hasLegalMove(thread.board))
        return ply - MATE;
    storeEntry(thread, ply, NO_MOVE, s, node.depth,
               s >= node.beta ? TT_LOWER
               : s <= alpha   ? TT_UPPER
                              : TT_EXACT);
    if (men > alwaysProbeLimit && ply >= thread.probePlyLimit - 1) return s;
    if (s >= -(WON_BOUND - 1) && s <= WON_BOUND - 1) return s;
    if ((ply & 1) == 0 && s + 1000 < alpha) return alpha - 1000;
    return std::nullopt;
}

// Mate killer: a move that mated here before is likely to cut again, so a node that expects to fail
// high tries it before anything else. The score when it cut; a killer that did not is forgotten.
std::optional<int> mateKillerCut(SearchThread& thread, const NodeState& node, int nodeType) {
    const int ply = node.ply;
    const Move killer = thread.mateKiller[ply];
    if (nodeType == NODE_PV || node.inCheck || killer == NO_MOVE) return std::nullopt;
    Board& board = thread.board;
    if (isValidMove(board, killer) && see(board, static_cast<int>(board.sideToMove), killer) >= 0) {
        int v;
        if (const Move made =
                searchOnce(thread, ply, killer, node.beta - 1, node.beta, node.depth - 1, -nodeType, v)) {
            if (stopped(thread)) return 0;
            if (v >= node.beta) {
                storeEntry(thread, ply, killer, v, node.depth, TT_LOWER);
                setLine(thread, ply, made);
                return v;
            }
        }
    }
    thread.mateKiller[ply] = NO_MOVE;
    return std::nullopt;
}

// Null move: give the opponent a free move. A position still at beta after it needs no search of its
// own (with few pieces, where zugzwang is real, only once a shallower search confirms it). Otherwise the
// null move's refutation is the threat that the moves of the node should answer.
std::optional<int> nullMove(SearchThread& thread, NodeState& node, int alpha, int nodeType, Move& threat) {
    Board& board = thread.board;
    SearchStats& stats = thread.stats;
    const int ply = node.ply;
    const int beta = node.beta;
    const uint32_t ownMaterial = board.material[static_cast<int>(board.sideToMove)];
    if (node.lastMove == NO_MOVE || node.inCheck || nodeType != NODE_CUT || beta < -(WON_BOUND - 1) ||
        beta > WON_BOUND - 1 || pieceCount(ownMaterial) == 0)
        return std::nullopt;
    const SavedState saved = saveState(board);
    makeNullMove(board);
    tt.prefetch(board);
    stats.nullTries.add();
    const uint64_t before = stats.nodes.get() + stats.qnodes.get();
    const int v =
        -alphaBeta(thread, ply + 1, -beta, 1 - beta, node.depth - NULL_REDUCTION, NO_MOVE, NODE_ALL);
    stats.nullNodes.add(stats.nodes.get() + stats.qnodes.get() - before);
    takeBackNullMove(board, saved);
    if (stopped(thread)) return 0;
    threat = thread.pv[ply + 1][0];
    if (v >= beta && v <= WON_BOUND - 1) {
        bool cut = pieceCount(ownMaterial) > 3;
        if (!cut) {
            cut = alphaBeta(thread, ply, alpha, beta, node.depth - NULL_REDUCTION, node.lastMove, NODE_PV) >=
                  beta;
            if (stopped(thread)) return 0;
        }
        if (cut) {
            stats.nullCuts.add();
            storeEntry(thread, ply, NO_MOVE, v, node.depth, TT_LOWER);
            return v;
        }
    }
    // A reduced move that lets the opponent win, or whose destination the opponent attacks at once,
    // was reduced wrongly: report a fail high so that the parent searches it in full.
    if ((node.lastMove & MOVE_REDUCED) &&
        (v <= -WON_BOUND || (threat != NO_MOVE && moveFrom(threat) == moveTo(node.lastMove))))
        return -MATE;
    if (threat != NO_MOVE) node.threatSquare = moveTo(threat);
    return std::nullopt;
}

// Internal iterative deepening: a node without a hash move that expects to search more than one move
// well finds one with a shallower search of itself. A mate that search proves settles the node.
std::optional<int> internalDeepening(SearchThread& thread, const NodeState& node, int alpha, int nodeType,
                                     Move& hashMove) {
    const int depth = node.depth;
    if (hashMove != NO_MOVE || depth <= 1 || !(nodeType == NODE_PV || (nodeType == NODE_CUT && depth > 2)))
        return std::nullopt;
    SearchStats& stats = thread.stats;
    const int ply = node.ply;
    const uint64_t before = stats.nodes.get() + stats.qnodes.get();
    const int v = alphaBeta(thread, ply, alpha, node.beta, depth - 2, node.lastMove, nodeType);
    stats.iidNodes.add(stats.nodes.get() + stats.qnodes.get() - before);
    if (stopped(thread)) return 0;
    const Move found = plainMove(thread.pv[ply][0]);
    if (found != NO_MOVE && isValidMove(thread.board, found)) hashMove = found;
    if (v >= MATE_BOUND && v >= node.beta) {
        thread.mateKiller[ply] = hashMove;
        return v;
    }
    if (v < -(MATE_BOUND - 1) && v < alpha) return v;
    return std::nullopt;
}

// Futility: near the leaves, with the evaluation far enough below alpha, no move but a check, an
// extended move or a passed-pawn push is expected to reach alpha. The futility value, or MATE at a node
// that never skips; when it lies between the best score so far and alpha, the best score starts at it.
// Whether it is below alpha is asked again for every move.
int futilityValue(SearchThread& thread, const NodeState& node, int alpha, int nodeType, int& best) {
    const Board& board = thread.board;
    if (nodeType == NODE_PV || node.depth > 4 || node.inCheck ||
        pieceCount(board.material[static_cast<int>(board.sideToMove)]) == 0 || alpha < -(WON_BOUND - 1) ||
        alpha > WON_BOUND - 1)
        return MATE;
    const int e = evaluate(thread.eval, thread.board);
    if (e >= alpha) return MATE;
    const int futility = e + FUTILITY_MARGIN[node.depth];
    if (futility > best && futility < alpha) best = futility;
    return futility;
}

// A node that failed low with a recapture as its best move: when that recapture won more than the
// opponent's capture took, it may have been judged too shallowly, and is searched once more a ply
// deeper. Only here, where no move reached alpha: a node whose best move raised alpha has its exact
// score already. The score when it now fails high.
std::optional<int> recaptureAgain(SearchThread& thread, const NodeState& node, int& alpha, int nodeType,
                                  int& best, Move bestMove) {
    if (bestMove == NO_MOVE || moveTo(bestMove) != moveTo(node.lastMove) ||
        capturedValue(bestMove) <= capturedValue(node.lastMove))
        return std::nullopt;
    const Move move = plainMove(bestMove);
    int v;
    const Move made = searchOnce(thread, node.ply, move, alpha, node.beta, node.depth, -nodeType, v);
    if (made == NO_MOVE) return std::nullopt;
    if (stopped(thread)) return 0;
    if (v >= node.beta) return failHigh(thread, node, move, made, v, false, PICK_START);
    if (raiseBest(thread, node.ply, made, v, best, alpha)) thread.stats.alphaRaises.add();
    return std::nullopt;
}

}  // namespace

int alphaBeta(SearchThread& thread, int ply, int alpha, int beta, int depth, Move lastMove, int nodeType) {
    assert(ply > 0 && ply < MAX_PLY && -MATE <= alpha && alpha < beta && beta <= MATE);
    Board& board = thread.board;
    SearchStats& stats = thread.stats;

    // A stop request unwinds the whole tree.
    if (stopped(thread)) return 0;

    // Only the root side's principal variation gets an extra ply at the horizon.
    if (nodeType == NODE_PV && depth == 0 && (ply & 1) == 0 && !givesCheck(lastMove)) depth = 1;

    // Horizon.
    if (depth < 1 || ply > 99) {
        stats.frontier.add();
        return quiescence(thread, ply, alpha, beta, 4, lastMove);
    }

    // Count the node and look at the clock now and then.
    stats.nodes.add();
    if (clockRanOut(stats.nodes.get())) {
        stopAllThreads();
        return 0;
    }

    // The line from here is empty until a move fills it.
    thread.pv[ply][0] = NO_MOVE;

    // Draws: the opponent moved back and we can move back too, fifty moves, insufficient material,
    // repetition.
    if (const Move back = reversalDraw(board, ply, beta, lastMove)) {
        setLine(thread, ply, back);
        return DRAW;
    }
    if (fiftyMoveDraw(board) || insufficientMaterial(board) || repetitionDraw(board, ply)) return DRAW;

    const bool inCheck = givesCheck(lastMove);
    // What the steps below learn about the node, the moves of its loop share.
    NodeState node{.ply = ply,
                   .beta = beta,
                   .depth = depth,
                   .newDepth = depth - 1,
                   .lastMove = lastMove,
                   .threatSquare = NO_THREAT,
                   .inCheck = inCheck,
                   .extended = false,
                   .mayReduce = depth >= 2 && !inCheck,
                   .futility = MATE};

    // Mate-distance pruning: no line from here can be shorter than the one already found.
    if (nodeType != NODE_PV) {
        if (const int bound = mateDistanceBound(ply, alpha, beta, inCheck)) return bound;
    }

    // Transposition table: an entry may settle the node, or offer the move to search first.
    Move hashMove = NO_MOVE;
    if (const auto v = probeTable(thread, node, alpha, nodeType, hashMove)) return *v;

    // Endgame bitbases.
    if (const auto v = probeBitbases(thread, node, alpha)) return *v;

    // Mate killer: the move that mated here before.
    if (const auto v = mateKillerCut(thread, node, nodeType)) return *v;

    // Null move: a cut without a search of our own moves, or the threat they should answer.
    Move threat = NO_MOVE;
    if (const auto v = nullMove(thread, node, alpha, nodeType, threat)) return *v;

    // Internal iterative deepening: a hash move where the table had none.
    if (const auto v = internalDeepening(thread, node, alpha, nodeType, hashMove)) return *v;

    // Check and single-reply extensions, for a side that has more than its king.
    Picker picker = inCheck ? Picker::evasions(board)
                            : Picker::interior(board, thread.killer[ply][0], thread.killer[ply][1]);
    if (inCheck && board.material[static_cast<int>(board.sideToMove)] != 0) {
        node.newDepth = picker.evasionCount() == 1 ? depth + 1 : depth;
        node.extended = true;
    }

    int best = -MATE;
    Move bestMove = NO_MOVE;
    const int alphaOnEntry = alpha;
    int searched = 0;  // legal moves searched or pruned

    // The hash move first, before any move is generated; in check it waits for its turn among the
    // evasions.
    if (hashMove != NO_MOVE && !inCheck) {
        int v;
        Move made;
        if (searchMove(thread, node, nodeType, alpha, true, hashMove, PICK_START, v, made) ==
            MoveOutcome::SEARCHED) {
            if (stopped(thread)) return 0;
            ++searched;
            if (v >= beta) return failHigh(thread, node, hashMove, made, v, true, PICK_START);
            bestMove = made;
            raiseBest(thread, ply, made, v, best, alpha);  // the statistics count raises by later moves only
            if (nodeType == NODE_CUT) nodeType = NODE_ALL;
        } else {
            hashMove = NO_MOVE;
        }
    }

    // Futility: hopeless moves near the leaves are skipped.
    node.futility = futilityValue(thread, node, alpha, nodeType, best);

    // The move loop.
    while (Move* batch = picker.next()) {
        const int stage = picker.stage;
        if (stage == PICK_QUIET && threat != NO_MOVE) picker.orderThreatEvasions(threat);
        for (Move* cursor = batch; cursor < picker.end; ++cursor) {
            const Move move = *cursor;
            if (move == NO_MOVE || (move == hashMove && !inCheck)) continue;
            // The next move's table entry loads while this one is searched (futility skips most moves
            // unsearched, and their entries are not worth the key); the picker asked for the good
            // captures' entries already.
            if (!node.futile(alpha) && stage != PICK_GOOD_CAPTURES && cursor + 1 < picker.end &&
                cursor[1] != NO_MOVE)
                tt.prefetchAfter(board, cursor[1]);

            // Offer the remaining moves to idle threads once the first move has shown that
            // the node must search them all. With a single search thread no node is deep enough.
            if (depth >= thread.minSplitDepth && searched > 0 &&
                thread.activeSplits < MAX_SPLITS_PER_THREAD) {
                SplitOutcome outcome{alpha, best, bestMove, NO_MOVE, 0};
                if (splitNode(thread, node, nodeType, picker, cursor, inCheck ? NO_MOVE : hashMove, threat,
                              outcome)) {
                    if (stopped(thread)) return 0;
                    if (outcome.best >= beta)
                        return failHigh(thread, node, outcome.cutMove, outcome.bestMove, outcome.best, false,
                                        outcome.cutStage);
                    alpha = outcome.alpha;
                    best = outcome.best;
                    bestMove = outcome.bestMove;
                    break;  // the picker is empty now
                }
            }

            // Reduce, search or prune the move.
            int v;
            Move made;
            const MoveOutcome outcome =
                searchMove(thread, node, nodeType, alpha, searched == 0, move, stage, v, made);
            if (outcome == MoveOutcome::ILLEGAL) continue;
            const bool first = searched == 0;
            ++searched;
            if (outcome == MoveOutcome::PRUNED) continue;

            // See what the move brought.
            if (stopped(thread)) return 0;
            if (v >= beta) return failHigh(thread, node, move, made, v, first, stage);
            if (v > best) bestMove = made;
            if (raiseBest(thread, ply, made, v, best, alpha)) stats.alphaRaises.add();
            if (nodeType == NODE_CUT) nodeType = NODE_ALL;
        }
    }

    // No legal move: mate or stalemate.
    if (searched == 0) {
        stats.endNodes.add();
        return inCheck ? ply - MATE : DRAW;
    }

    // Fail low, unless a recapture searched again lifts the node.
    if (best <= alphaOnEntry) {
        if (const auto v = recaptureAgain(thread, node, alpha, nodeType, best, bestMove)) return *v;
        if (best <= alphaOnEntry) {
            stats.allNodes.add();
            storeEntry(thread, ply, plainMove(bestMove), best, depth, TT_UPPER);
            return best;
        }
    }

    // Exact result.
    stats.pvNodes.add();
    storeEntry(thread, ply, plainMove(bestMove), best, depth, TT_EXACT);
    return best;
}

MoveOutcome searchMove(SearchThread& thread, const NodeState& node, int nodeType, int alpha, bool first,
                       Move move, int stage, int& score, Move& made, const std::atomic<int>* liveAlpha) {
    Board& board = thread.board;
    SearchStats& stats = thread.stats;
    const int side = static_cast<int>(board.sideToMove);
    if (exposesKing(board, board.kingSquare(side), moveFrom(move), moveTo(move))) return MoveOutcome::ILLEGAL;

    // Both late-move reductions and futility ask the alpha of this move: one that rose during the
    // loop may allow either for the moves after the rise.
    const bool reductionCandidate = node.mayReduce && alpha >= -(WON_BOUND - 1) && stage > PICK_KILLER_2;
    const bool exempt = reductionCandidate && isExemptFromReduction(thread, move, node.threatSquare);
    const bool futile = node.futile(alpha);
    const bool passedPush = futile && isPawnSlot(board.at(moveFrom(move))) &&
                            (passedPawnFiles(thread, side) & (1 << fileOf(moveFrom(move))));

    // The child's pawn entry loads while the move is made; futility skips most moves unsearched.
    if (!futile) thread.eval.pawnHash.prefetchAfter(board, move);
    const SavedState saved = saveState(board);
    made = makeMove(board, move);
    if (made == NO_MOVE) return MoveOutcome::ILLEGAL;
    tt.prefetch(board);
    // Per-move extensions.
    const int extension = node.extended ? 0 : moveExtension(board, made, node.lastMove, node.newDepth);

    // Futility, continued: skip the hopeless move without a search, capture or not.
    if (futile && extension == 0 && !givesCheck(made) && !passedPush) {
        takeBack(board, made, saved);
        stats.qnodes.add();
        stats.frontier.add();
        return MoveOutcome::PRUNED;
    }
    if (isKillerStage(stage)) stats.killerTries.add();

    // Late-move reduction.
    const int ply = node.ply;
    const int beta = node.beta;
    int v = 0;
    bool done = false;
    if (reductionCandidate && !exempt && extension == 0 && !givesCheck(made)) {
        stats.reduceTries.add();
        v = -alphaBeta(thread, ply + 1, -alpha - 1, -alpha, node.newDepth - 1, made | MOVE_REDUCED, NODE_CUT);
        if (v <= alpha)
            done = true;
        else
            stats.reduceFails.add();
    }

    // Full-depth search, null window first at later moves of PV nodes.
    if (!done) {
        const int d = node.newDepth + extension;
        if (first || nodeType != NODE_PV) {
            v = -alphaBeta(thread, ply + 1, -beta, -alpha, d, made, -nodeType);
        } else {
            v = -alphaBeta(thread, ply + 1, -alpha - 1, -alpha, d, made, NODE_CUT);
            if (v > alpha && !thread.stop.load(std::memory_order_relaxed)) {
                if (liveAlpha)
                    alpha = std::clamp(liveAlpha->load(std::memory_order_relaxed), alpha, beta - 1);
                v = -alphaBeta(thread, ply + 1, -beta, -alpha, d, made, NODE_PV);
            }
        }
    }

    takeBack(board, made, saved);
    score = v;
    return MoveOutcome::SEARCHED;
}
