#include "frontend/util/string.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

std::atomic<uint32_t> liveStrings{0};

namespace {

[[noreturn]] void outOfMemory() {
    printf("malloc failed\n");
    fflush(stdout);
    abort();
}

}  // namespace

String::Block* String::allocate(size_t length) {
    // The length word counts the terminating zero and must fit 32 bits.
    if (length >= UINT32_MAX) outOfMemory();
    Block* fresh = static_cast<Block*>(malloc(sizeof(Block) + length + 1));
    if (!fresh) outOfMemory();
    fresh->count = 1;
    fresh->length = static_cast<uint32_t>(length + 1);
    fresh->chars()[length] = 0;
    liveStrings.fetch_add(1, std::memory_order_relaxed);
    return fresh;
}

void String::release() {
    if (!block) return;
    if (block->count == 1) {
        free(block);
        liveStrings.fetch_sub(1, std::memory_order_relaxed);
    } else {
        block->count--;
    }
    block = nullptr;
}

String::String(const char* text) : String(text ? text : "", text ? strlen(text) : 0) {}

String::String(const char* text, size_t length) : block(allocate(length)) {
    if (length) memcpy(block->chars(), text, length);
}

String::String(const String& other) : block(other.block) {
    if (block) block->count++;
}

String::String(String&& other) noexcept : block(std::exchange(other.block, nullptr)) {}

String& String::operator=(String other) noexcept {
    std::swap(block, other.block);
    return *this;
}

String::~String() {
    release();
}

const char* String::c_str() const {
    return block ? block->chars() : "";
}

size_t String::length() const {
    return block ? block->length - 1 : 0;
}

void String::append(const char* text, size_t count) {
    size_t old = length();
    Block* joined = allocate(old + count);
    memcpy(joined->chars(), c_str(), old);
    if (count) memcpy(joined->chars() + old, text, count);
    release();
    block = joined;
}

String String::substring(size_t start, size_t count) const {
    size_t total = length();
    if (start > total) start = total;
    if (count > total - start) count = total - start;
    return String(c_str() + start, count);
}

String String::nextWord(String& source, const char* separators) {
    const char* text = source.c_str();
    size_t end = strcspn(text, separators);
    String word(text, end);
    if (text[end] == 0) {
        source = String();
        return word;
    }
    size_t next = end + 1;
    if (text[end] == ' ')
        while (text[next] == ' ') next++;
    source = source.substring(next, source.length() - next);
    return word;
}

int String::compare(const char* text) const {
    return strcmp(c_str(), text ? text : "");
}
