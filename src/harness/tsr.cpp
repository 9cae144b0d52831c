// The result file is plain text, one item per line, so that it can be read, diffed and edited by hand:
//
//     # Kelvra test suite results
//     file ../suites/lct2.epd
//     seconds 600
//     1 solved 32150 51234567 d5d6 LCTII.POS.01
//     2 unsolved 600004 98211002 Qe2xe7 LCTII.POS.02
//     3 error 0 0 - LCTII.POS.03
//
// "file" names the EPD file as given to the epd command, "seconds" the time per position. A position
// line holds the position's number in the EPD file, its outcome (solved, unsolved or error), the time in
// milliseconds (the solution time when solved, else the time searched), the nodes searched, the move
// chosen in the engine's own notation ("-" when none), and its id, which runs to the end of the line and
// may contain blanks. Lines starting with '#' and blank lines are comments; unknown keys are skipped.
#include "harness/tsr.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "harness/textinput.h"

namespace {

const char* outcomeName(PositionOutcome outcome) {
    switch (outcome) {
        case PositionOutcome::SOLVED:
            return "solved";
        case PositionOutcome::UNSOLVED:
            return "unsolved";
        case PositionOutcome::ERROR:
            break;
    }
    return "error";
}

bool readOutcome(const std::string& word, PositionOutcome& outcome) {
    for (PositionOutcome o : {PositionOutcome::SOLVED, PositionOutcome::UNSOLVED, PositionOutcome::ERROR})
        if (word == outcomeName(o)) {
            outcome = o;
            return true;
        }
    return false;
}

bool readPosition(const std::string& line, PositionResult& p) {
    std::istringstream in(line);
    std::string outcome;
    if (!(in >> p.number >> outcome >> p.ms >> p.nodes >> p.move) || !readOutcome(outcome, p.outcome))
        return false;
    std::getline(in >> std::ws, p.id);
    return !p.id.empty();
}

}  // namespace

std::string tsrName(const std::string& epdPath) {
    const size_t slash = epdPath.find_last_of("/\\");
    std::string name = epdPath.substr(slash == std::string::npos ? 0 : slash + 1);
    const size_t dot = name.find_last_of('.');
    if (dot != std::string::npos && dot > 0) name.erase(dot);
    return name + ".tsr";
}

bool writeTsr(const std::string& path, const SuiteResults& results) {
    FILE* file = std::fopen(path.c_str(), "w");
    if (!file) return false;
    std::fprintf(file, "# Kelvra test suite results\nfile %s\nseconds %g\n", results.file.c_str(),
                 results.seconds);
    for (const PositionResult& p : results.positions)
        std::fprintf(file, "%i %s %" PRIu32 " %" PRIu64 " %s %s\n", p.number, outcomeName(p.outcome), p.ms,
                     p.nodes, p.move.empty() ? "-" : p.move.c_str(), p.id.c_str());
    const bool written = !std::ferror(file);
    return std::fclose(file) == 0 && written;
}

bool readTsr(const std::string& path, SuiteResults& results, std::string& error) {
    results = SuiteResults();
    std::ifstream in;
    if (!openText(path, in)) {
        error = "cannot open " + path;
        return false;
    }
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty() || line[0] == '#') continue;
        if (line[0] >= '0' && line[0] <= '9') {
            PositionResult p;
            if (!readPosition(line, p)) {
                error = path + " line " + std::to_string(number) + ": cannot read: " + line;
                return false;
            }
            results.positions.push_back(p);
        } else if (line.starts_with("file ")) {
            results.file = line.substr(5);
        } else if (line.starts_with("seconds ")) {
            results.seconds = std::atof(line.c_str() + 8);
        }
    }
    return true;
}
