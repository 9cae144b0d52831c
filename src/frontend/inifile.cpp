#include "frontend/inifile.h"

#include <cstring>

#include "frontend/util/textfile.h"

IniFile iniFile;
const char* iniFileName = "kelvra.ini";

namespace {

// Only the space character counts as a blank here: a tab belongs to the key or value.
String trimmed(const char* text, size_t length) {
    while (length > 0 && *text == ' ') text++, length--;
    while (length > 0 && text[length - 1] == ' ') length--;
    return String(text, length);
}

}  // namespace

bool IniFile::load(const char* path) {
    Textfile file(path);
    if (!file.isOpen()) return false;
    while (const char* line = file.readline()) {
        if (line[0] == 0 || line[0] == '#') continue;
        const char* equals = strchr(line, '=');
        if (!equals) continue;
        String key = trimmed(line, equals - line);
        String value = trimmed(equals + 1, strlen(equals + 1));
        bool replaced = false;
        for (Pair& pair : pairs) {
            if (pair.key == key.c_str()) {
                pair.value = value;
                replaced = true;
                break;
            }
        }
        if (!replaced) pairs.push_back({key, value});
    }
    return !file.failed();
}

String IniFile::get(const char* key) const {
    for (const Pair& pair : pairs)
        if (pair.key == key) return pair.value;
    return String();
}
