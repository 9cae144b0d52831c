// The PGN reader: one pass over the bytes with a small look-ahead buffer, so lines of any length and
// files of any size read in constant memory.
#include "book/pgn.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace {

constexpr size_t BUFFER_SIZE = 1 << 16;
// Longer words, tag names and values are cut; a real one is far shorter.
constexpr size_t MAX_TOKEN = 64;
constexpr size_t MAX_TAG_VALUE = 255;
constexpr size_t MAX_TAGS = 128;
// Where a lost game (an unclosed comment or variation) gives way to the next one.
constexpr char NEXT_GAME[] = "[Event \"";

// Character classes, looked up once per byte.
constexpr uint8_t BLANK = 1;      // spaces, tabs, line ends and other control characters
constexpr uint8_t DELIMITER = 2;  // ends a word: a blank or one of {}()[];$
constexpr uint8_t MOVE_CHAR = 4;  // a character the move parser knows

constexpr std::array<uint8_t, 256> buildClasses() {
    std::array<uint8_t, 256> classes{};
    for (int c = 0; c <= ' '; c++) classes[c] = BLANK | DELIMITER;
    for (char c : std::string_view("{}()[];$")) classes[static_cast<uint8_t>(c)] = DELIMITER;
    for (char c : std::string_view("abcdefghKQRBNPqrbnOo12345678x=+#-"))
        classes[static_cast<uint8_t>(c)] = MOVE_CHAR;
    return classes;
}
constexpr std::array<uint8_t, 256> CLASSES = buildClasses();

bool isDigit(int c) {
    return c >= '0' && c <= '9';
}
bool isBlank(int c) {
    return c != EOF && (CLASSES[c] & BLANK);
}
bool endsToken(int c) {
    return c == EOF || (CLASSES[c] & DELIMITER);
}
bool isMoveChar(char c) {
    return CLASSES[static_cast<uint8_t>(c)] & MOVE_CHAR;
}

bool isResult(const std::string& token) {
    return token == "1-0" || token == "0-1" || token == "1/2-1/2" || token == "*";
}

// Castling written with zeros, as some programs export it: 0-0 or 0-0-0 with check marks or glyphs.
bool isZeroCastling(const std::string& token) {
    size_t i = 0;
    int zeros = 0;
    while (i < token.size() && token[i] == '0') {
        zeros++;
        i++;
        if (i < token.size() && token[i] == '-' && zeros < 3)
            i++;
        else
            break;
    }
    if (zeros < 2 || token[i - 1] == '-') return false;
    for (; i < token.size(); i++)
        if (!std::strchr("+#!?", token[i])) return false;
    return true;
}

}  // namespace

const std::string* PgnGame::tag(const char* name) const {
    for (const auto& [key, value] : tags)
        if (key == name) return &value;
    return nullptr;
}

PgnReader::~PgnReader() {
    if (file) std::fclose(file);
}

bool PgnReader::open(const char* path) {
    if (file) std::fclose(file);
    file = std::fopen(path, "rb");
    buffer.assign(BUFFER_SIZE, 0);
    pos = len = 0;
    lineStart = true;
    gamesRead = 0;
    if (!file) return false;
    // A byte-order mark says nothing a reader of ASCII movetext needs.
    if (lookingAt("\xEF\xBB\xBF")) pos += 3;
    return true;
}

bool PgnReader::refill() {
    if (!file) return false;
    std::memmove(buffer.data(), buffer.data() + pos, len - pos);
    len -= pos;
    pos = 0;
    const size_t got = std::fread(buffer.data() + len, 1, buffer.size() - len, file);
    len += got;
    return got > 0;
}

int PgnReader::get() {
    if (pos == len && !refill()) return EOF;
    const int c = static_cast<unsigned char>(buffer[pos++]);
    lineStart = c == '\n';
    return c;
}

int PgnReader::peek() {
    if (pos == len && !refill()) return EOF;
    return static_cast<unsigned char>(buffer[pos]);
}

bool PgnReader::lookingAt(const char* text) {
    const size_t n = std::strlen(text);
    if (len - pos < n) refill();
    return len - pos >= n && std::memcmp(buffer.data() + pos, text, n) == 0;
}

void PgnReader::skipLine() {
    for (int c = get(); c != EOF && c != '\n'; c = get()) {
    }
}

// Skips a brace comment whose "{" was read. False, with the game's error set, when the comment never
// closes: it then ends at the end of the file or where the next game's tags begin.
bool PgnReader::skipComment(PgnGame& game) {
    for (;;) {
        if (lineStart && lookingAt(NEXT_GAME)) break;
        const int c = get();
        if (c == '}') return true;
        if (c == EOF) break;
    }
    if (game.error.empty()) game.error = "unterminated comment";
    return false;
}

