// The book commands: show the book's moves for the position, build a book from PGN, merge two books.
#include <cstdio>
#include <span>
#include <string>

#include "board/board.h"
#include "book/book.h"
#include "book/builder.h"
#include "book/merge.h"
#include "book/polyglot_import.h"
#include "frontend/console.h"
#include "frontend/inifile.h"

namespace {

// Opens a book just written and shows its moves for the position.
void openAndShow(const char* path) {
    book.open(path);
    if (!book.isOpen()) {
        printf("book not open!\n");
        return;
    }
    book.show(gameBoard);
}

AfterCommand showBook(const char*) {
    if (book.isOpen())
        book.show(gameBoard);
    else
        printf("book not open!\n");
    return AfterCommand::READ_NEXT;
}

// "buildbook <pgnfile> [inifile [maxgames]]": the ini file (by default the engine's own) supplies the
// builder's "book.build." keys. A file named "*.bin" is read as a Polyglot book instead of PGN.
AfterCommand buildBookCommand(const char* rest) {
    book.close();
    char pgn[201], ini[201];
    int maxGames = 0;
    const int fields = sscanf(rest, "%200s %200s %i", pgn, ini, &maxGames);
    if (fields < 1) {
        printf("Usage:\n    buildbook <pgnfile> [inifile [maxgames]]]\n");
        return AfterCommand::READ_NEXT;
    }
    // Without the engine's own ini file every key keeps its default, as at start-up (which has said so).
    IniFile settings;
    if (fields >= 2) {
        if (!settings.load(ini)) printf("could not load inifile: %s\n", ini);
    } else {
        settings.load(iniFileName);
    }
    const BookBuildOptions options =
        readBuildOptions([&settings](const char* key) { return std::string(settings.get(key).c_str()); });
    std::string written;
    // A Polyglot book has no games to count, so maxgames means nothing to it.
    const bool built =
        isPolyglotBook(pgn)
            ? importPolyglot(pgn, options, written)
            : buildBook(pgn, options, maxGames > 0 ? static_cast<unsigned>(maxGames) : 0, written);
    if (!built) return AfterCommand::READ_NEXT;
    printf("opening %s...\n", written.c_str());
    openAndShow(written.c_str());
    return AfterCommand::READ_NEXT;
}

AfterCommand mergeBookCommand(const char* rest) {
    book.close();
    char master[201], secondary[201], result[201];
    if (sscanf(rest, "%200s %200s %200s", master, secondary, result) != 3) {
        printf("Usage:\n    mergebook <masterbook> <secondarybook> <resultbook>\n");
        return AfterCommand::READ_NEXT;
    }
    if (merge(master, secondary, result)) openAndShow(result);
    return AfterCommand::READ_NEXT;
}

constexpr ConsoleCommand commands[] = {
    {{"book"}, showBook},
    {{"buildbook"}, buildBookCommand},
    {{"mergebook"}, mergeBookCommand},
};

}  // namespace

std::span<const ConsoleCommand> bookCommands() {
    return commands;
}
