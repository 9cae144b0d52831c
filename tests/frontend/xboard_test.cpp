// The xboard handler driven line by line through handleCommand, its output captured in a file: the
// handshake and feature lines, moves in and out, taking moves back, thinking on the engine's turn, the
// result held back while pondering, and whole games of the engine against itself.
#include "frontend/xboard.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "board/makemove.h"
#include "board/notation.h"
#include "environment.h"
#include "search/searchthread.h"
#include "search/timecontrol.h"
#include "search/tt.h"

namespace {

std::string fenOf(const Board& board) {
    char* text = nullptr;
    size_t size = 0;
    FILE* stream = open_memstream(&text, &size);
    board.writeFen(stream);
    fclose(stream);
    std::string fen(text, size);
    free(text);
    return fen;
}

// The rest of the stream from where it stands.
std::string readRest(FILE* stream) {
    std::string text;
    char buffer[4096];
    for (size_t n; (n = fread(buffer, 1, sizeof buffer, stream)) > 0;) text.append(buffer, n);
    return text;
}

// The position after playing moves from fen, made without the handler.
Board played(const char* fen, const std::vector<std::string>& moves) {
    Board board;
    EXPECT_TRUE(board.setFen(fen)) << fen;
    for (const std::string& word : moves) {
        const Move made = makeMove(board, isMove(board, word.c_str()));
        EXPECT_NE(made, NO_MOVE) << word;
        board.lastMove = made;
    }
    return board;
}

// The lines of text that begin with prefix, prefix included.
std::vector<std::string> linesStarting(const std::string& text, const std::string& prefix) {
    std::vector<std::string> found;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(start, end - start);
        if (line.compare(0, prefix.size(), prefix) == 0) found.push_back(line);
        start = end + 1;
    }
    return found;
}

class XboardTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        tt.alloc(1024);
        searchThread.boot();
    }

    void SetUp() override {
        ASSERT_NE(file, nullptr);
        ASSERT_TRUE(gameBoard.setFen(START_FEN));
        tt.clear();
        timeControl.setMoveTime(20000);
    }

    void TearDown() override {
        // No search of this test may outlive its handler.
        searchThread.stopSearch();
        fclose(file);
    }

    // Hands one line to the handler as the console would: the first word, then the rest.
    int send(const std::string& line) {
        const char* blank = strchr(line.c_str(), ' ');
        const std::string command(line.c_str(), blank ? static_cast<size_t>(blank - line.c_str()) : line.size());
        return handler.handleCommand(command.c_str(), blank ? blank : "");
    }

    // What the handler wrote since the last call, once the search thread is idle.
    std::string output() {
        searchThread.waitIdle();
        fflush(file);
        fseek(file, readPosition, SEEK_SET);
        const std::string text = readRest(file);
        readPosition = ftell(file);
        fseek(file, 0, SEEK_END);  // the stream writes again from here
        return text;
    }

    // The moves of the "move" lines in text.
    static std::vector<std::string> movesIn(const std::string& text) {
        std::vector<std::string> moves;
        for (const std::string& line : linesStarting(text, "move ")) moves.push_back(line.substr(5));
        return moves;
    }

    std::vector<std::string> selfPlay(const char* fen, int maxPlies);

    FILE* file = tmpfile();
    Xboard handler{file};
    long readPosition = 0;
};

