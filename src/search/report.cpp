#include "search/report.h"

#include <cstdarg>
#include <cstdio>

#include "board/makemove.h"
#include "board/movegen.h"
#include "board/notation.h"
#include "frontend/util/log.h"
#include "search/parallel.h"
#include "search/timecontrol.h"
#include "search/tt.h"

namespace {

double percent(uint64_t part, uint64_t whole) {
    return whole ? 100.0 * double(part) / double(whole) : 0.0;
}

void append(std::string& text, const char* format, ...) __attribute__((format(printf, 2, 3)));
void append(std::string& text, const char* format, ...) {
    char buffer[256];
    va_list args;
    va_start(args, format);
    std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    text += buffer;
}

// depth/seldepth, clock, nodes and score: the columns every line starts with.
std::string lineHead(const SearchThread& thread, int score) {
    const uint32_t seconds = timeControl.elapsed() / 1000;
    std::string text;
    append(text, "%2i/%-2i %2i:%02i:%02i %8s %8s ", thread.iterationDepth(), thread.seldepth, seconds / 3600,
           seconds / 60 % 60, seconds % 60, formatCount(totalNodes()).c_str(), formatScore(score).c_str());
    return text;
}

void emit(const SearchThread& thread, const std::string& text) {
    Log().info("%s", text.c_str());
    if (SearchListener* listener = thread.request().listener) listener->reportText(text.c_str());
}

}  // namespace

std::string formatCount(uint64_t count) {
    static constexpr char UNITS[] = " kmg";
    int unit = 0;
    while (count > 99999 && unit < 3) {
        count /= 1024;
        ++unit;
    }
    std::string text;
    append(text, "%i%c", static_cast<int>(count), UNITS[unit]);
    return text;
}

std::string formatScore(int score) {
    std::string text;
    if (score >= MATE_BOUND)
        append(text, "%+3i#", (MATE - score + 1) / 2);
    else if (score <= -MATE_BOUND)
        append(text, "%+3i#", -(MATE + score) / 2);
    else if (score >= WON_BOUND || score <= -WON_BOUND)
        append(text, "%8i", score);
    else
        append(text, "%8.3f", score / 100.0);
    return text;
}

void printLine(SearchThread& thread, int score, const char* note) {
    std::string text = lineHead(thread, score);
    // The moves are written on a copy of the root position so that each gets its piece letter.
    Board line = thread.board;
    for (const Move* move = thread.principalVariation(); *move != NO_MOVE; ++move) {
        const Move made = makeMove(line, plainMove(*move));
        if (made == NO_MOVE) break;
        char word[MOVE_TEXT_SIZE];
        moveToText(line, word, made);
        text += ' ';
        text += word;
    }
    if (note) {
        text += "  ";
        text += note;
    }
    if (text.back() != '\n') text += '\n';
    emit(thread, text);
}

void printMove(SearchThread& thread, int score, Move move, const char* mark) {
    char word[MOVE_TEXT_SIZE];
    moveToText(thread.board, word, move);
    std::string text = lineHead(thread, score);
    append(text, " %s %s\n", word, mark);
    emit(thread, text);
}

void logStatistics(SearchThread&) {
    SearchStats sum;
    for (const SearchThread& thread : searchThreads) sum.accumulate(thread.stats);
    const uint64_t nodes = sum.nodes.get();
    const uint64_t all = nodes + sum.qnodes.get();
    const uint32_t ms = timeControl.elapsed();
    std::string text;
    append(text, "nodes  : i=%5.2f%%, f=%5.2f%%, q=%5.2f%%", percent(nodes, all),
           percent(sum.frontier.get(), all), percent(sum.qnodes.get(), all));
    text += ", nps=" + formatCount(ms ? all * 1000 / ms : all);
    append(text, "\ninodes : pv=%5.2f%%, cut=%5.2f%%, all=%5.2f%%, end=%5.2f%%\n",
           percent(sum.pvNodes.get(), nodes), percent(sum.cutNodes.get() + sum.nullCuts.get(), nodes),
           percent(sum.allNodes.get(), nodes), percent(sum.endNodes.get(), nodes));
    text += "tt     : probes=" + formatCount(sum.ttProbes.get());
    append(text, ", hits=%5.2f%%, cuts=%5.2f%%", percent(sum.ttHits.get(), sum.ttProbes.get()),
           percent(sum.ttCuts.get(), sum.ttProbes.get()));
    append(text, ", upd=%5.2f%%, full=%5.2f%%\n",
           percent(sum.ttUpdates.get(), sum.ttUpdates.get() + sum.ttReplacements.get()),
           tt.filling(sum.ttReplacements.get() - sum.ttSameAgeReplacements.get()));
    append(text, "order  : 1stpv=%5.2f%%, 1stcut=%5.2f%%\n",
           percent(sum.alphaRaises.get(), sum.pvNodes.get()),
           percent(sum.firstCuts.get(), sum.cutNodes.get()));
    append(text, "killers: %5.2f%%, #=%i/%i, killed=%5.2f%%\n", percent(sum.killerTries.get(), nodes),
           static_cast<int>(sum.killerCuts.get()), static_cast<int>(sum.killerTries.get()),
           percent(sum.killerCuts.get(), nodes));
    append(text, "null   : %5.2f%%, cuts=%5.2f%%\n", percent(sum.nullNodes.get(), all),
           percent(sum.nullCuts.get(), sum.nullTries.get()));
    append(text, "iid    : %5.2f%%\n", percent(sum.iidNodes.get(), all));
    text += "reduce :  tries=" + formatCount(sum.reduceTries.get());
    append(text, ", fail=%5.2f%%\n", percent(sum.reduceFails.get(), sum.reduceTries.get()));
    const SplitFigures split = splitFigures();
    text += "smp    : splits=" + formatCount(split.splits) + ", kills=" + formatCount(split.kills) + "\n";
    for (int i = 0; i < split.threads; ++i) {
        const SplitFigures::Slot& slot = split.slots[i];
        if (i == 0)
            text += "master";
        else
            append(text, "slave%i", i);
        append(text, " : wait=%ims, admin=%ims, work=%ims\n", slot.waitMs, slot.adminMs, slot.workMs);
    }
    Log().info("%s", text.c_str());
}
