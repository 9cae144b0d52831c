// Building a book from a Polyglot opening book (".bin"), the format most chess programs read.
#pragma once

#include <string>

#include "book/builder.h"

// Whether path names a Polyglot book: its name ends in ".bin", in any case.
bool isPolyglotBook(const char* path);

// Walks the Polyglot book's game tree from the start position, up to the options' maxPly plies, and
// writes every move it finds under the engine's own key of its position, each move's weight counted as
// that many drawn games (the source holds no results). Positions reached by transposition are written
// once; promotions are left out (a record cannot hold the piece) but the walk goes on past them. On
// success bookPath names the file written.
bool importPolyglot(const char* polyglotPath, const BookBuildOptions& options, std::string& bookPath);