TEST_F(XboardTest, HandshakeFeatureLinesAndPing) {
    EXPECT_EQ(handler.handleCommand("", ""), 0);  // outside xboard mode the console keeps empty lines
    EXPECT_EQ(send("foo bar"), 0);
    EXPECT_EQ(send("xboard"), 1);
    EXPECT_EQ(handler.xboardMode, 1);
    EXPECT_EQ(handler.handleCommand("", ""), 1);
    EXPECT_EQ(output(), "\n");

    EXPECT_EQ(send("protover 2"), 1);
    EXPECT_EQ(output(),
              "feature ping=1\nfeature setboard=1\nfeature usermove=1\nfeature myname=\"Kelvra-0.3a\"\n"
              "feature analyze=0\nfeature variants=\"normal\"\nfeature colors=0\nfeature ics=1\n"
              "feature name=1\nfeature pause=0\nfeature done=1\n");

    // Unknown words and words of another case are left to the caller, traced when asked to.
    EXPECT_EQ(send("Ping 3"), 0);
    EXPECT_EQ(output(), "");
    handler.trace = 1;
    EXPECT_EQ(send("hard"), 0);
    const std::string traced = output();
    EXPECT_EQ(traced.compare(0, 6, "trace "), 0) << traced;
    EXPECT_NE(traced.find("[_idle_]: unknown winboard command: hard\n"), std::string::npos) << traced;

    handler.trace = 0;
    send("ping 7");
    send("ping");
    send("ping x12");
    send("ping -4 and more");
    EXPECT_EQ(output(), "pong 7\npong 0\npong 0\npong -4\n");
}

