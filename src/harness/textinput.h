// Opening the text files the harness reads (EPD suites, result files). std::getline is used rather than
// Textfile because a last line without a newline is still a position worth reading.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

// False when path cannot be read as a file: missing, unreadable, or a directory (which opens, then
// reads as empty).
inline bool openText(const std::string& path, std::ifstream& in) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) return false;
    in.open(path);
    return static_cast<bool>(in);
}
