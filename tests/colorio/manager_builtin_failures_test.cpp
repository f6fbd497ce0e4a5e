#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "colorio/color_io_converter.h"
#include "colorio/color_io_manager.h"
#include "tests/colorio/builtin_lut_texts.h"
#include "tests/colorio/manager_fixture.h"
#include "tests/support/file_size_limit.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

bool flushes_fail = false;

/// While it lives, files take every byte and fail to be flushed to the disk, which happens as they are
/// closed.
class FailingFlush {
public:
    FailingFlush() { flushes_fail = true; }
    ~FailingFlush() { flushes_fail = false; }
    FailingFlush(const FailingFlush&) = delete;
    FailingFlush& operator=(const FailingFlush&) = delete;
};

const char BUILTIN_FAILED[] =
    "Color Management: failed to create Tavelion built-in color space configuration.\n";

std::string write_failed(const std::string& path) {
    return "Color Management: failed to write built-in LUT file '" + path + "'.\n";
}

} // namespace

/// In place of the C library's, for the host of this program; exported, because the host is a library.
extern "C" [[gnu::visibility("default")]] int fsync(int descriptor) {
    if (flushes_fail) {
        errno = EIO;
        return -1;
    }
    return static_cast<int>(syscall(SYS_fsync, descriptor));
}

using ManagerBuiltinFailures = ManagerTest;

TEST_F(ManagerBuiltinFailures, AFolderThatCannotBeWrittenToFailsTheStartButKeepsTheSpaces) {
    const std::string absent = path_of("absent");
    app.lut_folder = absent.c_str();

    EXPECT_FALSE(ColorIOManager::static_init(&app));

    EXPECT_THAT(take_log(),
                ElementsAre(LogLine{1, write_failed(absent + "/srgb.spi1d")},
                            LogLine{1, write_failed(absent + "/cineon.spi1d")}, LogLine{1, BUILTIN_FAILED}));
    const ColorIOManager& manager = *ColorIOManager::get_instance();
    EXPECT_THAT(strings(manager.get_color_space_names()), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_EQ(manager.get_tavelion_color_spaces().get_count(), 3u);
}

TEST_F(ManagerBuiltinFailures, OneFileThatCannotBeWrittenFailsTheStart) {
    const std::string absent = path_of("absent");
    app.answer_folder_request = [&](unsigned int request, CoreString& path) {
        if (request == 3)
            path = absent.c_str();
        return true;
    };
    EXPECT_FALSE(ColorIOManager::static_init(&app));
    EXPECT_THAT(take_log(),
                ElementsAre(LogLine{1, write_failed(absent + "/cineon.spi1d")}, LogLine{1, BUILTIN_FAILED}));
    EXPECT_TRUE(folder.exists("srgb.spi1d"));
}

TEST_F(ManagerBuiltinFailures, AFolderRequestThatFailsOnlyForTheFileWritesNothingAndStillSucceeds) {
    app.answer_folder_request = [](unsigned int request, CoreString&) { return request != 2; };
    EXPECT_TRUE(ColorIOManager::static_init(&app));
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_FALSE(folder.exists("srgb.spi1d"));
    EXPECT_TRUE(folder.exists("cineon.spi1d"));
    EXPECT_THAT(strings(ColorIOManager::get_instance()->get_color_space_names()),
                ElementsAre("sRGB", "Cineon", "linear"));
}

// The table's path comes from the second request, the configuration's folder from the first.
TEST_F(ManagerBuiltinFailures, FilesAreLookedForWhereTheSecondRequestPoints) {
    write_file("other/keep.txt", "");
    app.answer_folder_request = [&](unsigned int request, CoreString& path) {
        if (request == 2)
            path = path_of("other").c_str();
        return true;
    };
    EXPECT_TRUE(ColorIOManager::static_init(&app));
    EXPECT_TRUE(folder.exists("other/srgb.spi1d"));
    EXPECT_FALSE(folder.exists("srgb.spi1d"));
    EXPECT_TRUE(folder.exists("cineon.spi1d"));
}

// A space whose table was never written is defined all the same; using it is what fails.
TEST_F(ManagerBuiltinFailures, ASpaceWithoutItsTableIsPublishedAndCannotBeConverted) {
    app.answer_folder_request = [](unsigned int request, CoreString&) { return request != 2; };
    start_manager();
    ColorIOConverter from_srgb, from_cineon;
    EXPECT_FALSE(from_srgb.configure("sRGB", "linear"));
    EXPECT_TRUE(from_cineon.configure("Cineon", "linear"));
}

TEST_F(ManagerBuiltinFailures, ATableThatCannotBeFlushedToTheDiskIsReportedAndNotKept) {
    {
        const FailingFlush disk;
        EXPECT_FALSE(ColorIOManager::static_init(&app));
    }
    EXPECT_THAT(take_log(),
                ElementsAre(LogLine{1, write_failed(path_of("srgb.spi1d"))},
                            LogLine{1, write_failed(path_of("cineon.spi1d"))}, LogLine{1, BUILTIN_FAILED}));
    EXPECT_FALSE(folder.exists("srgb.spi1d"));
}

TEST_F(ManagerBuiltinFailures, AFullDiskIsReportedAndTheNextStartWritesTheTables) {
    {
        const FileSizeLimit disk(1000);
        EXPECT_FALSE(ColorIOManager::static_init(&app));
    }
    EXPECT_THAT(take_log(),
                ElementsAre(LogLine{1, write_failed(path_of("srgb.spi1d"))},
                            LogLine{1, write_failed(path_of("cineon.spi1d"))}, LogLine{1, BUILTIN_FAILED}));
    EXPECT_FALSE(folder.exists("srgb.spi1d"));
    EXPECT_FALSE(folder.exists("cineon.spi1d"));

    ColorIOManager::destroy();
    start_manager();
    ColorIOConverter converter;
    EXPECT_TRUE(converter.configure("sRGB", "linear"));
    EXPECT_THAT(take_log(), IsEmpty());
}
