// Book building speed: games per second of buildbook over a week of tournament games (default
// options: 40 plies of each game through the move parser), and of the PGN reader alone.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "book/builder.h"
#include "book/pgn.h"

namespace {

const std::string TWIC = std::string(KELVRA_DATA_DIR) + "/pgn/twic0920.pgn";
constexpr double TWIC_GAMES = 2245;

// The builder reports as it goes; the benchmark's own table is what matters here.
class SilentStdout {
  public:
    SilentStdout() : saved(dup(1)) {
        std::fflush(stdout);
        const int null = open("/dev/null", O_WRONLY);
        dup2(null, 1);
        close(null);
    }
    ~SilentStdout() {
        std::fflush(stdout);
        dup2(saved, 1);
        close(saved);
    }

  private:
    int saved;
};

void buildTwic(benchmark::State& state) {
    BookBuildOptions options;
    options.file = "/tmp/kelvra-bench-twic.bbk";
    options.maxPly = static_cast<int>(state.range(0));
    std::string written;
    for (auto _ : state) {
        SilentStdout quiet;
        if (!buildBook(TWIC.c_str(), options, 0, written)) state.SkipWithError("buildbook failed");
    }
    std::remove(options.file.c_str());
    state.counters["games/s"] =
        benchmark::Counter(TWIC_GAMES * state.iterations(), benchmark::Counter::kIsRate);
}

void readTwic(benchmark::State& state) {
    for (auto _ : state) {
        PgnReader reader(40);
        reader.open(TWIC.c_str());
        PgnGame game;
        while (reader.next(game)) benchmark::DoNotOptimize(game.moves.data());
    }
    state.counters["games/s"] =
        benchmark::Counter(TWIC_GAMES * state.iterations(), benchmark::Counter::kIsRate);
}

BENCHMARK(buildTwic)->Arg(40)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(readTwic)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
