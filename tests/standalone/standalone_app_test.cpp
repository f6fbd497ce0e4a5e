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

#include "host/event/event_ids.h"
#include "host/of/of_enum.h"
#include "host/of/of_object_factory.h"
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

// Notes every event of an application.
class AppObserver : public EventObject {
public:
    explicit AppObserver(StandaloneApp& app) {
        for (const CoreString* event :
             {&EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED,
              &EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED, &EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED,
              &EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED,
              &EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED})
            connect(app, *event, &AppObserver::on_event, nullptr);
    }
    void on_event(AppBase& sender, const EventInfo& info, OfObject*) {
        events.emplace_back(info.id.view());
        path_seen = dynamic_cast<OfApp&>(sender).get_color_space_file_path();
    }
    std::vector<std::string> take() { return std::exchange(events, {}); }

    std::vector<std::string> events;
    CoreString path_seen;
};

TEST(StandaloneApp, StartsWithEverythingOff) {
    const StandaloneApp app;
    EXPECT_FALSE(app.get_use_color_space_file());
    EXPECT_EQ(app.get_use_color_space_by_extension_file(), 0u);
    EXPECT_EQ(app.get_color_space_file_path(), "");
    EXPECT_EQ(app.get_cdl_library_file_path(), "");
    EXPECT_EQ(app.get_color_space_by_extension_file_path(), "");
    EXPECT_EQ(app.get_default_color_space_name(), "linear");
}

TEST(StandaloneApp, EverySetterStoresAndRaisesItsEvent) {
    StandaloneApp app;
    AppObserver observer(app);
    app.set_use_color_space_file(true);
    EXPECT_TRUE(app.get_use_color_space_file());
    EXPECT_THAT(observer.take(), ElementsAre("EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED"));
    app.set_color_space_file_path("/config.ocio");
    EXPECT_EQ(app.get_color_space_file_path(), "/config.ocio");
    EXPECT_EQ(observer.path_seen, "/config.ocio") << "listeners find the new value";
    EXPECT_THAT(observer.take(), ElementsAre("EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED"));
    app.set_cdl_library_file_path("/looks.ccc");
    EXPECT_EQ(app.get_cdl_library_file_path(), "/looks.ccc");
    EXPECT_THAT(observer.take(), ElementsAre("EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED"));
    app.set_default_color_space_name("sRGB");
    EXPECT_EQ(app.get_default_color_space_name(), "sRGB");
    EXPECT_THAT(observer.take(), ElementsAre("EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED"));
    app.set_use_color_space_by_extension_file(1);
    EXPECT_EQ(app.get_use_color_space_by_extension_file(), 1u);
    EXPECT_THAT(observer.take(), ElementsAre("EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED"));
    app.set_color_space_by_extension_file_path("/map.yaml");
    EXPECT_EQ(app.get_color_space_by_extension_file_path(), "/map.yaml");
    EXPECT_THAT(observer.take(), ElementsAre("EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED"));
}

TEST(StandaloneApp, SettingTheSameValueRaisesNothing) {
    StandaloneApp app;
    app.set_color_space_file_path("/config.ocio");
    AppObserver observer(app);
    app.set_use_color_space_file(false);
    app.set_color_space_file_path("/config.ocio");
    app.set_cdl_library_file_path("");
    app.set_default_color_space_name("linear");
    app.set_use_color_space_by_extension_file(0);
    app.set_color_space_by_extension_file_path("");
    EXPECT_THAT(observer.take(), IsEmpty());
}

TEST(StandaloneApp, HasOneObjectFactory) {
    StandaloneApp app;
    OfEnum* const roles = app.get_object_factory().add_enum("roles_enum", 9);
    EXPECT_EQ(app.get_object_factory().get_enum("roles_enum"), roles);
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
