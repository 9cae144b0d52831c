// Temporary files for the book tests and small helpers to write and read them.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "book/record.h"

class ScratchDir {
  public:
    ScratchDir() {
        char pattern[] = "/tmp/kelvra-book-XXXXXX";
        root = mkdtemp(pattern);
    }
    ~ScratchDir() { std::filesystem::remove_all(root); }
    std::string file(const std::string& name) const { return root + "/" + name; }
    const std::string& path() const { return root; }

  private:
    std::string root;
};

inline void writeText(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

inline std::string readText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline std::vector<BookEntry> readBookFile(const std::string& path) {
    const std::string bytes = readText(path);
    std::vector<BookEntry> entries;
    for (size_t at = 0; at + BOOK_RECORD_SIZE <= bytes.size(); at += BOOK_RECORD_SIZE)
        entries.push_back(decodeRecord(reinterpret_cast<const uint8_t*>(bytes.data() + at)));
    return entries;
}

inline bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

inline bool operator==(const BookEntry& a, const BookEntry& b) {
    return a.key == b.key && a.from == b.from && a.to == b.to && a.won == b.won && a.drawn == b.drawn &&
           a.lost == b.lost;
}
