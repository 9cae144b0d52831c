#include "harness/compare.h"

#include <cstdio>

namespace {

void appendLine(std::string& text, const char* format, auto... values) {
    char line[300];
    std::snprintf(line, sizeof line, format, values...);
    text += line;
}

std::string timeText(const PositionResult& p) {
    if (p.outcome != PositionOutcome::SOLVED) return "-";
    char text[32];
    std::snprintf(text, sizeof text, "%.2f s", p.ms / 1000.0);
    return text;
}

}  // namespace

Comparison compareResults(const SuiteResults& a, const std::string& nameA, const SuiteResults& b,
                          const std::string& nameB) {
    Comparison c;
    appendLine(c.text, "a: %s, %i of %zu solved\nb: %s, %i of %zu solved\n", nameA.c_str(), a.solved(),
               a.positions.size(), nameB.c_str(), b.solved(), b.positions.size());
    appendLine(c.text, "%-20s %10s %10s  %s\n", "id", "a", "b", "b - a");
    for (const PositionResult& pa : a.positions) {
        const PositionResult* pb = b.find(pa.id);
        if (!pb) {
            ++c.missing;
            appendLine(c.text, "%-20s %10s %10s  only in a\n", pa.id.c_str(), timeText(pa).c_str(), "");
            continue;
        }
        const bool solvedA = pa.outcome == PositionOutcome::SOLVED,
                   solvedB = pb->outcome == PositionOutcome::SOLVED;
        if (!solvedA && !solvedB) {
            ++c.neither;
            continue;
        }
        std::string difference;
        if (solvedA && solvedB) {
            ++c.both;
            c.bothMsA += pa.ms;
            c.bothMsB += pb->ms;
            char text[32];
            std::snprintf(text, sizeof text, "%+.2f s", (static_cast<double>(pb->ms) - pa.ms) / 1000.0);
            difference = text;
        } else {
            ++(solvedA ? c.onlyA : c.onlyB);
            difference = solvedA ? "solved only by a" : "solved only by b";
        }
        appendLine(c.text, "%-20s %10s %10s  %s\n", pa.id.c_str(), timeText(pa).c_str(),
                   timeText(*pb).c_str(), difference.c_str());
    }
    for (const PositionResult& pb : b.positions) {
        if (a.find(pb.id)) continue;
        ++c.missing;
        appendLine(c.text, "%-20s %10s %10s  only in b\n", pb.id.c_str(), "", timeText(pb).c_str());
    }
    appendLine(c.text, "solved by both %i (a %.2f s, b %.2f s), only by a %i, only by b %i, by neither %i",
               c.both, c.bothMsA / 1000.0, c.bothMsB / 1000.0, c.onlyA, c.onlyB, c.neither);
    if (c.missing) appendLine(c.text, ", in one file only %i", c.missing);
    c.text += "\n";
    return c;
}
