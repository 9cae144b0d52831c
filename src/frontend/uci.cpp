#include "frontend/uci.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "frontend/protocol_log.h"
#include "frontend/version.h"
#include "search/parallel.h"
#include "search/timecontrol.h"
#include "search/tt.h"

Uci uci;

namespace {

constexpr ProtocolDialect UCI_DIALECT = {"unknown uci command: ", POSITION, false, false};

// The range of the Hash option, in megabytes.
constexpr int HASH_MIN_MB = 1;
constexpr int HASH_MAX_MB = 4096;

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

String Uci::valueArg() {
    while (!args.empty())
        if (nextArg() == "value") return nextArg();
    return String();
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
        // The column layout of these lines, two blanks after "spin" in the Hash line included, is
        // what GUIs have always been shown; it stays as it is.
        fputs("option name Hash            type spin  default 32 min 1 max 4096\n", out);
        fputs("option name Ponder          type check default false\n", out);
        fputs("option name OwnBook         type check default true\n", out);
        fprintf(out, "option name Threads         type spin default %i min 1 max %i\n", threadCount(),
                MAX_THREADS);
        fputs("option name UCI_Opponent    type string\n", out);
        fprintf(out, "option name UCI_EngineAbout type string default %s by %s\n", ENGINE_NAME,
                ENGINE_AUTHOR);
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

void Uci::setoption() {
    String name;
    while (!args.empty() && name.empty())
        if (nextArg() == "name") name = nextArg();

    // The table and the thread set must not change under a running search; GUIs send options only
    // while the engine waits, so a request during a search is logged and dropped.
    bool changesSearch = name == "Hash" || name == "Clear" || name == "Threads";
    if (changesSearch) {
        const int current = currentStatus();
        if (current == SEARCHING || current == PONDER) {
            log.warning("setoption %s during a search ignored\n", name.c_str());
            return;
        }
        searchThread.waitIdle();
    }

    if (name == "UCI_Opponent") {
        String title = valueArg();
        String elo = nextArg();
        String kind = nextArg();
        log.info("Opponent=%s %s, %s, elo=%i\n", title.c_str(), args.c_str(), kind.c_str(),
                 atoi(elo.c_str()));
    } else if (name == "Hash") {
        // Held to the range the option announces: a value past it is no GUI's, and could ask for more
        // memory than the machine has.
        int megabytes = std::clamp(atoi(valueArg().c_str()), HASH_MIN_MB, HASH_MAX_MB);
        log.info("resizing hash to %uMb\n", unsigned(megabytes));
        tt.alloc(megabytes * 1024);
        log.info("resized\n");
    } else if (name == "Clear" && nextArg() == "Hash") {
        log.info("clearing tt...");
        tt.clear();
        log.info("tt cleared");
    } else if (name == "Ponder") {
        timeControl.canPonder = valueArg() == "true";
        log.info("canponder=%u\n", unsigned(timeControl.canPonder));
    } else if (name == "OwnBook") {
        ownBook = valueArg() == "true";
        log.info("usebook=%u\n", unsigned(ownBook));
    } else if (name == "Threads") {
        int count = atoi(valueArg().c_str());
        log.info("setting cpus=%i\n", count);
        setThreads(count);
    } else {
        log.info("Option not supported: %s\n", name.c_str());
    }
}

void Uci::ucinewgame() {
    traceMessage("newgame!");
    reopenBook();
}

void Uci::quit() {
    quitAtOnce("exit()!\n");
}
