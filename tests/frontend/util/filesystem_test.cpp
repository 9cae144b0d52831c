#include "frontend/util/filesystem.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

namespace {

bool isDirectory(const std::string& path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

// Runs mkdirs in a fresh scratch directory and returns its trace.
class Mkdirs : public testing::Test {
  protected:
    void SetUp() override {
        root = testing::TempDir() + "mkdirs_" + std::to_string(getpid()) + "_" +
               testing::UnitTest::GetInstance()->current_test_info()->name();
        ASSERT_EQ(mkdir(root.c_str(), 0777), 0);
        ASSERT_NE(getcwd(previous, sizeof previous), nullptr);
    }
    void TearDown() override {
        ASSERT_EQ(chdir(previous), 0);
        std::filesystem::remove_all(root);
    }

    std::string trace(const std::string& path, bool expected) {
        testing::internal::CaptureStdout();
        EXPECT_EQ(FileSystem::mkdirs(path.c_str()), expected) << path;
        return testing::internal::GetCapturedStdout();
    }

    std::string root;
    char previous[4096];
};

TEST_F(Mkdirs, AbsolutePathCreatesEveryLevel) {
    std::string path = root + "/logs/run";
    std::string out = trace(path, true);
    EXPECT_TRUE(isDirectory(path));
    EXPECT_NE(out.find("FileSystem: creating dir " + root + "/logs\nmkdirs slash=" +
                       std::to_string(path.size()) + "\nFileSystem: creating dir " + path + "\n"),
              std::string::npos)
        << out;
}

TEST_F(Mkdirs, RelativePathCreatesFirstComponentThenWholePath) {
    ASSERT_EQ(chdir(root.c_str()), 0);
    std::string out = trace("logs\\run/deep", true);
    EXPECT_TRUE(isDirectory(root + "/logs"));
    EXPECT_TRUE(isDirectory(root + "/logs\\run"));  // a backslash separates, but Linux keeps it in the name
    EXPECT_EQ(out,
              "mkdirs logs\\run/deep\nmkdirs 1\n"
              "mkdirs slash=4\nFileSystem: creating dir logs\n"
              "mkdirs slash=8\nFileSystem: creating dir logs\\run\n"
              "mkdirs slash=13\nFileSystem: creating dir logs\\run/deep\n");
    // Existing directories are no error, and a doubled separator stops the walk with success.
    trace("logs\\run/deep", true);
    std::string doubled = trace("logs//never", true);
    EXPECT_FALSE(isDirectory(root + "/never"));
    EXPECT_EQ(doubled.find("creating dir logs/"), std::string::npos) << doubled;
}

TEST_F(Mkdirs, ReportsAComponentThatCannotBeCreated) {
    ASSERT_EQ(chdir(root.c_str()), 0);
    FILE* file = fopen("plain", "w");
    fclose(file);
    // "plain" exists (as a file), so the next level fails with ENOTDIR.
    std::string out = trace("plain/sub", false);
    EXPECT_NE(out.find("FileSystem: error 20 creating directory: 'plain/sub'\n"), std::string::npos) << out;
    EXPECT_FALSE(FileSystem::mkdirs(nullptr));
}

}  // namespace
