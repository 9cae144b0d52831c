// Evaluation speed: evaluations per second on one thread over a fixed set of positions, all those
// within two plies of the positions of perft.epd (6,914, more than the evaluation cache holds)
// and a small set of 256 of them that mostly fits in it (the cache is direct-mapped).
#include <benchmark/benchmark.h>

#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "board/makemove.h"
#include "board/movegen.h"
#include "eval/evaluate.h"

namespace {

void collect(Board& board, int depth, std::vector<std::unique_ptr<Board>>& positions) {
    positions.push_back(std::make_unique<Board>(board));
    if (depth == 0) return;
    MoveList moves;
    Move* end = board.inCheck() ? generateEvasions(board, moves) : generateMoves(board, moves);
    const Move lastMove = board.lastMove;
    for (Move* move = moves; move != end; ++move) {
        const SavedState saved = saveState(board);
        const Move played = makeMove(board, *move);
        if (!played) continue;
        board.lastMove = played;
        collect(board, depth - 1, positions);
        takeBack(board, played, saved);
        board.lastMove = lastMove;
    }
}

const std::vector<std::unique_ptr<Board>>& positions() {
    static std::vector<std::unique_ptr<Board>> all = [] {
        std::vector<std::unique_ptr<Board>> result;
        std::ifstream in(std::string(KELVRA_DATA_DIR) + "/perft.epd");
        std::string line;
        Board board;
        while (std::getline(in, line))
            if (board.setFen(line.substr(0, line.find(';')).c_str())) collect(board, 2, result);
        return result;
    }();
    return all;
}

// Each iteration evaluates every position of the set once.
void run(benchmark::State& state, size_t count, bool cache) {
    const auto& set = positions();
    count = std::min(count, set.size());
    auto context = std::make_unique<EvalContext>();
    context->useCache = cache;
    int64_t sum = 0;
    for (auto _ : state)
        for (size_t i = 0; i < count; ++i) sum += evaluate(*context, *set[i]);
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(count));
    state.counters["positions"] = static_cast<double>(count);
    state.counters["cache hits %"] =
        100.0 * static_cast<double>(context->cacheHits) / static_cast<double>(context->nodes);
}

// Every call a full evaluation (the pawn table warm after the first round).
void uncached(benchmark::State& state) {
    run(state, SIZE_MAX, false);
}
// The large set through the cache: most calls miss and overwrite.
void cacheCold(benchmark::State& state) {
    run(state, SIZE_MAX, true);
}
// The small set through the cache: after the first round nearly every call hits.
void cacheWarm(benchmark::State& state) {
    run(state, 256, true);
}

BENCHMARK(uncached)->Unit(benchmark::kMillisecond);
BENCHMARK(cacheCold)->Unit(benchmark::kMillisecond);
BENCHMARK(cacheWarm)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
