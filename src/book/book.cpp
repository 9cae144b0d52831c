// Opening and probing the book file. The book is never loaded: every probe is a binary search on disk,
// so a book of any size costs no memory. Record layout: book/record.h.
#include "book/book.h"

#include <sys/stat.h>
#include <sys/types.h>

#include <cstdio>

#include "board/notation.h"
#include "platform/platform.h"

Book book;

bool Book::open(const char* path) {
    close();
    file = std::fopen(path, "rb");
    if (!file) return false;
    // A directory opens for reading here but holds no records.
    struct stat status;
    if (fstat(fileno(file), &status) != 0 || S_ISDIR(status.st_mode) || fseeko(file, 0, SEEK_END) != 0 ||
        std::ferror(file)) {
        close();
        return false;
    }
    const off_t size = ftello(file);
    if (size < 0) {
        close();
        return false;
    }
    const uint64_t records = static_cast<uint64_t>(size) / BOOK_RECORD_SIZE;
    count = records > UINT32_MAX ? UINT32_MAX : static_cast<uint32_t>(records);
    std::rewind(file);
    return true;
}

void Book::close() {
    if (file) std::fclose(file);
    file = nullptr;
    count = 0;
    tableSize = 0;
}

bool Book::readKeyAt(uint32_t index, uint64_t& key) {
    uint8_t bytes[8];
    if (fseeko(file, static_cast<off_t>(index) * BOOK_RECORD_SIZE, SEEK_SET) != 0) return false;
    if (std::fread(bytes, 1, sizeof bytes, file) != sizeof bytes) return false;
    key = uint64_t{readBig32(bytes)} << 32 | readBig32(bytes + 4);
    return true;
}

bool Book::find(uint64_t key) {
    if (!file || count == 0) return false;
    uint32_t lo = 0;
    uint32_t hi = count - 1;
    uint64_t found = 0;
    for (;;) {
        const uint32_t mid = lo + (hi - lo) / 2;
        if (!readKeyAt(mid, found)) return false;
        if (lo >= hi) break;
        if (found < key)
            lo = mid + 1;
        else
            hi = mid;
    }
    if (found != key || lo == 0) return false;
    return fseeko(file, -8, SEEK_CUR) == 0;
}

bool Book::readRecord(BookRecord record) {
    return file && std::fread(record, 1, BOOK_RECORD_SIZE, file) == BOOK_RECORD_SIZE;
}

int Book::readEntries(const Board& board) {
    tableSize = 0;
    const uint64_t key = bookKey(board);
    if (!find(key)) return 0;
    BookRecord record;
    while (tableSize < BOOK_MAX_ENTRIES && readRecord(record) && recordKey(record) == key)
        table[tableSize++] = decodeRecord(record);
    return tableSize;
}

void Book::coordinateText(const BookEntry& entry, char text[5]) {
    const int from = entry.from & 127;
    const int to = entry.to & 127;
    text[0] = static_cast<char>('a' + fileOf(from));
    text[1] = static_cast<char>('1' + (rankOf(from) & 7));
    text[2] = static_cast<char>('a' + fileOf(to));
    text[3] = static_cast<char>('1' + (rankOf(to) & 7));
    text[4] = 0;
}

Move Book::entryMove(Board& board, const BookEntry& entry) {
    char text[5];
    coordinateText(entry, text);
    return isMove(board, text);
}

Move Book::pick(Board& board) {
    const int n = readEntries(board);
    if (n == 0) return NO_MOVE;
    uint32_t total = 0;
    for (int i = 0; i < n; i++) total += table[i].games();
    // Single precision on purpose: the draw must come out the same on every build.
    int64_t r = static_cast<int64_t>(static_cast<float>(total) *
                                     (static_cast<float>(platform::random15()) / 32767.0f));
    for (int i = 0; i < n; i++) {
        r -= table[i].games();
        if (r < 1) return entryMove(board, table[i]);
    }
    return NO_MOVE;
}

Move consoleBookMove(Board& board) {
    if (!book.isOpen()) return NO_MOVE;
    const Move move = book.pick(board);
    if (move == NO_MOVE) return NO_MOVE;
    book.show(board);
    char text[MOVE_TEXT_SIZE];
    moveToText(board, text, move);
    std::printf("picked book move: %s\n", text);
    return move;
}
