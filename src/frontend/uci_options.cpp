// The UCI options: one table says, for each, its line in the handshake and what "setoption" does with
// its value.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "frontend/inifile.h"
#include "frontend/options.h"
#include "frontend/uci.h"
#include "frontend/version.h"
#include "search/parallel.h"
#include "search/timecontrol.h"
#include "search/tt.h"

namespace {

struct UciOption {
    const char* name;
    // The type column as GUIs have always been shown it: the Hash line has two blanks after "spin".
    const char* type;
    std::string (*defaultValue)();  // null: the line names no default
    int min, max;                   // of a spin
    bool waitsForSearch;            // what it changes is read by a running search: refused during one
    // Takes the text after "value" (may be empty); null: the option cannot be set.
    void (*apply)(Uci& uci, String value);
};

// Numbers and flags take the first word of the value, as atoi and the exact text "true" read it.
String firstWord(String value) {
    return String::nextWord(value, " \t");
}

int spinValue(const String& value, int min, int max) {
    return std::clamp(atoi(firstWord(value).c_str()), min, max);
}

// A path takes the whole value; a GUI writes an empty text as "<empty>".
String pathValue(const String& value) {
    std::string text = value.c_str();
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.pop_back();
    return String(text == "<empty>" ? "" : text.c_str());
}

std::string emptyOr(const String& text) {
    return text.empty() ? "<empty>" : text.c_str();
}

constexpr int HASH_MIN_MB = 1;
constexpr int HASH_MAX_MB = 4096;
constexpr int OVERHEAD_MAX_MS = 5000;

const UciOption OPTIONS[] = {
    // The table's size in megabytes. Held to the announced range: a value past it is no GUI's, and
    // could ask for more memory than the machine has. The line announces 32 while the table starts
    // at 64 MB: kept as GUIs have always been shown it.
    {"Hash", "spin ", [] { return std::string("32"); }, HASH_MIN_MB, HASH_MAX_MB, true,
     [](Uci&, String value) {
         const int megabytes = spinValue(value, HASH_MIN_MB, HASH_MAX_MB);
         Log().info("resizing hash to %uMb\n", unsigned(megabytes));
         tt.alloc(megabytes * 1024);
         Log().info("resized\n");
     }},
    // Pondering earns each move a larger share of the clock.
    {"Ponder", "check", [] { return std::string("false"); }, 0, 0, false,
     [](Uci&, String value) {
         timeControl.canPonder = firstWord(value) == "true";
         Log().info("canponder=%u\n", unsigned(timeControl.canPonder));
     }},
    // Whether "go" asks the book first.
    {"OwnBook", "check", [] { return std::string("true"); }, 0, 0, false,
     [](Uci& uci, String value) {
         uci.ownBook = firstWord(value) == "true";
         Log().info("usebook=%u\n", unsigned(uci.ownBook));
     }},
    // Search threads, the search thread included.
    {"Threads", "spin", [] { return std::to_string(threadCount()); }, 1, MAX_THREADS, true,
     [](Uci&, String value) {
         const int count = atoi(firstWord(value).c_str());
         Log().info("setting cpus=%i\n", count);
         setThreads(count);
     }},
    // Title, Elo, kind and name of the opponent: logged, no other effect.
    {"UCI_Opponent", "string", nullptr, 0, 0, false,
     [](Uci&, String value) {
         const String title = String::nextWord(value, " \t");
         const String elo = String::nextWord(value, " \t");
         const String kind = String::nextWord(value, " \t");
         Log().info("Opponent=%s %s, %s, elo=%i\n", title.c_str(), value.c_str(), kind.c_str(),
                    atoi(elo.c_str()));
     }},
    // Shown by the GUI; nothing to set.
    {"UCI_EngineAbout", "string", [] { return std::string(ENGINE_NAME) + " by " + ENGINE_AUTHOR; }, 0, 0,
     false, nullptr},
    // Empties the table.
    {"Clear Hash", "button", nullptr, 0, 0, true,
     [](Uci&, String) {
         Log().info("clearing tt...");
         tt.clear();
         Log().info("tt cleared");
     }},
    // How many best root moves each iteration finds with exact scores and reports.
    {"MultiPV", "spin", [] { return std::string("1"); }, 1, MAX_LINES, false,
     [](Uci& uci, String value) {
         uci.lines = spinValue(value, 1, MAX_LINES);
         Log().info("multipv=%i\n", uci.lines);
     }},
    // What is held back from the clock for the way to and from the GUI.
    {"Move Overhead", "spin", [] { return std::to_string(DEFAULT_OVERHEAD_MS); }, 0, OVERHEAD_MAX_MS, false,
     [](Uci& uci, String value) {
         uci.overheadMs = spinValue(value, 0, OVERHEAD_MAX_MS);
         Log().info("move overhead=%ims\n", uci.overheadMs);
     }},
    // The book file, opened at once; empty closes the book.
    {"BookFile", "string", [] { return emptyOr(iniFile.get("book.file")); }, 0, 0, true,
     [](Uci&, String value) { openBookFile(pathValue(value)); }},
    // The folder of the bitbase library, loaded at once; empty turns the bitbases off.
    {"Bitbases Path", "string", [] { return emptyOr(iniFile.get("egbb.dir")); }, 0, 0, true,
     [](Uci&, String value) { openBitbases(pathValue(value), iniFile.get("egbb.cachemb")); }},
};

}  // namespace

void Uci::writeOptionLines() {
    for (const UciOption& option : OPTIONS) {
        fprintf(out, "option name %-15s type %s", option.name, option.type);
        if (option.defaultValue) fprintf(out, " default %s", option.defaultValue().c_str());
        if (strncmp(option.type, "spin", 4) == 0) fprintf(out, " min %i max %i", option.min, option.max);
        fputc('\n', out);
    }
}

// The name is the words after "name" up to "value"; the value is the rest of the line after that.
void Uci::setoption() {
    std::string name;
    while (!args.empty() && !(nextArg() == "name")) {
    }
    for (String word = nextArg(); !word.empty() || !args.empty(); word = nextArg()) {
        if (word == "value") break;
        if (word.empty()) continue;
        if (!name.empty()) name += ' ';
        name += word.c_str();
    }
    const String value = args;

    const auto named = [&](const UciOption& option) { return name == option.name; };
    const UciOption* option = std::find_if(std::begin(OPTIONS), std::end(OPTIONS), named);
    if (option == std::end(OPTIONS) || !option->apply) {
        log.info("Option not supported: %s\n", name.c_str());
        return;
    }
    // The table and the thread set must not change under a running search; GUIs send options only
    // while the engine waits, so a request during a search is logged and dropped.
    if (option->waitsForSearch) {
        const int current = currentStatus();
        if (current == SEARCHING || current == PONDER) {
            log.warning("setoption %s during a search ignored\n", name.c_str());
            return;
        }
        searchThread.waitIdle();
    }
    option->apply(*this, value);
}
