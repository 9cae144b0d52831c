// What the tests take from where they run: the small data files kept with them, the large collections
// in the data folder beside the project (developers' machines and CI have it, a clone of the project
// alone does not), and whether the sanitizers slow them down.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

// A file of the tests' own data folder.
inline std::string testData(const std::string& name) {
    return KELVRA_TEST_DATA_DIR "/" + name;
}

// A file of the shared data folder, which may be absent: tests that read one start with SKIP_WITHOUT.
inline std::string sharedData(const std::string& name) {
    return KELVRA_SHARED_DATA_DIR "/" + name;
}

// Skips the running test, naming the file, when it is not there.
#define SKIP_WITHOUT(path)                                                                    \
    do {                                                                                      \
        if (!std::filesystem::exists(path)) GTEST_SKIP() << "needs " << (path) << ", absent"; \
    } while (false)

// Skips the running test when the bitbase library was not built (no libgaviotatb-dev) or the tables
// it reads are not installed (no gaviotatb).
#define SKIP_WITHOUT_BITBASES()                             \
    do {                                                    \
        SKIP_WITHOUT(KELVRA_EGBB_DIR "/egbbso64.so");       \
        SKIP_WITHOUT(KELVRA_GAVIOTA_TABLES "/kpk.gtb.cp4"); \
    } while (false)

// Heavy loops shrink under the sanitizers.
inline bool sanitized() {
    return std::getenv("KELVRA_SANITIZED") != nullptr;
}

// The positions of an EPD file: each line's first four fields (the rest are counters or operations).
inline std::vector<std::string> fensOf(const std::string& path) {
    std::vector<std::string> fens;
    std::ifstream in(path);
    std::string line;
    while (std::getline(in, line)) {
        size_t end = 0;
        for (int field = 0; field < 4 && end != std::string::npos; ++field) end = line.find(' ', end + 1);
        if (!line.empty()) fens.push_back(line.substr(0, end));
    }
    return fens;
}
