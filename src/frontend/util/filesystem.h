#pragma once

class FileSystem {
  public:
    // Creates every directory of path ("/" and "\" both separate) and returns true on success; a
    // directory that already exists is fine. Traces its steps on standard output.
    static bool mkdirs(const char* path);
};
