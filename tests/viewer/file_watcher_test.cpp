#include "tool/viewer/file_watcher.h"

#include <chrono>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// Ends the wait for a notice that never comes.
constexpr std::chrono::seconds PATIENCE(10);

class WatchedFolder : public testing::Test {
protected:
    WatchedFolder() { watcher.watch({folder.get_path()}); }

    std::vector<std::string> wait_for_changes() { return watcher.take_changes(PATIENCE); }

    TempDir folder;
    tool::FileWatcher watcher;
};

TEST_F(WatchedFolder, TellsOfAFileWhenItIsWritten) {
    const std::string path = folder.write("new.cube", "text");
    EXPECT_THAT(wait_for_changes(), ElementsAre(path));
    EXPECT_THAT(watcher.take_changes(), IsEmpty());
}

TEST_F(WatchedFolder, TellsOfAFileThatTakesAnothersPlace) {
    const std::string path = folder.write("a.cube", "old"), temporary = folder.write("b.tmp", "new");
    wait_for_changes();
    std::filesystem::rename(temporary, path);
    EXPECT_THAT(wait_for_changes(), UnorderedElementsAre(path, temporary));
}

TEST_F(WatchedFolder, TellsOfARemovedFile) {
    const std::string path = folder.write("a.cube", "old");
    wait_for_changes();
    std::filesystem::remove(path);
    EXPECT_THAT(wait_for_changes(), ElementsAre(path));
}

TEST_F(WatchedFolder, TellsOfAFileOnceHoweverOftenItWasWritten) {
    for (int i = 0; i < 5; ++i)
        folder.write("a.cube", std::to_string(i));
    EXPECT_THAT(wait_for_changes(), ElementsAre(folder.file("a.cube")));
}

TEST_F(WatchedFolder, IsWatchedWithTheFoldersBelow) {
    std::filesystem::create_directories(folder.file("luts/deep"));
    watcher.watch({folder.get_path()});
    const std::string path = folder.write("luts/deep/a.cube", "text");
    EXPECT_THAT(wait_for_changes(), ElementsAre(path));
}

TEST_F(WatchedFolder, IsForgottenForAnother) {
    const TempDir other;
    watcher.watch({other.get_path(), "/no/such/folder"});
    folder.write("a.cube", "text");
    const std::string path = other.write("b.cube", "text");
    EXPECT_THAT(wait_for_changes(), ElementsAre(path));
}

TEST_F(WatchedFolder, SaysNothingOfFilesThatAreRead) {
    folder.write("a.cube", "text");
    wait_for_changes();
    EXPECT_EQ(folder.read("a.cube"), "text");
    EXPECT_THAT(watcher.take_changes(), IsEmpty());
}

} // namespace
