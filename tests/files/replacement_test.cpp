#include "files/replacement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include "files/temporary_name.h"
#include "tests/files/replacement_fixture.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/other_user.h"

namespace {

using files::Replacement;
using files::ReplacementRules;

INSTANTIATE_TEST_SUITE_P(Files, Replacing, testing::Values(ReplacementRules(), WITH_PATH), name_rules);

TEST_P(Replacing, MakesANewFileAndLeavesNothingElse) {
    EXPECT_TRUE(replace(folder.file("new"), "text"));
    EXPECT_EQ(folder.read("new"), "text");
    EXPECT_EQ(folder.count_entries(), 1u);
}

TEST_P(Replacing, ANewFileHasTheModeOfTheProcess) {
    const mode_t previous = umask(027);
    EXPECT_TRUE(replace(folder.file("new"), "text"));
    umask(previous);
    EXPECT_EQ(mode_of(folder.file("new")), 0640u);
}

TEST_P(Replacing, AnOldFilesPermissionsStay) {
    const std::string path = folder.write("old", std::string(100000, 'x'));
    ASSERT_EQ(chmod(path.c_str(), 0604), 0);
    EXPECT_TRUE(replace(path, "new"));
    EXPECT_EQ(folder.read("old"), "new");
    EXPECT_EQ(mode_of(path), 0604u);
}

TEST_P(Replacing, NewContentNeverRunsWithTheRightsOfTheOldFilesOwner) {
    const std::string path = folder.write("old", "old");
    ASSERT_EQ(chmod(path.c_str(), 06755), 0);
    EXPECT_TRUE(replace(path, "new"));
    EXPECT_EQ(mode_of(path), 0755u);
}

TEST_P(Replacing, AnotherUsersFileStaysTheirsForTheSuperuser) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser gives files away";
    const std::string path = folder.write("old", "old");
    ASSERT_EQ(chown(path.c_str(), OTHER_USER, OTHER_USER), 0);
    EXPECT_TRUE(replace(path, "new"));
    struct stat status = {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, OTHER_USER);
    EXPECT_EQ(status.st_gid, OTHER_USER);
}

TEST_P(Replacing, PermissionsOfAGroupThatCannotBeKeptGoToNoOther) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser makes files of groups that it is not in";
    const std::string path = folder.write("old", "old");
    ASSERT_EQ(chown(path.c_str(), OTHER_USER, 0), 0);
    ASSERT_EQ(chmod(path.c_str(), 0664), 0);
    ASSERT_EQ(chmod(folder.get_path().c_str(), 0777), 0);
    const gid_t own_group = getegid();
    ASSERT_EQ(setegid(OTHER_USER), 0);
    {
        const WithoutPrivileges unprivileged;
        EXPECT_TRUE(replace(path, "new")) << reason;
    }
    ASSERT_EQ(setegid(own_group), 0);
    EXPECT_EQ(mode_of(path), 0604u);
}

TEST_P(Replacing, LinksAreFollowedAndStay) {
    std::filesystem::create_directory(folder.file("sub"));
    folder.write("sub/real", "old");
    std::filesystem::create_symlink("sub/real", folder.file("link"));
    std::filesystem::create_symlink(folder.file("link"), folder.file("link2"));
    EXPECT_TRUE(replace(folder.file("link2"), "new"));
    EXPECT_EQ(folder.read("sub/real"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link")));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link2")));
}

