#include "frontend/util/filesystem.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "scratch_dir.h"

namespace {

namespace fs = std::filesystem;

// Runs mkdirs and returns what it printed.
std::string trace(const std::string& path, bool expected) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(FileSystem::mkdirs(path.c_str()), expected) << path;
    return testing::internal::GetCapturedStdout();
}

TEST(Mkdirs, CreatesEveryLevelOfAnAbsoluteOrRelativePath) {
    ScratchDir root("mkdirs");
    EXPECT_NE(trace(root.file("logs/run"), true).find("FileSystem: creating dir " + root.file("logs") + "\n"),
              std::string::npos);
    EXPECT_TRUE(fs::is_directory(root.file("logs/run")));

    const fs::path previous = fs::current_path();
    fs::current_path(root.path());
    std::string out = trace("rel\\run/deep", true);
    EXPECT_TRUE(fs::is_directory(root.file("rel\\run/deep")));  // a backslash separates, Linux keeps it
    EXPECT_NE(out.find("creating dir rel\nmkdirs slash=7\nFileSystem: creating dir rel\\run\n"),
              std::string::npos)
        << out;
    // Existing directories are no error, and a doubled separator stops the walk with success.
    trace("rel\\run/deep", true);
    out = trace("rel//never", true);
    EXPECT_FALSE(fs::exists(root.file("never")));
    EXPECT_EQ(out.find("creating dir rel/"), std::string::npos) << out;

    // "plain" is a file, so the next level fails with ENOTDIR.
    writeText(root.file("plain"), "");
    out = trace("plain/sub", false);
    EXPECT_NE(out.find("FileSystem: error 20 creating directory: 'plain/sub'\n"), std::string::npos) << out;
    EXPECT_FALSE(FileSystem::mkdirs(nullptr));
    fs::current_path(previous);
}

}  // namespace
