#include "frontend/uci.h"

#include <cstdio>

#include "frontend/protocol_log.h"
#include "frontend/version.h"

Uci uci;

namespace {

constexpr ProtocolDialect UCI_DIALECT = {"unknown uci command: ", POSITION, false, false};

}  // namespace

Uci::Uci() : Protocol(stdout, UCI_DIALECT) {}

// The protocol's commands, matched exactly and taken in every mode.
int Uci::handleCommand(const char* command, const char* rest) {
    static constexpr Command<Uci> commands[] = {
        {"uci", &Uci::handshake},       {"position", &Uci::position},   {"go", &Uci::go},
        {"isready", &Uci::isready},     {"setoption", &Uci::setoption}, {"ucinewgame", &Uci::ucinewgame},
        {"ponderhit", &Uci::ponderhit}, {"stop", &Uci::stop},           {"quit", &Uci::quit},
    };
    return runCommand<Uci>(commands, uciMode, command, rest);
}

void Uci::stopSearch() {
    searchThread.stopSearch();
}

void Uci::handshake() {
    openProtocolLog(logDir);
    openErrorLog();
    {
        std::lock_guard<std::mutex> lock(outputLock);
        fprintf(out, "\nid name %s-%s\nid author %s\n", ENGINE_NAME, ENGINE_VERSION, ENGINE_AUTHOR);
        writeOptionLines();
        fputs("uciok\n", out);
        fflush(out);
    }
    uciMode = 1;
    logAnswer("<--uciok");
}

void Uci::isready() {
    send("readyok\n");
    logAnswer("<--readyok");
}

void Uci::ucinewgame() {
    traceMessage("newgame!");
    reopenBook();
}

void Uci::quit() {
    quitAtOnce("exit()!\n");
}
