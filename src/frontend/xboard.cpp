// The xboard handler's command table, handshake and feature lines, and the commands that set up a game.
#include "frontend/xboard.h"

#include "frontend/protocol_log.h"
#include "frontend/version.h"

namespace {

constexpr ProtocolDialect XBOARD_DIALECT = {"unknown winboard command: ", IDLE, true, true};

}  // namespace

Xboard::Xboard(FILE* output) : Protocol(output, XBOARD_DIALECT) {}

// The protocol's words, then the clock commands a GUI sends for timed play.
int Xboard::handleCommand(const char* command, const char* rest) {
    static constexpr Command<Xboard> commands[] = {
        {"xboard", &Xboard::handshake},
        {"protover", &Xboard::protover},
        {"new", &Xboard::newGame},
        {"force", &Xboard::force},
        {"go", &Xboard::go},
        {"ping", &Xboard::ping},
        {"result", &Xboard::ignore},
        {"setboard", &Xboard::setboard},
        {"usermove", &Xboard::usermove},
        {"draw", &Xboard::ignore},
        {"quit", &Xboard::quit},
        {"level", &Xboard::level},
        {"st", &Xboard::st},
        {"sd", &Xboard::sd},
        {"time", &Xboard::time},
        {"otim", &Xboard::otim},
    };
    return runCommand<Xboard>(commands, xboardMode, command, rest);
}

void Xboard::handshake() {
    openProtocolLog(logDir);
    send("\n");
    xboardMode = 1;
    logAnswer("<--xboard");
}

void Xboard::protover() {
    std::lock_guard<std::mutex> lock(outputLock);
    fputs("feature ping=1\n", out);
    fputs("feature setboard=1\n", out);
    fputs("feature usermove=1\n", out);
    fprintf(out, "feature myname=\"%s-%s\"\n", ENGINE_NAME, ENGINE_VERSION);
    fputs("feature analyze=0\n", out);
    fputs("feature variants=\"normal\"\n", out);
    fputs("feature colors=0\n", out);
    fputs("feature ics=1\n", out);
    fputs("feature name=1\n", out);
    fputs("feature pause=0\n", out);
    fputs("feature done=1\n", out);
    fflush(out);
}

// The position stays: a GUI starts each game with "setboard".
void Xboard::newGame() {
    callOffSearch();
    reopenBook();
    engineSide = 1;
    clock.depth = 0;
}

void Xboard::force() {
    callOffSearch();
    engineSide = -1;
}

void Xboard::go() {
    callOffSearch();
    if (positionValid) engineSide = int(gameBoard.sideToMove);
    think();
}

void Xboard::ping() {
    send("pong %i\n", nextNumber());
}

// "result" and "draw": the game's end and draw offers change nothing here.
void Xboard::ignore() {}

void Xboard::setboard() {
    callOffSearch();
    undoStack.clear();
    positionValid = gameBoard.setFen(args.c_str());
    if (positionValid) return;
    // A refused FEN leaves a half-filled board: no move is read or searched on it until the next
    // position arrives.
    send("tellusererror Illegal position\n");
}

void Xboard::quit() {
    quitAtOnce(nullptr);
}
