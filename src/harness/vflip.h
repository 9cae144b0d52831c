// The colour-flip check: a position and its twin with ranks mirrored and colours swapped must get the
// same evaluation for the side to move. A difference is an asymmetry bug in an evaluation term.
#pragma once

#include <cstdio>
#include <string>

struct VflipCount {
    int positions = 0;    // positions checked
    int differences = 0;  // of those, twins evaluated differently
    int errors = 0;       // lines that hold no usable position
};

// Checks every position of an EPD file, printing "VFLIP EVAL NOT EQUAL" with the position for each
// difference, and the counts at the end. False when the file cannot be opened.
bool vflipFile(const std::string& path, VflipCount& count, FILE* out);
