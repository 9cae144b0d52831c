// The xboard handler's line handling, handshake, feature lines, log file and trace.
#include "frontend/xboard.h"

#include <cstdlib>
#include <cstring>
#include <string>

#include "frontend/protocol_log.h"
#include "frontend/version.h"
#include "platform/platform.h"

namespace {

struct XboardCommand {
    const char* word;
    void (Xboard::*run)();
};

const char* const STATUS_NAMES[] = {"_idle_", "pos", "search", "ponder"};

}  // namespace

int Xboard::handleCommand(const char* command, const char* rest) {
    // The protocol's words, then the clock commands a GUI sends for timed play.
    static constexpr XboardCommand commands[] = {
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
    if (command[0] == 0) return xboardMode;
    if (xboardMode) log.info("%010u:%s%s\n", platform::getTickCount(), command, rest);
    while (*rest == ' ') rest++;
    args = String(rest);
    for (const XboardCommand& entry : commands) {
        if (strcmp(command, entry.word) != 0) continue;
        (this->*entry.run)();
        fflush(out);
        if (FILE* logFile = Log::stream()) fflush(logFile);
        return 1;
    }
    if (xboardMode) {
        std::string message = std::string("unknown winboard command: ") + command;
        traceMessage(message.c_str());
    }
    return 0;
}

int Xboard::exchangeStatus(int newStatus) {
    std::lock_guard<std::mutex> lock(statusLock);
    int old = status;
    status = newStatus;
    return old;
}

int Xboard::currentStatus() {
    std::lock_guard<std::mutex> lock(statusLock);
    return status;
}

const char* Xboard::statusName() {
    return STATUS_NAMES[currentStatus()];
}

void Xboard::traceMessage(const char* message) {
    uint32_t tick = platform::getTickCount();
    log.info("%010u:%s%s\n", tick, message, "");
    if (!trace) return;
    const char* name = statusName();
    std::lock_guard<std::mutex> lock(outputLock);
    fprintf(out, "trace %010u[%s]: %s\n", tick, name, message);
    fflush(out);
}

void Xboard::handshake() {
    openProtocolLog(logDir);
    {
        std::lock_guard<std::mutex> lock(outputLock);
        fputs("\n", out);
        fflush(out);
    }
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
    outOfBookPly = 0;
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
    const int number = atoi(String::nextWord(args, " \t").c_str());
    std::lock_guard<std::mutex> lock(outputLock);
    fprintf(out, "pong %i\n", number);
    fflush(out);
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
    std::lock_guard<std::mutex> lock(outputLock);
    fputs("tellusererror Illegal position\n", out);
    fflush(out);
}

void Xboard::quit() {
    // Ends at once, like the UCI "quit": a running search must not see the tables torn down.
    fflush(out);
    fflush(nullptr);
    std::_Exit(0);
}
