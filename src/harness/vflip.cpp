#include "harness/vflip.h"

#include <memory>

#include "board/flipfen.h"
#include "eval/evaluate.h"
#include "harness/epd.h"
#include "harness/textinput.h"

namespace {

// Each side evaluated from scratch: the evaluation cache must not hand one twin the other's score.
int evaluateFresh(EvalContext& context, Board& board) {
    context.useCache = false;
    return evaluate(context, board);
}

}  // namespace

bool vflipFile(const std::string& path, VflipCount& count, FILE* out) {
    std::ifstream in;
    if (!openText(path, in)) return false;
    count = VflipCount();
    auto context = std::make_unique<EvalContext>();
    auto board = std::make_unique<Board>();
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        EpdRecord record;
        std::string error;
        const EpdLine kind = parseEpdLine(line.c_str(), record, error);
        if (kind == EpdLine::SKIP) continue;
        if (kind == EpdLine::POSITION && setUpPosition(*board, record, error)) {
            const int score = evaluateFresh(*context, *board);
            EpdRecord twin = record;
            twin.fen = flipFen(record.fen);
            if (setUpPosition(*board, twin, error)) {
                const int flippedScore = evaluateFresh(*context, *board);
                ++count.positions;
                if (score != flippedScore) {
                    ++count.differences;
                    std::fprintf(out, "VFLIP EVAL NOT EQUAL: %s (%i) / %s (%i)\n", record.fen.c_str(), score,
                                 twin.fen.c_str(), flippedScore);
                }
                continue;
            }
        }
        ++count.errors;
        std::fprintf(out, "vflip: line %i: %s\n", number, error.c_str());
    }
    std::fprintf(out, "vflip: %i positions, %i not equal", count.positions, count.differences);
    if (count.errors) std::fprintf(out, ", %i lines in error", count.errors);
    std::fprintf(out, "\n");
    return true;
}
