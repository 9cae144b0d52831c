// Perft speed: leaf positions per second with every leaf made and taken back, on one thread.
#include "board/perft.h"

#include <benchmark/benchmark.h>

#include "board/board.h"

namespace {

void runPerft(benchmark::State& state, const char* fen, int depth) {
    Board board;
    board.setFen(fen);
    uint64_t leaves = 0;
    for (auto _ : state) leaves += perft(board, depth, board.lastMove);
    state.counters["leaves/s"] = benchmark::Counter(static_cast<double>(leaves), benchmark::Counter::kIsRate);
    state.counters["leaves"] = static_cast<double>(leaves / state.iterations());
}

void startPosition(benchmark::State& state) {
    runPerft(state, START_FEN, static_cast<int>(state.range(0)));
}

// Many captures, promotions, castling and pins.
void middlegame(benchmark::State& state) {
    runPerft(state, "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
             static_cast<int>(state.range(0)));
}

BENCHMARK(startPosition)->Arg(5)->Arg(6)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(middlegame)->Arg(4)->Arg(5)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

BENCHMARK_MAIN();
