#include "host/sys/sys_filesystem.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "host/sys/sys_env.h"
#include "tests/support/env_guard.h"
#include "tests/support/temp_dir.h"

namespace {

TEST(SysFilesystem, FilesExistThroughLinksAndFoldersDoNotCount) {
    const TempDir folder;
    folder.write("file", "");
    std::filesystem::create_symlink("file", folder.file("link"));
    std::filesystem::create_symlink("absent", folder.file("dangling"));
    EXPECT_TRUE(SysFilesystem::file_exists(folder.file("file").c_str()));
    EXPECT_TRUE(SysFilesystem::file_exists(folder.file("link").c_str()));
    EXPECT_FALSE(SysFilesystem::file_exists(folder.file("dangling").c_str()));
    EXPECT_FALSE(SysFilesystem::file_exists(folder.file("absent").c_str()));
    EXPECT_FALSE(SysFilesystem::file_exists(folder.get_path().c_str()));
    EXPECT_FALSE(SysFilesystem::file_exists(""));
}

TEST(SysFilesystem, TheExtensionFollowsTheLastDotOfTheFileName) {
    EXPECT_EQ(SysFilesystem::get_file_extension("/shots/a.tar.CCC"), "CCC");
    EXPECT_EQ(SysFilesystem::get_file_extension("grade.cdl"), "cdl");
    EXPECT_EQ(SysFilesystem::get_file_extension("/luts/a.cube"), "cube");
    EXPECT_EQ(SysFilesystem::get_file_extension("trailing."), "");
    EXPECT_EQ(SysFilesystem::get_file_extension(""), "");
}

TEST(SysFilesystem, DotsOfFoldersAndHiddenFilesStartNoExtension) {
    EXPECT_EQ(SysFilesystem::get_file_extension("/luts.d/plain"), "");
    EXPECT_EQ(SysFilesystem::get_file_extension("a.b/"), "");
    EXPECT_EQ(SysFilesystem::get_file_extension("/home/.profile"), "");
    EXPECT_EQ(SysFilesystem::get_file_extension("/home/.profile.bak"), "bak");
    EXPECT_EQ(SysFilesystem::get_file_extension(".."), "");
    EXPECT_EQ(SysFilesystem::get_file_extension("../.."), "");
}

TEST(SysEnv, AnswersTheValueOrTheEmptyString) {
    EnvGuard variable("QB_TEST_VARIABLE", "value");
    EXPECT_EQ(sys_get_env("QB_TEST_VARIABLE"), "value");
    variable.unset();
    EXPECT_EQ(sys_get_env("QB_TEST_VARIABLE"), "");
}

} // namespace
