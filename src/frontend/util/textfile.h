// A line reader over a text stream. Lines end with LF or CR LF; a last line without either ends at
// the end of the file.
#pragma once

#include <cstddef>
#include <cstdio>

class Textfile {
  public:
    explicit Textfile(const char* path);  // opens for reading; isOpen() tells whether it worked
    explicit Textfile(FILE* stream);      // reads a stream the caller keeps open (standard input)
    Textfile(const Textfile&) = delete;
    Textfile& operator=(const Textfile&) = delete;
    ~Textfile();

    bool isOpen() const { return stream != nullptr; }
    // True when reading stopped on an error rather than at the end of the file.
    bool failed() const;

    // The next line without its line end, valid until the next call; null at the end of the file.
    // A NUL byte inside a line ends the text a caller sees but not the line.
    char* readline();

  private:
    FILE* stream;
    bool owned;
    char* buffer = nullptr;
    size_t capacity = 0;
};
