// Writing a book file from entries in memory (the builder's and the tests'). Record layout:
// book/record.h.
#include <cstdio>

#include "book/book.h"

bool Book::save(const char* path, const std::vector<BookEntry>& entries) {
    std::printf("saving book to %s\n", path);
    FILE* out = std::fopen(path, "wb");
    if (!out) {
        std::printf("could not open file: %s\n", path);
        return false;
    }
    int written = 0;
    bool ok = true;
    for (const BookEntry& entry : entries) {
        if (entry.games() == 0) continue;
        BookRecord record;
        encodeRecord(entry, record);
        if (std::fwrite(record, 1, BOOK_RECORD_SIZE, out) != BOOK_RECORD_SIZE) {
            ok = false;
            break;
        }
        written++;
    }
    if (std::fclose(out) != 0) ok = false;
    if (!ok) {
        std::printf("could not write file: %s\n", path);
        return false;
    }
    std::printf("saved %i moves\n", written);
    return true;
}
