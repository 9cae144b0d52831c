// The key=value configuration store, filled once at start-up from the ini file.
//
// File syntax: one "key=value" per line. Empty lines and lines starting with "#" are skipped, and
// so is any line without "=" (there are no sections; "[book]" is just such a line). The key ends at
// the first "="; further "=" belong to the value. Key and value lose leading and trailing spaces
// (tabs stay). A repeated key takes the value of its last line.
#pragma once

#include <vector>

#include "frontend/util/string.h"

class IniFile {
  public:
    // False when the file cannot be opened or read; the pairs read so far stay.
    bool load(const char* path);

    // The value of key (exact, case-sensitive), or the empty String when the key is absent.
    String get(const char* key) const;

  private:
    struct Pair {
        String key;
        String value;
    };
    std::vector<Pair> pairs;
};

extern IniFile iniFile;

// The ini file named on the command line, else "kelvra.ini"; the book builder reads it too.
extern const char* iniFileName;
