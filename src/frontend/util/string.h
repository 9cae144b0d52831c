// A reference-counted, immutable text. The whole value is one pointer to a heap block
//
//     count   uint32  number of String values sharing the block
//     length  uint32  number of characters plus one (the terminating zero is counted)
//     chars   length bytes, always zero-terminated
//
// so a copy is one increment and a release one decrement. A block is never changed while it is
// shared: every operation that yields different text allocates a new block. Running out of memory
// prints "malloc failed" and aborts.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

// Blocks alive right now: a leak check. Relaxed atomic so threads may build strings concurrently.
extern std::atomic<uint32_t> liveStrings;

class String {
  public:
    String() : String("") {}
    String(const char* text);  // a null text gives the empty String
    String(const char* text, size_t length);
    String(const String& other);
    String(String&& other) noexcept;
    String& operator=(String other) noexcept;
    ~String();

    const char* c_str() const;
    size_t length() const;
    bool empty() const { return length() == 0; }

    // Replaces this value by a new block holding both texts.
    void append(const char* text, size_t length);

    // At most count characters from start; a start past the end gives the empty String.
    String substring(size_t start, size_t count) const;

    // The source up to its first separator character; the source becomes what follows that
    // separator, and when the separator is a blank the blanks directly after it go too. Without a
    // separator the whole source is the word and the source becomes empty.
    static String nextWord(String& source, const char* separators);

    int compare(const char* text) const;
    bool operator==(const char* text) const { return compare(text) == 0; }

  private:
    struct Block {
        uint32_t count;
        uint32_t length;
        char* chars() { return reinterpret_cast<char*>(this + 1); }
    };

    static Block* allocate(size_t length);
    void release();

    // Null only after a move; readers treat it as the empty text.
    Block* block;
};