TEST_F(XboardTest, SetboardTakesAPositionOrRefusesItUntilTheNext) {
    const char* fen = "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1";
    EXPECT_EQ(send(std::string("setboard ") + fen), 1);
    EXPECT_EQ(output(), "");
    Board expected;
    ASSERT_TRUE(expected.setFen(fen));
    EXPECT_EQ(gameBoard.hash, expected.hash);
    EXPECT_EQ(fenOf(gameBoard), fenOf(expected));

    // A refused position reads no move and starts no search until a good one arrives.
    testing::internal::CaptureStdout();  // setFen's own message
    send("setboard rnbqkbnr/pppppppp/9/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(output(), "tellusererror Illegal position\n");
    send("force");
    send("usermove e2e4");
    send("go");
    EXPECT_EQ(output(), "Illegal Move: e2e4\n");
    EXPECT_EQ(handler.currentStatus(), IDLE);

    send("setboard 4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
    send("usermove e2e4");
    EXPECT_EQ(output(), "");
    EXPECT_EQ(fenOf(gameBoard), fenOf(played("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", {"e2e4"})));
}

TEST_F(XboardTest, UsermovePlaysLegalMovesAndNamesTheOthers) {
    send("xboard");
    send("force");
    output();
    for (const char* word : {"e2e4", "e7e5", "Ng1f3", "Nc6"})
        EXPECT_EQ(send(std::string("usermove ") + word), 1);
    EXPECT_EQ(output(), "");  // forced: no thinking
    const Board expected = played(START_FEN, {"e2e4", "e7e5", "g1f3", "b8c6"});
    EXPECT_EQ(fenOf(gameBoard), fenOf(expected));
    EXPECT_EQ(gameBoard.hash, expected.hash);
    const uint64_t before = gameBoard.hash;
    for (const char* word : {"e2e5", "e1g1", "f3", "Nb5xd7", "zz", ""}) {
        send(std::string("usermove ") + word);
        EXPECT_EQ(output(), std::string("Illegal Move: ") + word + "\n");
    }
    EXPECT_EQ(gameBoard.hash, before);
    EXPECT_EQ(handler.engineSide, -1);
}

TEST_F(XboardTest, UndoRestoresEveryKindOfMoveAndRefusesAnEmptyHistory) {
    handler.undo();
    EXPECT_EQ(output(), "tellusererror cannot undo\n");

    send("setboard r3k2r/6P1/8/3pP3/8/8/8/R3K2R w KQkq d6 0 1");
    send("force");
    // En passant, a long castling, a promotion with capture, a king move, a check, the king's capture.
    const std::vector<std::string> moves = {"e5d6", "e8c8", "g7h8n", "c8d7", "a1a7", "d7d6"};
    std::vector<std::string> positions;
    std::vector<uint64_t> pawnKeys;
    for (const std::string& move : moves) {
        positions.push_back(fenOf(gameBoard));
        pawnKeys.push_back(gameBoard.pawnHash);
        send("usermove " + move);
        ASSERT_EQ(output(), "") << move;
    }
    for (size_t i = moves.size(); i-- > 0;) {
        handler.undo();
        EXPECT_EQ(fenOf(gameBoard), positions[i]) << "undoing " << moves[i];
        EXPECT_EQ(gameBoard.pawnHash, pawnKeys[i]) << moves[i];
        EXPECT_TRUE(gameBoard.check("undo")) << moves[i];
    }
    Board start;
    ASSERT_TRUE(start.setFen("r3k2r/6P1/8/3pP3/8/8/8/R3K2R w KQkq d6 0 1"));
    EXPECT_EQ(gameBoard.hash, start.hash);
    EXPECT_EQ(gameBoard.lastMove, start.lastMove);  // the en-passant square's double push
    handler.undo();
    EXPECT_EQ(output(), "tellusererror cannot undo\n");

    // A position set up in check is in check again once its move is taken back.
    send("setboard 4k3/8/8/8/8/8/4r3/4K3 w - - 0 1");
    ASSERT_TRUE(gameBoard.inCheck());
    send("usermove Kxe2");
    handler.undo();
    EXPECT_TRUE(gameBoard.inCheck());
    send("usermove Kf1");
    EXPECT_EQ(output(), "");

    // A new position starts a new history.
    send("setboard 4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    handler.undo();
    EXPECT_EQ(output(), "tellusererror cannot undo\n");
}

// A game longer than the board's history: the moves since its last pawn move can still be taken back,
// the earlier ones no longer.
TEST_F(XboardTest, UndoInALongGameReachesBackToTheLastPawnMove) {
    send("setboard 4k1n1/4p3/8/8/8/8/4P3/1N2K3 w - - 0 1");
    send("force");
    const char* cycle[] = {"b1c3", "g8f6", "c3b1", "f6g8"};
    for (int i = 0; i < 1000; ++i) send(std::string("usermove ") + cycle[i % 4]);
    send("usermove e2e3");
    send("usermove e7e6");
    std::vector<std::string> positions;
    for (int i = 0; i < 40; ++i) {
        positions.push_back(fenOf(gameBoard));
        send(std::string("usermove ") + cycle[i % 4]);
    }
    EXPECT_EQ(fenOf(gameBoard), "4k1n1/8/4p3/8/8/4P3/8/1N2K3 w - - 40 1042");
    for (size_t i = positions.size(); i-- > 0;) {
        handler.undo();
        EXPECT_EQ(fenOf(gameBoard), positions[i]);
    }
    EXPECT_EQ(output(), "");
    handler.undo();
    EXPECT_EQ(output(), "tellusererror cannot undo\n");
}

TEST_F(XboardTest, NewKeepsThePositionAndPlaysBlack) {
    send("xboard");
    send("force");
    send("usermove d2d4");
    output();
    const std::string position = fenOf(gameBoard);
    send("new");
    EXPECT_EQ(fenOf(gameBoard), position);
    EXPECT_EQ(handler.engineSide, 1);
    // Black is to move here, and "result" and "draw" change nothing.
    EXPECT_EQ(send("result 1-0 {White mates}"), 1);
    EXPECT_EQ(send("draw"), 1);
    EXPECT_EQ(output(), "");
    EXPECT_EQ(fenOf(gameBoard), position);
    EXPECT_EQ(handler.engineSide, 1);

    // Black's move comes after White's, and the engine then waits for the next one.
    send(std::string("setboard ") + START_FEN);
    send("sd 1");
    send("usermove e2e4");
    const std::vector<std::string> answer = movesIn(output());
    ASSERT_EQ(answer.size(), 1u);
    EXPECT_EQ(gameBoard.sideToMove, 0u);
    EXPECT_EQ(gameBoard.ply, 2u);
    send("usermove d2d4");
    EXPECT_EQ(movesIn(output()).size(), 1u);
    EXPECT_EQ(gameBoard.ply, 4u);
}

TEST_F(XboardTest, GoThinksForTheSideToMoveAndPrintsItsLines) {
    send("xboard");
    send("force");
    send("usermove e2e4");
    send("sd 2");
    output();
    send("go");
    EXPECT_EQ(handler.engineSide, 1);
    const std::string text = output();
    const std::vector<std::string> infos = linesStarting(text, "info depth 2 seldepth");
    ASSERT_FALSE(infos.empty()) << text;
    EXPECT_NE(infos.back().find(" score cp "), std::string::npos) << text;
    EXPECT_NE(infos.back().find(" nps "), std::string::npos) << text;
    EXPECT_FALSE(linesStarting(text, "info currmove ").empty()) << text;
    const std::vector<std::string> moves = movesIn(text);
    ASSERT_EQ(moves.size(), 1u) << text;
    EXPECT_EQ(text.substr(text.size() - moves[0].size() - 6), "move " + moves[0] + "\n");
    EXPECT_EQ(handler.currentStatus(), IDLE);

    // The move was played: White is to move, and the engine, playing Black, waits.
    EXPECT_EQ(gameBoard.sideToMove, 0u);
    send("usermove g1f3");
    EXPECT_EQ(movesIn(output()).size(), 1u);

    // Found mates are shown as moves to mate.
    send("setboard 6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1");
    send("sd 4");
    send("go");
    const std::string mate = output();
    EXPECT_EQ(movesIn(mate), std::vector<std::string>{"d1d8"}) << mate;
    EXPECT_NE(mate.find(" score mate 1 "), std::string::npos) << mate;
}

TEST_F(XboardTest, CommandsThatChangeTheGameCallOffTheSearchAndDropItsMove) {
    send("xboard");
    send("force");
    send("go infinite");
    EXPECT_EQ(handler.currentStatus(), SEARCHING);
    send("force");
    EXPECT_TRUE(searchThread.isIdle());
    EXPECT_EQ(handler.currentStatus(), IDLE);
    EXPECT_TRUE(movesIn(output()).empty());
    EXPECT_EQ(gameBoard.ply, 0u);

    // stop instead makes the engine move now.
    send("go infinite");
    handler.stop();
    const std::vector<std::string> moves = movesIn(output());
    ASSERT_EQ(moves.size(), 1u);
    EXPECT_EQ(gameBoard.ply, 1u);
    handler.stop();  // nothing is thinking: no second move
    EXPECT_TRUE(movesIn(output()).empty());
    EXPECT_EQ(gameBoard.ply, 1u);
}

TEST_F(XboardTest, APonderResultIsHeldBackUntilStop) {
    send("xboard");
    send("force");
    send("sd 2");
    send("go ponder");
    const std::string during = output();
    EXPECT_TRUE(movesIn(during).empty()) << during;
    EXPECT_EQ(handler.currentStatus(), IDLE);
    EXPECT_EQ(gameBoard.ply, 0u);

    handler.stop();
    const std::string released = output();
    const std::vector<std::string> moves = movesIn(released);
    ASSERT_EQ(moves.size(), 1u) << released;
    EXPECT_FALSE(linesStarting(released, "info depth ").empty()) << released;
    EXPECT_EQ(gameBoard.ply, 1u);

    // A held-back move is dropped when the game moves on without it.
    send("go ponder");
    output();
    send("usermove e7e5");
    handler.stop();
    EXPECT_TRUE(movesIn(output()).empty());
    EXPECT_EQ(gameBoard.ply, 2u);
}

TEST_F(XboardTest, ClockCommandsFeedTheTimeControl) {
    send("xboard");
    send("force");
    // Black's own clock of 300 s, never White's 1 s; the increment in milliseconds.
    send("level 40 5 3");
    send("time 30000");
    send("otim 100");
    send("usermove e2e4");
    send("go");
    EXPECT_EQ(searchThread.request().listener, &handler);
    EXPECT_EQ(timeControl.clockMs, usableClock(300000));
    EXPECT_EQ(timeControl.incMs, 3000);
    EXPECT_EQ(timeControl.movesToGo, 40);
    send("force");

    send("st 2");
    send("go");
    EXPECT_EQ(timeControl.clockMs, 2000);
    send("force");

    // Words after "go" still override the clock.
    send("go movetime 700");
    EXPECT_EQ(timeControl.clockMs, 700);
    send("force");
    EXPECT_TRUE(movesIn(output()).empty());
}

// The engine plays both sides, one "go" per move, until it has no move or the plies run out; returns
// the moves, each checked against a board of the test's own.
std::vector<std::string> XboardTest::selfPlay(const char* fen, int maxPlies) {
    send(std::string("setboard ") + fen);
    Board replay;
    EXPECT_TRUE(replay.setFen(fen));
    std::vector<std::string> game;
    for (int ply = 0; ply < maxPlies; ply++) {
        send("go");
        const std::vector<std::string> moves = movesIn(output());
        EXPECT_EQ(moves.size(), 1u) << "at ply " << ply;
        if (moves.size() != 1 || moves[0] == "0000") break;
        const Move made = makeMove(replay, isMove(replay, moves[0].c_str()));
        EXPECT_NE(made, NO_MOVE) << moves[0];
        replay.lastMove = made;
        EXPECT_EQ(gameBoard.hash, replay.hash) << "after " << moves[0];
        if (made == NO_MOVE || gameBoard.hash != replay.hash) break;
        game.push_back(moves[0]);
    }
    return game;
}

TEST_F(XboardTest, TheEngineFinishesAShortGameAgainstItself) {
    send("xboard");
    send("new");
    // An opening: every move legal, all of them taken back to the start.
    send(sanitized() ? "sd 1" : "sd 3");
    const std::vector<std::string> opening = selfPlay(START_FEN, 12);
    EXPECT_EQ(opening.size(), 12u);
    for (size_t i = 0; i < opening.size(); i++) handler.undo();
    EXPECT_EQ(output(), "");
    EXPECT_EQ(fenOf(gameBoard), fenOf(played(START_FEN, {})));

    // A mate in two played out: the mated side answers with no move.
    send("sd 6");
    const char* fen = "kbK5/pp6/1P6/8/8/8/8/R7 w - - 0 1";
    const std::vector<std::string> game = selfPlay(fen, 8);
    ASSERT_EQ(game.size(), 3u) << testing::PrintToString(game);
    EXPECT_EQ(game[0], "a1a6");
    EXPECT_EQ(gameBoard.sideToMove, 1u);
    EXPECT_TRUE(gameBoard.inCheck()) << fenOf(gameBoard);
}

TEST_F(XboardTest, HandshakeOpensTheNextNumberedLogFile) {
    const std::filesystem::path directory =
        std::filesystem::temp_directory_path() / ("kelvra-xboard-log-" + std::to_string(getpid()));
    std::filesystem::remove_all(directory);
    std::filesystem::create_directories(directory);
    for (const char* name : {"kelvra-0000.log", "kelvra-0001.log", "kelvra-0002.log"})
        fclose(fopen((directory / name).c_str(), "w"));
    handler.logDir = directory.c_str();
    send("xboard");
    send("ping 1");
    FILE* logFile = Log::stream();
    ASSERT_NE(logFile, nullptr);
    fflush(logFile);
    Log::setStream(nullptr);
    fclose(logFile);
    FILE* written = fopen((directory / "kelvra-0003.log").c_str(), "r");
    ASSERT_NE(written, nullptr);
    const std::string text = readRest(written);
    fclose(written);
    EXPECT_NE(text.find(":<--xboard\n"), std::string::npos) << text;
    EXPECT_NE(text.find(":ping 1\n"), std::string::npos) << text;
    std::filesystem::remove_all(directory);
}

TEST(XboardQuit, EndsTheProcessAtOnce) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    Xboard handler{stdout};
    EXPECT_EXIT(handler.handleCommand("quit", ""), testing::ExitedWithCode(0), "");
}

}  // namespace
