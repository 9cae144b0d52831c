// The book file's record, and its one reader and writer of bytes.
//
// A book file (".bbk") is a plain sequence of 16-byte records: no header, no trailer; the record count
// is the file size divided by 16 (a trailing partial record is ignored). Every field is big-endian:
//
//   offset  size  field
//     0      4    position key, high 32 bits
//     4      4    position key, low 32 bits (the board key's low half XOR the side to move)
//     8      1    from square, 0x88 numbering; bit 7 set when the move was played at an odd ply of its
//                 game (the second player's moves); readers mask it off
//     9      1    to square, 0x88 numbering
//    10      2    games won by the side playing the move
//    12      2    games drawn
//    14      2    games lost by the side playing the move
//
// Records are sorted ascending by key (high half first, both halves unsigned); the records of one
// position are adjacent. No record has three zero counts. Promotions are never stored: the move is
// only from and to, replayed through the move parser.
#pragma once

#include <cstdint>

constexpr int BOOK_RECORD_SIZE = 16;
// Moves kept per position by a probe.
constexpr int BOOK_MAX_ENTRIES = 32;
// Bit 7 of the stored from square.
constexpr uint8_t BOOK_ODD_PLY = 0x80;

struct BookEntry {
    uint64_t key;
    uint8_t from;  // may carry BOOK_ODD_PLY
    uint8_t to;
    uint16_t won;
    uint16_t drawn;
    uint16_t lost;

    uint32_t games() const { return uint32_t{won} + drawn + lost; }
};

using BookRecord = uint8_t[BOOK_RECORD_SIZE];

inline uint32_t readBig32(const uint8_t* bytes) {
    return uint32_t{bytes[0]} << 24 | uint32_t{bytes[1]} << 16 | uint32_t{bytes[2]} << 8 | bytes[3];
}
inline uint16_t readBig16(const uint8_t* bytes) {
    return static_cast<uint16_t>(bytes[0] << 8 | bytes[1]);
}

inline uint64_t recordKey(const BookRecord record) {
    return uint64_t{readBig32(record)} << 32 | readBig32(record + 4);
}

inline BookEntry decodeRecord(const BookRecord record) {
    return BookEntry{
        recordKey(record),     record[8], record[9], readBig16(record + 10), readBig16(record + 12),
        readBig16(record + 14)};
}

inline void encodeRecord(const BookEntry& entry, BookRecord record) {
    const uint32_t words[2] = {static_cast<uint32_t>(entry.key >> 32), static_cast<uint32_t>(entry.key)};
    for (int i = 0; i < 8; i++) record[i] = static_cast<uint8_t>(words[i / 4] >> (24 - 8 * (i % 4)));
    record[8] = entry.from;
    record[9] = entry.to;
    const uint16_t counts[3] = {entry.won, entry.drawn, entry.lost};
    for (int i = 0; i < 3; i++) {
        record[10 + 2 * i] = static_cast<uint8_t>(counts[i] >> 8);
        record[11 + 2 * i] = static_cast<uint8_t>(counts[i]);
    }
}
