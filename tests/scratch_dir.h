// Temporary directories and files for the tests, removed when the test is over.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

// A fresh, empty directory, removed with the object.
class ScratchDir {
  public:
    explicit ScratchDir(const std::string& name = "test") {
        std::string pattern = "/tmp/kelvra-" + name + "-XXXXXX";
        root = mkdtemp(pattern.data()) ? pattern : std::string();
    }
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;
    ~ScratchDir() {
        std::error_code ignored;
        if (!root.empty()) std::filesystem::remove_all(root, ignored);
    }
    std::string file(const std::string& name) const { return root + "/" + name; }
    const std::string& path() const { return root; }

  private:
    std::string root;
};

// A fresh directory that stays until the test process ends (each test runs in a process of its own),
// for tests that hand its path around.
inline std::string scratchDirectory(const std::string& name) {
    static std::vector<std::unique_ptr<ScratchDir>> kept;
    return kept.emplace_back(std::make_unique<ScratchDir>(name))->path();
}

inline void writeText(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

inline bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

inline std::string readText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Writes content to directory/name and returns the full path.
inline std::string writeFile(const std::string& directory, const std::string& name,
                             const std::string& content) {
    writeText(directory + "/" + name, content);
    return directory + "/" + name;
}
