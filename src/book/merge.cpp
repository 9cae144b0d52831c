// Book merging. Records are copied byte for byte (layout: book/record.h): a move present in both books
// is written twice, each record with its own counts, so the picker weighs it by their sum; counts are
// deliberately never added together.
#include "book/merge.h"

#include <cstdio>
#include <cstring>
#include <filesystem>

#include "book/book.h"

namespace {

// The run of consecutive records sharing one key.
struct Group {
    BookRecord records[BOOK_MAX_ENTRIES];
    int size = 0;
    uint64_t key = 0;
};

// A book read front to back one group at a time.
class GroupReader {
  public:
    bool open(const char* path) {
        if (!reader.open(path)) return false;
        pending = reader.readRecord(next);
        return true;
    }
    bool exhausted() const { return !pending; }

    // Reads the whole run of the current key. A run longer than the table keeps its first 31 records
    // and its last: the index stops at the last slot, which each further record overwrites.
    void readGroup(Group& group) {
        group.key = recordKey(next);
        int read = 0;
        while (pending && recordKey(next) == group.key) {
            const int slot = read < BOOK_MAX_ENTRIES ? read : BOOK_MAX_ENTRIES - 1;
            std::memcpy(group.records[slot], next, BOOK_RECORD_SIZE);
            read++;
            pending = reader.readRecord(next);
        }
        group.size = read < BOOK_MAX_ENTRIES ? read : BOOK_MAX_ENTRIES;
    }

  private:
    Book reader;
    BookRecord next;
    bool pending = false;
};

}  // namespace

bool merge(const char* first, const char* second, const char* output) {
    if (!first || !second || !output || !*first || !*second || !*output) return false;
    // Never read and write one file at once, however its path is spelled.
    std::error_code ignored;
    if (std::strcmp(output, first) == 0 || std::strcmp(output, second) == 0 ||
        std::filesystem::equivalent(output, first, ignored) ||
        std::filesystem::equivalent(output, second, ignored)) {
        std::printf("cannot merge book to self\n");
        return false;
    }
    // Open both inputs and the output.
    GroupReader inputs[2];
    const char* paths[2] = {first, second};
    for (int i = 0; i < 2; i++) {
        if (!inputs[i].open(paths[i])) {
            std::printf("could not open file: %s\n", paths[i]);
            return false;
        }
    }
    FILE* out = std::fopen(output, "wb");
    if (!out) {
        std::printf("could not open file: %s\n", output);
        return false;
    }
    std::printf("merging %s with %s to %s...\n", first, second, output);

    // Walk both books in key order, writing whole groups.
    int positions = 0;
    int moves = 0;
    bool ok = true;
    auto write = [&](const Group& group) {
        positions++;
        moves += group.size;
        if (std::fwrite(group.records, BOOK_RECORD_SIZE, group.size, out) != static_cast<size_t>(group.size))
            ok = false;
    };
    Group groups[2];
    bool loaded[2] = {false, false};
    for (;;) {
        for (int i = 0; i < 2; i++) {
            if (!loaded[i] && !inputs[i].exhausted()) {
                inputs[i].readGroup(groups[i]);
                loaded[i] = true;
            }
        }
        if (!loaded[0] && !loaded[1]) break;
        if (loaded[0] && (!loaded[1] || groups[0].key <= groups[1].key)) {
            const bool both = loaded[1] && groups[0].key == groups[1].key;
            write(groups[0]);
            loaded[0] = false;
            if (both) {
                write(groups[1]);
                loaded[1] = false;
            }
        } else {
            write(groups[1]);
            loaded[1] = false;
        }
    }

    // Report.
    if (std::fclose(out) != 0) ok = false;
    if (!ok) {
        std::printf("could not write file: %s\n", output);
        return false;
    }
    std::printf("...done!\n");
    std::printf("%s contains %i positions with %i moves\n", output, positions, moves);
    return true;
}
