#include "frontend/uci.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "frontend/protocol_log.h"
#include "frontend/version.h"
#include "platform/platform.h"
#include "search/parallel.h"
#include "search/timecontrol.h"
#include "search/tt.h"

Uci uci;

namespace {

// The protocol's commands and their handlers, matched exactly and taken in every mode.
struct UciCommand {
    const char* word;
    void (Uci::*run)();
};

const char* const STATUS_NAMES[] = {"_idle_", "pos", "search", "ponder"};

// The range of the Hash option, in megabytes.
constexpr int HASH_MIN_MB = 1;
constexpr int HASH_MAX_MB = 4096;

}  // namespace

int Uci::handleCommand(const char* command, const char* rest) {
    static constexpr UciCommand commands[] = {
        {"uci", &Uci::handshake},       {"position", &Uci::position},   {"go", &Uci::go},
        {"isready", &Uci::isready},     {"setoption", &Uci::setoption}, {"ucinewgame", &Uci::ucinewgame},
        {"ponderhit", &Uci::ponderhit}, {"stop", &Uci::stop},           {"quit", &Uci::quit},
    };
    if (command[0] == 0) return uciMode;
    if (uciMode) log.info("%010u:%s%s\n", platform::getTickCount(), command, rest);
    while (*rest == ' ') rest++;
    args = String(rest);
    for (const UciCommand& entry : commands) {
        if (strcmp(command, entry.word) != 0) continue;
        (this->*entry.run)();
        fflush(out);
        if (FILE* logFile = Log::stream()) fflush(logFile);
        return 1;
    }
    if (uciMode) {
        std::string message = std::string("unknown uci command: ") + command;
        traceMessage(message.c_str());
    }
    return 0;
}

String Uci::nextArg() {
    return String::nextWord(args, " \t");
}

String Uci::valueArg() {
    while (!args.empty())
        if (nextArg() == "value") return nextArg();
    return String();
}

int Uci::exchangeStatus(int newStatus, bool* withheld) {
    std::lock_guard<std::mutex> lock(statusLock);
    int old = status;
    status = newStatus;
    if (withheld) {
        *withheld = answerWithheld;
        answerWithheld = false;
    }
    return old;
}

void Uci::setStatus(int newStatus) {
    std::lock_guard<std::mutex> lock(statusLock);
    status = newStatus;
}

const char* Uci::statusName() {
    std::lock_guard<std::mutex> lock(statusLock);
    return STATUS_NAMES[status];
}

void Uci::traceMessage(const char* message) {
    uint32_t tick = platform::getTickCount();
    log.info("%010u:%s%s\n", tick, message, "");
    if (!trace) return;
    const char* name = statusName();
    std::lock_guard<std::mutex> lock(outputLock);
    fprintf(out, "trace %010u[%s]: %s\n", tick, name, message);
    fflush(out);
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
    {
        std::lock_guard<std::mutex> lock(outputLock);
        fputs("readyok\n", out);
        fflush(out);
    }
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
        int current;
        {
            std::lock_guard<std::mutex> lock(statusLock);
            current = status;
        }
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
    outOfBook = OutOfBook();
}

void Uci::quit() {
    // Ends at once, without stopping a running search: exit handlers and destructors would run while
    // the search still reads the tables, so the streams are flushed here and the process leaves
    // without them.
    fflush(out);
    log.info("exit()!\n");
    fflush(nullptr);
    std::_Exit(0);
}
