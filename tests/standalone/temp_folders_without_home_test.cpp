#include "standalone/standalone_app.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/support/env_guard.h"
#include "tests/support/other_user.h"
#include "tests/support/recording_log.h"
#include "tests/support/temp_dir.h"

namespace {

int mode_of(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 ? static_cast<int>(status.st_mode & 07777) : -1;
}

// The folder of a user without a home that can be written.
class NoHome : public testing::Test {
protected:
    NoHome() { std::filesystem::create_directory(places); }

    RecordingLog log;
    TempDir folder;
    std::string places = folder.file("places");
    EnvGuard cache{"XDG_CACHE_HOME"};
    EnvGuard home{"HOME", "/proc/nowhere"};
    EnvGuard temporary{"TMPDIR", places};
};

TEST_F(NoHome, TemporaryFilesLieInAPrivateFolderOfTheProcess) {
    CoreString path;
    {
        StandaloneApp app;
        ASSERT_TRUE(app.create_temp_folder("luts", path));
        EXPECT_EQ(std::string(path.view()).substr(0, places.size() + 12), places + "/qb_colorio-");
        EXPECT_EQ(mode_of(path.get_data()), 0700);
        EXPECT_EQ(mode_of(std::filesystem::path(path.get_data()).parent_path().parent_path()), 0700);
        const CoreString first = path;
        EXPECT_TRUE(app.create_temp_folder("luts", path));
        EXPECT_EQ(path, first);
        EXPECT_EQ(log.count(LOG_ERROR), 0u);
        EXPECT_EQ(log.count(LOG_INFO), 1u);
        const std::string note(app.get_temp_folder_note().view());
        EXPECT_NE(note.find("set XDG_CACHE_HOME to a folder that can be written"), std::string::npos) << note;
        EXPECT_NE(note.find("No such file or directory"), std::string::npos) << note;
    }
    EXPECT_TRUE(std::filesystem::is_empty(places));
}

TEST_F(NoHome, AFolderThatTheVariableNamesAndThatIsNotTheUsersIsLeftAlone) {
    std::filesystem::create_directory(folder.file("open"));
    chmod(folder.file("open").c_str(), 01777);
    cache.set(folder.file("open"));
    CoreString path;
    StandaloneApp app;
    ASSERT_TRUE(app.create_temp_folder("luts", path));
    EXPECT_TRUE(path.start_with(CoreString(places.c_str())));
    EXPECT_TRUE(std::filesystem::is_empty(folder.file("open")));
}

/// The folder of a process that was killed after it wrote a file.
std::filesystem::path leave_folder(const std::string& places) {
    const pid_t child = fork();
    if (child == 0) {
        StandaloneApp app;
        CoreString path;
        if (app.create_temp_folder("luts", path)) {
            std::ofstream(std::string(path.view()) + "/film.spi1d") << "a LUT";
            kill(getpid(), SIGKILL);
        }
        _exit(1);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    return std::filesystem::directory_iterator(places)->path();
}

TEST_F(NoHome, FoldersOfUsersWithSuchANameStay) {
    folder.write("places/qb_colorio-master/main.cpp", "sources");
    std::filesystem::create_directory(folder.file("places/qb_colorio-empty1"));
    folder.write("places/qb_colorio-marker/.qb_colorio-process-folder", "notes of a user");
    CoreString path;
    StandaloneApp app;
    EXPECT_TRUE(app.create_temp_folder("luts", path));
    EXPECT_EQ(folder.read("places/qb_colorio-master/main.cpp"), "sources");
    EXPECT_TRUE(folder.exists("places/qb_colorio-empty1"));
    EXPECT_EQ(folder.read("places/qb_colorio-marker/.qb_colorio-process-folder"), "notes of a user");
}

TEST_F(NoHome, FoldersOfKilledProcessesStayWhenAUserPutAFileThere) {
    for (const char* name :
         {"main.cpp", "src/main.cpp", "qb_colorio/main.cpp", "qb_colorio/luts/src/main.cpp"}) {
        const std::filesystem::path left = leave_folder(places);
        std::filesystem::create_directories((left / name).parent_path());
        std::ofstream(left / name) << "sources";
        {
            CoreString path;
            StandaloneApp app;
            EXPECT_TRUE(app.create_temp_folder("luts", path));
        }
        EXPECT_TRUE(std::filesystem::exists(left / name)) << name;
        std::filesystem::remove_all(left);
    }
}

TEST_F(NoHome, FoldersOfKilledProcessesAreRemovedByTheNext) {
    leave_folder(places);
    CoreString path;
    StandaloneApp first;
    StandaloneApp second;
    EXPECT_TRUE(first.create_temp_folder("luts", path));
    EXPECT_TRUE(second.create_temp_folder("luts", path));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(places), {}), 2);
}

// Makes a folder as a killed process leaves it.
void mark(const std::string& path) {
    std::filesystem::create_directory(path);
    std::ofstream(path + "/.qb_colorio-process-folder") << "qb_colorio: temporary files of one process\n";
}

TEST_F(NoHome, OnlyItsOwnAbandonedFoldersAreRemoved) {
    const std::string abandoned = places + "/qb_colorio-aBc123";
    const std::string kept[] = {places + "/qb_colorio-aBc1234", places + "/qb_colorio-aBc12",
                                places + "/QB_colorio-aBc123", places + "/xqb_colorio-Bc123"};
    mark(abandoned);
    for (const std::string& other : kept)
        mark(other);
    folder.write("places/qb_colorio-a_file", "somebody's");
    mark(folder.file("elsewhere"));
    std::filesystem::create_directory_symlink(folder.file("elsewhere"), places + "/qb_colorio-a_link");
    CoreString path;
    StandaloneApp app;
    ASSERT_TRUE(app.create_temp_folder("luts", path));
    EXPECT_FALSE(std::filesystem::exists(abandoned));
    for (const std::string& other : kept)
        EXPECT_TRUE(std::filesystem::exists(other)) << other;
    EXPECT_TRUE(folder.exists("places/qb_colorio-a_file"));
    EXPECT_TRUE(folder.exists("places/qb_colorio-a_link"));
    EXPECT_TRUE(folder.exists("elsewhere/.qb_colorio-process-folder"));
}

TEST_F(NoHome, FoldersOfOtherUsersStay) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser can make a folder of another user";
    const std::string other = places + "/qb_colorio-aBc123";
    mark(other);
    ASSERT_EQ(chown(other.c_str(), OTHER_USER, OTHER_USER), 0);
    CoreString path;
    StandaloneApp app;
    ASSERT_TRUE(app.create_temp_folder("luts", path));
    EXPECT_TRUE(std::filesystem::exists(other));
}

TEST_F(NoHome, AVariableThatNamesNoFolderIsPassedOver) {
    for (const std::string& value : {folder.file("absent"), std::string("relative")}) {
        temporary.set(value);
        CoreString path;
        StandaloneApp app;
        ASSERT_TRUE(app.create_temp_folder("luts", path)) << value;
        EXPECT_TRUE(path.start_with("/tmp/qb_colorio-") || path.start_with("/var/tmp/qb_colorio-") ||
                    path.start_with("/dev/shm/qb_colorio-"))
            << path.get_data();
    }
    EXPECT_FALSE(std::filesystem::exists("relative"));
}

TEST_F(NoHome, AHostThatNamesTheFolderGetsNoOther) {
    CoreString path;
    StandaloneApp app("/proc/nowhere");
    EXPECT_FALSE(app.create_temp_folder("luts", path));
    EXPECT_EQ(app.get_temp_folder_note(), "");
}

} // namespace
