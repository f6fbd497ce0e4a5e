#include "standalone/standalone_app.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/env_guard.h"
#include "tests/support/other_user.h"
#include "tests/support/recording_log.h"
#include "tests/support/temp_dir.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

int mode_of(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 ? static_cast<int>(status.st_mode & 07777) : -1;
}

class TempFolders : public testing::Test {
protected:
    bool create(const CoreString& name) { return app.create_temp_folder(name, path); }
    // Expects a refusal with one message at level 1 that names the place and the reason.
    void expect_refused(const CoreString& name, const std::string& reason) {
        path = "untouched";
        EXPECT_FALSE(create(name));
        EXPECT_EQ(path, "untouched");
        EXPECT_THAT(log.get_lines(), ElementsAre(RecordingLog::Line{
                                         LOG_ERROR, "Cannot create the folder '" + std::string(name.view()) +
                                                        "' for temporary files in '" + cache +
                                                        "/qb_colorio': " + reason + ".\n"}));
        log.clear();
    }

    RecordingLog log;
    TempDir folder;
    std::string cache = folder.file("cache");
    StandaloneApp app{cache.c_str()};
    CoreString path;
};

TEST_F(TempFolders, AreMadeForThisUserAloneAndFoundAgain) {
    ASSERT_TRUE(create("luts"));
    EXPECT_EQ(path, CoreString(cache.c_str()) + "/qb_colorio/luts");
    EXPECT_EQ(mode_of(cache), 0700);
    EXPECT_EQ(mode_of(cache + "/qb_colorio"), 0700);
    EXPECT_EQ(mode_of(path.get_data()), 0700);
    folder.write("cache/qb_colorio/luts/kept", "");
    EXPECT_TRUE(create("luts"));
    EXPECT_TRUE(folder.exists("cache/qb_colorio/luts/kept"));
    EXPECT_THAT(log.get_lines(), IsEmpty());
}

TEST_F(TempFolders, AreClosedToOthersWhenTheyWereOpen) {
    std::filesystem::create_directories(cache + "/qb_colorio/luts");
    chmod((cache + "/qb_colorio/luts").c_str(), 0777);
    chmod((cache + "/qb_colorio").c_str(), 0755);
    EXPECT_TRUE(create("luts"));
    EXPECT_EQ(mode_of(cache + "/qb_colorio"), 0700);
    EXPECT_EQ(mode_of(cache + "/qb_colorio/luts"), 0700);
}

TEST_F(TempFolders, TheUmaskDoesNotLockTheUserOut) {
    std::filesystem::create_directory(cache);
    const mode_t old_mask = umask(0177);
    const bool created = create("luts");
    umask(old_mask);
    EXPECT_TRUE(created);
    EXPECT_EQ(mode_of(cache + "/qb_colorio/luts"), 0700);
}

TEST_F(TempFolders, LinksAreRefused) {
    std::filesystem::create_directories(cache + "/qb_colorio");
    std::filesystem::create_directory(folder.file("elsewhere"));
    std::filesystem::create_directory_symlink(folder.file("elsewhere"), cache + "/qb_colorio/luts");
    expect_refused("luts", "'luts' is a link or a file");
    std::filesystem::remove_all(cache + "/qb_colorio");
    std::filesystem::create_directory_symlink(folder.file("elsewhere"), cache + "/qb_colorio");
    expect_refused("luts", "'qb_colorio' is a link or a file");
    EXPECT_TRUE(std::filesystem::is_empty(folder.file("elsewhere")));
}

TEST_F(TempFolders, FilesInTheirPlaceAreRefused) {
    folder.write("cache/qb_colorio/luts", "");
    chmod(cache.c_str(), 0700);
    expect_refused("luts", "'luts' is a link or a file");
}

TEST_F(TempFolders, AFolderOfAnotherUserIsRefused) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser can make a folder of another user";
    std::filesystem::create_directories(cache + "/qb_colorio/luts");
    ASSERT_EQ(chown((cache + "/qb_colorio/luts").c_str(), OTHER_USER, OTHER_USER), 0);
    expect_refused("luts", "'luts' belongs to another user");
}

TEST_F(TempFolders, AFolderWhereEveryUserMayWriteIsRefused) {
    std::filesystem::create_directory(cache);
    chmod(cache.c_str(), 01777);
    expect_refused("luts", "every user may write in the folder of 'qb_colorio'");
    EXPECT_TRUE(std::filesystem::is_empty(cache));
}

TEST_F(TempFolders, AFolderThatCannotBeMadeIsRefused) {
    folder.write("cache", "a file");
    expect_refused("luts", "Not a directory");
    std::filesystem::remove(cache);
    std::filesystem::create_directory(cache);
    chmod(folder.get_path().c_str(), 0755);
    chmod(cache.c_str(), 0555);
    const WithoutPrivileges unprivileged;
    expect_refused("luts", "Permission denied");
}

/// A folder below whose parent nothing can be made nor looked for.
class TempFoldersBelow : public TempFolders {
protected:
    void expect_refused_below(const std::string& parent, const std::string& reason) {
        cache = parent + "/cache";
        StandaloneApp app_below(cache.c_str());
        path = "untouched";
        EXPECT_FALSE(app_below.create_temp_folder("luts", path));
        EXPECT_EQ(path, "untouched");
        EXPECT_TRUE(log.contains(": " + reason + ".\n")) << reason;
        log.clear();
    }
};

TEST_F(TempFoldersBelow, AFolderThatMayNotBeEnteredAreRefused) {
    chmod(folder.get_path().c_str(), 0755);
    std::filesystem::create_directory(folder.file("closed"));
    chmod(folder.file("closed").c_str(), 0600);
    const WithoutPrivileges unprivileged;
    expect_refused_below(folder.file("closed"), "Permission denied");
    expect_refused_below(folder.file("closed") + "/deeper", "Permission denied");
}

TEST_F(TempFoldersBelow, ALinkToItselfAreRefused) {
    std::filesystem::create_symlink("loop", folder.file("loop"));
    expect_refused_below(folder.file("loop"), "Too many levels of symbolic links");
}

TEST_F(TempFoldersBelow, AnEndlessPathAreRefused) {
    expect_refused_below(folder.file(std::string(300, 'n')), "File name too long");
    std::string deep = folder.get_path();
    while (deep.size() < 5000)
        deep += "/.";
    expect_refused_below(deep, "File name too long");
}

TEST_F(TempFolders, NamesAreSinglePathComponents) {
    for (const char* name : {"", ".", "..", "a/b", "/", "../luts"})
        expect_refused(name, "invalid folder name");
    EXPECT_FALSE(std::filesystem::exists(cache));
}

TEST_F(TempFolders, FollowTheCacheVariableWhenItIsAbsolute) {
    StandaloneApp users_app;
    EnvGuard variable("XDG_CACHE_HOME", cache);
    ASSERT_TRUE(users_app.create_temp_folder("luts", path));
    EXPECT_EQ(path, CoreString(cache.c_str()) + "/qb_colorio/luts");
    const EnvGuard home("HOME", folder.file("home"));
    for (const char* value : {"relative/cache", ""}) {
        variable.set(value);
        ASSERT_TRUE(users_app.create_temp_folder("luts", path)) << value;
        EXPECT_EQ(path, CoreString(folder.file("home/.cache/qb_colorio/luts").c_str()));
    }
    EXPECT_FALSE(std::filesystem::exists("relative"));
}

} // namespace
