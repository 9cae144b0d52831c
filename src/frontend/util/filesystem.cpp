#include "frontend/util/filesystem.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "frontend/util/string.h"
#include "platform/platform.h"

bool FileSystem::mkdirs(const char* path) {
    if (!path) return false;
    printf("mkdirs %s\n", path);
    printf("mkdirs 1\n");
    size_t position = 0;
    for (;;) {
        size_t slash = position + strcspn(path + position, "/\\");
        // The root of an absolute path exists already: the walk goes on after it. Two separators in
        // a row end the walk here, successfully, leaving whatever lies beyond as it is.
        if (slash == 0 && path[0]) {
            position = 1;
            continue;
        }
        if (slash <= position) return true;
        printf("mkdirs slash=%i\n", static_cast<int>(slash));
        String prefix(path, slash);
        printf("FileSystem: creating dir %s\n", prefix.c_str());
        int error = platform::makeDirectory(prefix.c_str());
        if (error != 0 && error != EEXIST) {
            printf("FileSystem: error %i creating directory: '%s'\n", error, prefix.c_str());
            return false;
        }
        if (path[slash] == 0) return true;
        position = slash + 1;
    }
}
