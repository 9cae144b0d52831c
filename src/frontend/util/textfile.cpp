#include "frontend/util/textfile.h"

#include <cstdint>
#include <cstdlib>

#include "frontend/util/log.h"

namespace {

Log textfileLog;

// fgets that also tells how many bytes it stored, so that a NUL byte in the input can neither pass
// for the end of the file nor hide the newline after it. Reads at most room - 1 bytes and stops
// after a newline; always zero-terminates.
size_t readUpToNewline(FILE* stream, char* into, size_t room) {
    size_t n = 0;
    while (n + 1 < room) {
        int c = getc(stream);
        if (c == EOF) break;
        into[n++] = static_cast<char>(c);
        if (c == '\n') break;
    }
    into[n] = 0;
    return n;
}

// Cuts the line at length, less the CR of a Windows line end (files and clients from Windows end
// their lines with CR LF).
char* endLine(char* line, size_t length) {
    if (length > 0 && line[length - 1] == '\r') length--;
    line[length] = 0;
    return line;
}

}  // namespace

Textfile::Textfile(const char* path) : stream(fopen(path, "r")), owned(true) {}

Textfile::Textfile(FILE* input) : stream(input), owned(false) {}

Textfile::~Textfile() {
    if (stream && owned) fclose(stream);
    free(buffer);
}

bool Textfile::failed() const {
    return stream && ferror(stream);
}

char* Textfile::readline() {
    if (!stream || feof(stream)) return nullptr;
    if (capacity == 0) {
        buffer = static_cast<char*>(malloc(128));
        if (!buffer) return nullptr;
        capacity = 128;
    }
    size_t total = 0;
    for (;;) {
        size_t n = readUpToNewline(stream, buffer + total, capacity - total);
        if (n == 0 && total == 0) {
            free(buffer);
            buffer = nullptr;
            capacity = 0;
            return nullptr;
        }
        // The end of the file ends a last line that has no newline.
        if (n == 0) return endLine(buffer, total);
        total += n;
        if (buffer[total - 1] == '\n') return endLine(buffer, total - 1);
        size_t grown = capacity * 2;
        char* larger = static_cast<char*>(realloc(buffer, grown));
        textfileLog.info("Textfile.readline(): realloc %i=%x, n=%i\n", static_cast<int>(grown),
                         static_cast<unsigned>(reinterpret_cast<uintptr_t>(larger)), static_cast<int>(total));
        if (!larger) {
            textfileLog.error("out of memory allocating %i bytes\n", static_cast<int>(grown));
            return nullptr;
        }
        buffer = larger;
        capacity = grown;
    }
}
