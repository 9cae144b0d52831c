// Book files for the book tests: Polyglot entries written, the engine's own books saved and read back.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "book/book.h"
#include "book/record.h"
#include "scratch_dir.h"

// One entry of a Polyglot book: its move in coordinates ("e1h1" castles, "b7a8q" promotes).
struct PolyglotLine {
    uint64_t key;
    std::string move;
    uint16_t weight;
};

// Writes the entries in the order given, 16 big-endian bytes each, learning data 0.
inline void writePolyglot(const std::string& path, const std::vector<PolyglotLine>& lines) {
    std::string bytes;
    for (const PolyglotLine& line : lines) {
        const std::string& m = line.move;
        const int promotion = m.size() > 4 ? static_cast<int>(std::string(" nbrq").find(m[4])) : 0;
        const int word =
            promotion << 12 | (m[1] - '1') << 9 | (m[0] - 'a') << 6 | (m[3] - '1') << 3 | (m[2] - 'a');
        for (int shift = 56; shift >= 0; shift -= 8) bytes += static_cast<char>(line.key >> shift);
        for (const int field : {word, int{line.weight}}) {
            bytes += static_cast<char>(field >> 8);
            bytes += static_cast<char>(field);
        }
        bytes += std::string(4, '\0');
    }
    writeText(path, bytes);
}

// Saves entries as the book at path (without the save's messages); returns the path.
inline std::string saveBook(const std::string& path, const std::vector<BookEntry>& entries) {
    testing::internal::CaptureStdout();
    EXPECT_TRUE(Book::save(path.c_str(), entries)) << path;
    testing::internal::GetCapturedStdout();
    return path;
}

inline std::vector<BookEntry> readBookFile(const std::string& path) {
    const std::string bytes = readText(path);
    std::vector<BookEntry> entries;
    for (size_t at = 0; at + BOOK_RECORD_SIZE <= bytes.size(); at += BOOK_RECORD_SIZE)
        entries.push_back(decodeRecord(reinterpret_cast<const uint8_t*>(bytes.data() + at)));
    return entries;
}

inline bool operator==(const BookEntry& a, const BookEntry& b) {
    return a.key == b.key && a.from == b.from && a.to == b.to && a.won == b.won && a.drawn == b.drawn &&
           a.lost == b.lost;
}