// Reads a tag pair whose "[" was read: a name, a quoted value with \" and \\ escapes, "]".
void PgnReader::readTag(PgnGame& game) {
    std::string name;
    std::string value;
    int c = get();
    while (c == ' ' || c == '\t') c = get();
    while (!endsToken(c) && c != '"') {
        if (name.size() < MAX_TOKEN) name += static_cast<char>(c);
        c = get();
    }
    while (c == ' ' || c == '\t') c = get();
    bool ok = c == '"' && !name.empty();
    if (ok) {
        for (c = get(); c != '"'; c = get()) {
            if (c == '\\') {
                const int escaped = peek();
                if (escaped == '"' || escaped == '\\') c = get();
            }
            if (c == EOF || c == '\n' || c == '\r') {
                ok = false;
                break;
            }
            if (value.size() < MAX_TAG_VALUE) value += static_cast<char>(c);
        }
    }
    // The rest of the pair up to "]", or the line if it has none.
    if (ok) c = get();
    while (c != ']' && c != '\n' && c != EOF) c = get();
    if (!ok || c != ']') {
        if (game.error.empty()) game.error = "malformed tag pair";
        return;
    }
    if (game.tags.size() < MAX_TAGS) game.tags.emplace_back(std::move(name), std::move(value));
}

bool PgnReader::takeToken(std::string& token, PgnGame& game) {
    if (token[0] == '0' || token[0] == '1' || token[0] == '*') {
        if (isResult(token)) {
            game.result = token;
            return true;
        }
        if (token == "1/2") {
            game.result = "1/2-1/2";
            return true;
        }
    }
    // A move number, with "." or "..." and maybe the move glued on ("1.d4", "28...b5?").
    size_t start = 0;
    while (start < token.size() && isDigit(token[start])) start++;
    if (start == token.size()) return false;
    if (token[start] != '.') start = 0;
    while (start < token.size() && token[start] == '.') start++;
    size_t end = token.size();
    while (end > start && (token[end - 1] == '!' || token[end - 1] == '?')) end--;
    if (end == start) return false;
    std::string move = token.substr(start, end - start);
    if (isZeroCastling(move)) {
        for (char& c : move)
            if (c == '0') c = 'O';
    }
    if (move == "e.p." || move == "ep") return false;
    if (move == "--" || move == "Z0" || move == "null") move = "--";
    bool readable = token.size() <= MAX_TOKEN;
    for (char c : move) readable = readable && isMoveChar(c);
    if (!readable && game.error.empty()) game.error = "unreadable move '" + move.substr(0, MAX_TOKEN) + "'";
    if (readable && game.moves.size() < maxMoves) game.moves.push_back(std::move(move));
    return false;
}

bool PgnReader::next(PgnGame& game) {
    // Cleared rather than replaced, so the storage of one game serves the next.
    game.number = 0;
    game.tags.clear();
    game.moves.clear();
    game.result.clear();
    game.error.clear();
    bool started = false;  // tags or movetext seen
    bool inMoves = false;  // movetext seen: a tag now starts the next game
    int depth = 0;         // variation nesting
    std::string token;
    for (;;) {
        const bool atLineStart = lineStart;
        int c = get();
        if (c == EOF) break;
        if (isBlank(c)) continue;
        if (c == '%' && atLineStart) {
            skipLine();
            continue;
        }
        if (c == '{') {
            if (skipComment(game)) continue;
            // An unclosed comment before any game text loses nothing: go on with what follows it.
            if (!started) {
                game.error.clear();
                continue;
            }
            break;
        }
        if (c == ';') {
            skipLine();
            continue;
        }
        if (c == '[') {
            if (depth > 0) {
                if (!atLineStart || !lookingAt(NEXT_GAME + 1)) continue;
                game.error = "unterminated variation";
            }
            if (inMoves) {
                // The next game's tags: this one ended without its result.
                unget();
                lineStart = atLineStart;
                break;
            }
            readTag(game);
            started = true;
            continue;
        }
        if (c == '}' || c == ']') continue;
        started = true;
        inMoves = true;
        if (c == '(') {
            depth++;
            continue;
        }
        if (c == ')') {
            if (depth > 0) depth--;
            continue;
        }
        if (c == '$') {
            while (isDigit(peek())) get();
            continue;
        }
        token.clear();
        for (; !endsToken(c); c = get()) {
            if (token.size() <= MAX_TOKEN) token += static_cast<char>(c);
        }
        if (c != EOF) {
            unget();
            lineStart = false;
        }
        if (depth == 0 && takeToken(token, game)) break;
    }
    if (depth > 0 && game.error.empty()) game.error = "unterminated variation";
    if (!started) return false;
    game.number = ++gamesRead;
    return true;
}
