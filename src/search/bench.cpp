#include "search/bench.h"

#include "platform/platform.h"
#include "search/searchthread.h"
#include "search/tt.h"

namespace {

// Openings, middlegames with both kings in danger, tactics, and endings from pawn races to mating
// material, so that every part of the search gets its share of the nodes.
constexpr const char* POSITIONS[] = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
    "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
    "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8",
    "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10",
    "rnbqk1nr/pp1pppbp/6p1/8/2PpP3/5N2/PP3PPP/RNBQKB1R w KQkq - 0 5",
    "r1bqkbnr/pp1p1ppp/2n1p3/8/3NP3/8/PPP2PPP/RNBQKB1R w KQkq - 1 5",
    "r1bqk2r/pppp1ppp/2n2n2/4p3/1bP5/2N3P1/PP1PPPBP/R1BQK1NR w KQkq - 5 5",
    "rnbqkb1r/pp2pppp/2p2n2/8/2pP4/2N2N2/PP2PPPP/R1BQKB1R w KQkq - 0 5",
    "r1bq1rk1/pp2bppp/2n1pn2/3p4/2PP4/2N1PN2/PP3PPP/R2QKB1R w KQ - 0 8",
    "r2q1rk1/pb1nbppp/1p2pn2/2pp4/2PP4/1PN1PN2/PB2BPPP/R2Q1RK1 w - - 0 10",
    "2rq1rk1/pp1bppbp/3p1np1/4n3/3NP3/1BN1BP2/PPPQ2PP/2KR3R w - - 0 13",
    "r1b2rk1/2q1bppp/p2ppn2/1p6/3BPP2/2NB4/PPP1Q1PP/2KR3R w - - 0 14",
    "2rr3k/pp3pp1/1nnqbN1p/3pN3/2pP4/2P3Q1/PPB4P/R4RK1 w - - 0 1",
    "r1bq2rk/pp3pbp/2p1p1pQ/7P/3P4/2PB1N2/PP3PPR/2KR4 w - - 0 1",
    "r4rk1/pp1n1p1p/1nqP2p1/2b1P1B1/4NQ2/1B3P2/PP2K2P/2R5 w - - 0 1",
    "3r1rk1/1pp2ppp/p1n5/4P3/2P1q3/2Q2N2/PP3PPP/3RR1K1 b - - 0 1",
    "r3r1k1/ppq2pp1/2p2n1p/3p4/3P4/2PBPN2/P1Q2PPP/R4RK1 w - - 0 16",
    "6k1/5pp1/4p2p/3pP3/1r1P4/p3R1P1/5P1P/R5K1 b - - 0 35",
    "8/7p/5k2/5p2/p1p2P2/Pr1pPK2/1P1R3P/8 b - - 0 1",
    "8/k7/3p4/p2P1p2/P2P1P2/8/8/K7 w - - 0 1",
    "1k6/1P6/2K5/8/8/8/8/8 w - - 0 1",
    "1K1k4/1P6/8/8/8/8/r7/2R5 w - - 0 1",
    "3k4/8/3K4/8/8/8/8/R7 w - - 0 1",
    "8/8/8/8/3k4/8/8/K6Q w - - 0 1",
    "8/8/1p1k4/1P6/2K5/8/8/8 w - - 0 1",
    "5k2/8/5K2/4PB2/8/8/8/8 w - - 0 1",
    "8/5pk1/6p1/7p/7P/6P1/5PK1/3R4 w - - 0 40",
    "4r1k1/1q3ppp/p7/1pb5/8/P1Q2N2/1P3PPP/4R1K1 w - - 0 25",
};

}  // namespace

std::span<const char* const> benchPositions() {
    return POSITIONS;
}

BenchResult runBench(int depth, void (*perPosition)(int index, uint64_t nodes, uint32_t ms)) {
    // Depth alone ends each search: no clock, no listener, no output.
    SearchRequest request;
    request.maxDepth = depth;
    request.infinite = true;
    request.statistics = false;

    BenchResult result;
    int index = 0;
    for (const char* fen : POSITIONS) {
        request.board.setFen(fen);
        tt.clear();
        const uint32_t start = platform::getTickCount();
        searchThread.startSearch(request, true);
        const uint32_t ms = platform::getTickCount() - start;
        const uint64_t nodes = totalNodes();
        result.nodes += nodes;
        result.ms += ms;
        if (perPosition) perPosition(index, nodes, ms);
        ++index;
    }
    return result;
}
