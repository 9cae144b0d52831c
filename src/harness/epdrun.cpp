#include "harness/epdrun.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "board/notation.h"
#include "harness/epd.h"
#include "harness/solution.h"
#include "harness/textinput.h"
#include "platform/platform.h"
#include "search/searchthread.h"
#include "search/tt.h"

namespace {

// Follows the best move the search shows and keeps the solution clock.
class SolutionListener : public SearchListener {
  public:
    explicit SolutionListener(const EpdMoves& solutions) : moves(solutions) {}

    void reportLine(const SearchReport& report) override {
        clock.shown(isSolution(moves, report.best), report.ms);
    }
    void reportMove(const SearchReport&, int, Move) override {}
    void finish(const SearchReport& report) override {
        chosen = report.best;
        clock.shown(isSolution(moves, report.best), report.ms);
    }

    SolutionClock clock;
    Move chosen = NO_MOVE;

  private:
    const EpdMoves& moves;
};

struct EpdEntry {
    int lineNumber;
    EpdLine kind;
    EpdRecord record;
    std::string error;
};

// The whole file first: the suite may be recognised by its ids, and its time is needed before the first
// search. A last line without a newline is still a position.
bool readEpdFile(const std::string& path, std::vector<EpdEntry>& entries) {
    std::ifstream in;
    if (!openText(path, in)) return false;
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        EpdEntry entry{number, EpdLine::SKIP, {}, {}};
        entry.kind = parseEpdLine(line.c_str(), entry.record, entry.error);
        if (entry.kind == EpdLine::POSITION && entry.record.bestMoves.empty() &&
            entry.record.avoidMoves.empty()) {
            entry.kind = EpdLine::BAD;
            entry.error = "no bm or am operation";
        }
        if (entry.kind != EpdLine::SKIP) entries.push_back(std::move(entry));
    }
    return true;
}

std::string joined(const char* opcode, const std::vector<std::string>& moves) {
    if (moves.empty()) return "";
    std::string text = opcode;
    for (const std::string& move : moves) text += " " + move;
    return text;
}

// Searches the request's position for its move time, from an empty table and with no depth limit.
void searchPosition(const EpdMoves& moves, SearchRequest& request, PositionResult& result) {
    tt.clear();
    const uint32_t start = platform::getTickCount();
    SolutionListener listener(moves);
    request.listener = &listener;
    searchThread.startSearch(request, true);
    const uint32_t elapsed = platform::getTickCount() - start;

    result.nodes = totalNodes();
    char text[MOVE_TEXT_SIZE];
    moveToText(request.board, text, listener.chosen);
    result.move = listener.chosen == NO_MOVE ? "-" : text;
    result.outcome = listener.clock.solved() ? PositionOutcome::SOLVED : PositionOutcome::UNSOLVED;
    result.ms = listener.clock.solved() ? listener.clock.solutionMs() : elapsed;
}

void printPosition(FILE* out, const PositionResult& p, const EpdRecord& record) {
    const std::string expected = joined("bm", record.bestMoves) +
                                 (record.bestMoves.empty() || record.avoidMoves.empty() ? "" : "; ") +
                                 joined("am", record.avoidMoves);
    std::fprintf(out, "%3i %-16s %-8s %8.2f s  %-10s %-16s %12llu nodes\n", p.number, p.id.c_str(),
                 p.outcome == PositionOutcome::SOLVED ? "solved" : "-", p.ms / 1000.0, p.move.c_str(),
                 expected.c_str(), static_cast<unsigned long long>(p.nodes));
    std::fflush(out);
}

}  // namespace

bool runEpdFile(const std::string& path, double seconds, EpdRun& run, FILE* out) {
    std::vector<EpdEntry> entries;
    if (!readEpdFile(path, entries)) return false;

    // Which suite, and how long per position.
    std::vector<std::string> ids;
    for (const EpdEntry& entry : entries)
        if (!entry.record.id.empty()) ids.push_back(entry.record.id);
    run.suite = findSuite(path, ids);
    if (seconds <= 0) seconds = run.suite && run.suite->seconds > 0 ? run.suite->seconds : DEFAULT_SECONDS;
    run.results = SuiteResults();
    run.results.file = path;
    run.results.seconds = seconds;
    std::fprintf(out, "epd %s: %zu positions, %g s each%s%s\n", path.c_str(), entries.size(), seconds,
                 run.suite ? ", suite " : "", run.suite ? run.suite->name : "");

    // Each position on its own: an empty table, the time per position, no depth limit.
    searchThread.stopSearch();
    SearchRequest request;
    request.clock =
        ClockLimits{.moveTimeMs = static_cast<int>(std::clamp(seconds * 1000, 1.0, double(INT32_MAX)))};
    request.statistics = false;
    int number = 0;
    for (const EpdEntry& entry : entries) {
        PositionResult result;
        result.number = ++number;
        result.id = entry.record.id.empty() ? "#" + std::to_string(number) : entry.record.id;
        std::string error = entry.error;
        EpdMoves moves;
        if (entry.kind == EpdLine::POSITION && setUpEpd(request.board, entry.record, moves, error)) {
            searchPosition(moves, request, result);
            printPosition(out, result, entry.record);
        } else {
            result.outcome = PositionOutcome::ERROR;
            result.move = "-";
            std::fprintf(out, "%3i %-16s error: line %i: %s\n", result.number, result.id.c_str(),
                         entry.lineNumber, error.c_str());
            std::fflush(out);
        }
        run.results.positions.push_back(result);
    }
    return true;
}

std::string summaryText(const SuiteResults& results) {
    const int solved = results.solved();
    int errors = 0;
    for (const PositionResult& p : results.positions) errors += p.outcome == PositionOutcome::ERROR;
    const double total = results.solvedMs() / 1000.0;
    char text[300];
    std::snprintf(text, sizeof text,
                  "solved %i of %zu, solution time %.2f s in all, %.2f s on average, %llu nodes", solved,
                  results.positions.size(), total, solved ? total / solved : 0.0,
                  static_cast<unsigned long long>(results.nodes()));
    std::string summary = text;
    if (errors)
        summary += ", " + std::to_string(errors) + (errors == 1 ? " position" : " positions") + " in error";
    return summary + "\n";
}
