// What an analysis GUI asks beyond playing: several lines, chosen root moves, mate search and the
// bitbase folder as an option, through the real binary.
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "uci_session.h"

namespace {

const char* const START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
// Mate in two: Nf6+ gxf6 Bxf7#.
const char* const LEGALS_MATE = "r2qkb1r/pp2nppp/3p4/2pNN1B1/2BnP3/3P4/PPP2PPP/R2bK2R w KQkq - 1 1";
// Only Nxd4 wins: every other move leaves a queen against a knight.
const char* const HANGING_QUEEN = "4k3/8/8/8/3q4/5N2/8/4K3 w - - 0 1";
// Two legal moves, Ka2 and Kb2.
const char* const TWO_MOVES = "k7/8/8/8/8/8/8/K6r w - - 0 1";

struct InfoLine {
    int depth = 0;
    int multipv = 0;  // 0 when the line has none
    int rank = 0;     // the score, mates beyond every centipawn figure
    std::string score;
    std::string firstMove;
};

int fieldAfter(const std::string& line, const std::string& key) {
    const size_t at = line.find(key);
    return at == std::string::npos ? 0 : atoi(line.c_str() + at + key.size());
}

// The "info" lines with a principal variation, in order.
std::vector<InfoLine> infoLines(const std::string& output) {
    std::vector<InfoLine> lines;
    std::istringstream text(output);
    for (std::string line; std::getline(text, line);) {
        const size_t score = line.find(" score "), time = line.find(" time "), pv = line.find(" pv ");
        if (line.rfind("info depth ", 0) != 0 || pv == std::string::npos) continue;
        InfoLine info;
        info.depth = fieldAfter(line, "info depth ");
        info.multipv = fieldAfter(line, " multipv ");
        info.score = line.substr(score + 7, time - score - 7);
        const int value = fieldAfter(line, info.score.substr(0, info.score.find(' ') + 1));
        info.rank = info.score[0] == 'c' ? value : value > 0 ? 100000 - value : -100000 - value;
        info.firstMove = line.substr(pv + 4, line.find(' ', pv + 4) - pv - 4);
        lines.push_back(info);
    }
    return lines;
}

// A search of the position from an empty table; its output up to the answer.
std::string analyse(UciSession& session, const std::string& fen, const std::string& go) {
    session.settle("ucinewgame\nsetoption name Clear Hash\nposition fen " + fen + "\n");
    return session.exchange(go + "\n", "bestmove ");
}

// Three lines per iteration (as many as there are moves, when fewer), best first, with different
// moves; the first agrees with the search for one line, and back at one line no line carries a place.
TEST(UciAnalysis, MultiPvGivesTheBestLinesInOrder) {
    UciSession session("uci_multipv");
    session.settle("setoption name OwnBook value false\n");
    const struct {
        const char* fen;
        int depth;
        size_t lines;
    } positions[] = {{START, 5, 3}, {LEGALS_MATE, 2, 3}, {HANGING_QUEEN, 5, 3}, {TWO_MOVES, 3, 2}};
    for (const auto& position : positions) {
        const std::string go = "go depth " + std::to_string(position.depth);
        const std::vector<InfoLine> single = infoLines(analyse(session, position.fen, go));
        ASSERT_FALSE(single.empty()) << position.fen;

        session.settle("setoption name MultiPV value 3\n");
        const std::string out = analyse(session, position.fen, go);
        const std::vector<InfoLine> lines = infoLines(out);
        for (int depth = 1; depth <= position.depth; ++depth) {
            std::vector<InfoLine> iteration;
            for (const InfoLine& line : lines)
                if (line.depth == depth && iteration.size() < position.lines) iteration.push_back(line);
            ASSERT_EQ(iteration.size(), position.lines) << position.fen << " depth " << depth << "\n" << out;
            EXPECT_EQ(countOf(out, "info depth " + std::to_string(depth) + " seldepth"),
                      position.lines + (depth == position.depth))
                << out;
            std::set<std::string> moves;
            for (size_t i = 0; i < position.lines; ++i) {
                EXPECT_EQ(iteration[i].multipv, int(i) + 1) << out;
                if (i > 0) {
                    EXPECT_LE(iteration[i].rank, iteration[i - 1].rank) << out;
                }
                moves.insert(iteration[i].firstMove);
            }
            EXPECT_EQ(moves.size(), position.lines) << out;
            if (depth == position.depth && position.fen != START) {
                EXPECT_EQ(iteration[0].firstMove, single.back().firstMove) << out;
                EXPECT_EQ(iteration[0].score, single.back().score) << out;
            }
        }
        // The answer is the first line's move; the closing line repeats the first.
        EXPECT_EQ(lines.back().multipv, 1) << out;
        EXPECT_NE(out.find("bestmove " + lines.back().firstMove), std::string::npos) << out;

        session.settle("setoption name MultiPV value 1\n");
        const std::string again = analyse(session, position.fen, go);
        EXPECT_EQ(again.find("multipv"), std::string::npos) << again;
        EXPECT_EQ(infoLines(again).back().firstMove, single.back().firstMove) << again;
    }
}

// Only the chosen moves are searched, a weaker one too, and a single one to the depth asked.
TEST(UciAnalysis, SearchmovesSearchesOnlyTheChosenMoves) {
    UciSession session("uci_searchmoves");
    std::string out = analyse(session, HANGING_QUEEN, "go depth 4 searchmoves e1f1");
    EXPECT_TRUE(matches(out, "info depth 4 seldepth")) << out;
    EXPECT_NE(out.find("bestmove e1f1"), std::string::npos) << out;
}

// A mate search ends by itself once it has the mate, with no clock given; one for a shorter mate
// than there is runs on until "stop".
TEST(UciAnalysis, GoMateEndsWhenTheMateIsFound) {
    UciSession session("uci_mate");
    session.settle("setoption name OwnBook value false\n");
    std::string out = analyse(session, LEGALS_MATE, "go mate 2");
    EXPECT_TRUE(matches(out, "info depth # seldepth # score mate 2 time * pv d5f6 g7f6 c4f7 \nbestmove d5f6"))
        << out;
    // Deep iterations go fast once the mate is known: the search may reach its last depth before "stop".
    session.settle("position fen " + std::string(LEGALS_MATE) + "\n");
    out = session.settle("go mate 1\n");
    if (out.find("bestmove ") == std::string::npos) out += session.exchange("stop\n", "bestmove ");
    EXPECT_EQ(countOf(out, "bestmove "), 1u) << out;
    session.settle("");
    const std::string log = session.logText();
    EXPECT_EQ(countOf(log, "mate found\n"), 1u) << log;
}

// The bitbase folder announced with the ini's value, and loaded or refused at once when set.
TEST(UciAnalysis, BitbasesPathLoadsTheLibraryAtOnce) {
    const std::string standin = KELVRA_TEST_EGBB_DIR "/standin";
    UciSession session("uci_bitbases_path", "egbb.dir=/nonexistent\n", false);
    std::string out = session.exchange("uci\n", "uciok\n");
    EXPECT_NE(out.find("option name Bitbases Path   type string default /nonexistent\n"), std::string::npos)
        << out;
    out = session.settle("setoption name Bitbases Path value " + standin + "\n");
    EXPECT_NE(out.find("EGBB: loaded, maxmen="), std::string::npos) << out;
    out = session.settle("setoption name Bitbases Path value /nowhere\n");
    EXPECT_NE(out.find("egbb dll not found: /nowhere/egbbso64.so\n"), std::string::npos) << out;
}

}  // namespace