TEST_P(Replacing, ALinkToNothingGetsItsTargetMade) {
    std::filesystem::create_symlink("later", folder.file("link"));
    EXPECT_TRUE(replace(folder.file("link"), "new"));
    EXPECT_EQ(folder.read("later"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link")));
}

TEST_P(Replacing, LinksInACircleAreRefused) {
    std::filesystem::create_symlink("b", folder.file("a"));
    std::filesystem::create_symlink("a", folder.file("b"));
    EXPECT_FALSE(replace(folder.file("a"), "new"));
    EXPECT_EQ(reason, "Too many levels of symbolic links");
}

TEST_P(Replacing, OtherNamesOfTheOldFileKeepTheOldContent) {
    const std::string path = folder.write("shot", "old");
    std::filesystem::create_hard_link(path, folder.file("published"));
    EXPECT_TRUE(replace(path, "new"));
    EXPECT_EQ(folder.read("shot"), "new");
    EXPECT_EQ(folder.read("published"), "old");
}

TEST_P(Replacing, AWriteProtectedFileIsRefused) {
    const std::string path = folder.write("old", "old");
    ASSERT_EQ(chmod(path.c_str(), 0444), 0);
    ASSERT_EQ(chmod(folder.get_path().c_str(), 0777), 0);
    const WithoutPrivileges unprivileged;
    EXPECT_FALSE(replace(path, "new"));
    EXPECT_EQ(reason, "Permission denied");
    EXPECT_EQ(folder.read("old"), "old");
}

TEST_P(Replacing, WhatIsNotAFileIsRefusedWithOneReason) {
    ASSERT_EQ(mkfifo(folder.file("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(replace(folder.file("pipe"), "new"));
    EXPECT_EQ(reason, "it exists and is not a regular file");
    EXPECT_FALSE(replace("/dev/null", "new"));
    EXPECT_EQ(reason, "it exists and is not a regular file");
    EXPECT_FALSE(replace(folder.get_path(), "new"));
    EXPECT_EQ(reason, "Is a directory");
    EXPECT_FALSE(replace(folder.file("none/new"), "new"));
    EXPECT_EQ(reason, "no such folder");
    EXPECT_FALSE(replace(folder.file("none/"), "new"));
    EXPECT_EQ(reason, "it names a folder");
    EXPECT_FALSE(replace(folder.file("pipe/new"), "new"));
    EXPECT_EQ(reason, "Not a directory");
    EXPECT_FALSE(replace("", "new"));
    EXPECT_EQ(reason, "No such file or directory");
    EXPECT_EQ(folder.count_entries(), 1u);
}

TEST_P(Replacing, TheLongestNamesAreReplacedToo) {
    for (const std::string& name : {std::string(255, 'x'), "x." + std::string(253, 'y')}) {
        EXPECT_TRUE(replace(folder.file(name), "a"));
        EXPECT_TRUE(replace(folder.file(name), "b"));
        EXPECT_EQ(folder.read(name), "b");
    }
}

TEST_P(Replacing, ARelativePathMeansTheCurrentFolder) {
    const std::filesystem::path previous = std::filesystem::current_path();
    std::filesystem::current_path(folder.get_path());
    EXPECT_TRUE(replace("here", "a"));
    EXPECT_TRUE(replace("here", "b"));
    std::filesystem::current_path(previous);
    EXPECT_EQ(folder.read("here"), "b");
    EXPECT_EQ(folder.count_entries(), 1u);
}

TEST(ReplacementRulesOfItsCaller, GiveAModeWhateverTheOldOneWas) {
    const TempDir folder;
    const std::string path = folder.write("old", "old");
    ASSERT_EQ(chmod(path.c_str(), 0666), 0);
    for (const std::string& name : {path, folder.file("new")}) {
        Replacement file(name, {0600, false, false});
        ASSERT_TRUE(file.write("new") && file.commit());
        struct stat status = {};
        ASSERT_EQ(stat(name.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, 0600u);
    }
}

TEST(ReplacementRulesOfItsCaller, WriteDevicesAndPipesInPlace) {
    Replacement nothing("/dev/null", IN_PLACE);
    EXPECT_TRUE(nothing.write("text") && nothing.commit());
    Replacement full("/dev/full", IN_PLACE);
    EXPECT_TRUE(full.write("text"));
    EXPECT_FALSE(full.commit());
    EXPECT_EQ(full.get_failure()->reason, "No space left on device");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST(ReplacementRulesOfItsCaller, DoNotWaitForAPipeThatNobodyReads) {
    const TempDir folder;
    ASSERT_EQ(mkfifo(folder.file("pipe").c_str(), 0600), 0);
    Replacement file(folder.file("pipe"), IN_PLACE);
    EXPECT_FALSE(file.is_open());
    EXPECT_EQ(file.get_failure()->error_number, ENXIO);
}

TEST(ReplacementPath, HasTheExtensionAndLiesBesideTheTarget) {
    const TempDir folder;
    Replacement file(folder.file("shot.0001.exr"), WITH_PATH);
    const std::filesystem::path path = file.get_temporary_path();
    EXPECT_EQ(path.extension(), ".exr");
    EXPECT_EQ(path.parent_path(), folder.get_path());
    EXPECT_TRUE(files::is_temporary_name(path.filename().string()));
    EXPECT_TRUE(std::filesystem::exists(path));
}

TEST(ReplacementFailure, CarriesThePathTheOperationTheNumberAndTheWords) {
    const Replacement file("/nowhere/a.cc");
    ASSERT_TRUE(file.get_failure());
    EXPECT_EQ(file.get_failure()->path, "/nowhere/a.cc");
    EXPECT_EQ(file.get_failure()->operation, files::Operation::WRITE);
    EXPECT_EQ(file.get_failure()->error_number, ENOENT);
    EXPECT_EQ(file.get_failure()->describe(), "cannot write '/nowhere/a.cc': no such folder");
    const Replacement device("/dev/zero");
    EXPECT_EQ(device.get_failure()->error_number, 0);
    const Replacement folder("/");
    EXPECT_EQ(folder.get_failure()->error_number, EISDIR);
}

} // namespace
