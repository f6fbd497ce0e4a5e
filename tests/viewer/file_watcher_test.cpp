#include "viewer/file_watcher.h"

#include <sys/resource.h>

#include <chrono>
#include <filesystem>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// Ends the wait for a notice that never comes.
constexpr std::chrono::seconds PATIENCE(10);

/// A file, and one in a folder that need not exist.
class WatchedFiles : public testing::Test {
protected:
    WatchedFiles() { watcher.watch({file, deep_file}); }

    std::vector<std::string> wait_for_changes() { return watcher.take_changes(PATIENCE); }

    TempDir folder;
    const std::string file = folder.file("a.cube");
    const std::string deep_file = folder.file("luts/film/b.cube");
    viewer::FileWatcher watcher;
};

/// Leaves the process no further open file while it lives.
class NoFurtherFiles {
public:
    NoFurtherFiles() {
        getrlimit(RLIMIT_NOFILE, &before);
        const rlimit none = {0, before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NoFurtherFiles() { setrlimit(RLIMIT_NOFILE, &before); }
    NoFurtherFiles(const NoFurtherFiles&) = delete;
    NoFurtherFiles& operator=(const NoFurtherFiles&) = delete;

private:
    rlimit before = {};
};

TEST_F(WatchedFiles, HaveNoErrorWhereTheSystemGivesNotice) {
    EXPECT_EQ(watcher.get_error(), std::nullopt);
}

TEST_F(WatchedFiles, ThatTheSystemGivesNoNoticeOfSayWhy) {
    std::unique_ptr<viewer::FileWatcher> blind;
    {
        const NoFurtherFiles limit;
        blind = std::make_unique<viewer::FileWatcher>();
    }
    EXPECT_THAT(blind->get_error().value().message, HasSubstr("fs.inotify.max_user_instances"));
    EXPECT_EQ(blind->get_error()->code, diagnostics::Code::SYSTEM_FAILURE);
    blind->watch({file});
    folder.write("a.cube", "text");
    EXPECT_THAT(blind->take_changes(), IsEmpty());
}

TEST_F(WatchedFiles, AreToldOfWhenTheyAreWritten) {
    folder.write("a.cube", "text");
    EXPECT_THAT(wait_for_changes(), ElementsAre(file));
    EXPECT_THAT(watcher.take_changes(), IsEmpty());
}

TEST_F(WatchedFiles, AreToldOfWhenAnotherTakesTheirPlace) {
    folder.write("a.cube", "old");
    wait_for_changes();
    fs::rename(folder.write("b.tmp", "new"), file);
    EXPECT_THAT(wait_for_changes(), ElementsAre(file));
}

TEST_F(WatchedFiles, AreToldOfWhenTheyAreRemoved) {
    folder.write("a.cube", "old");
    wait_for_changes();
    fs::remove(file);
    EXPECT_THAT(wait_for_changes(), ElementsAre(file));
}

TEST_F(WatchedFiles, AreToldOfOnceHoweverOftenTheyWereWritten) {
    for (int i = 0; i < 5; ++i)
        folder.write("a.cube", std::to_string(i));
    EXPECT_THAT(wait_for_changes(), ElementsAre(file));
}

TEST_F(WatchedFiles, AreToldOfWhereTheirFoldersWereMadeLater) {
    folder.write("luts/film/b.cube", "text");
    EXPECT_THAT(wait_for_changes(), ElementsAre(deep_file));
    folder.write("luts/film/b.cube", "another text");
    EXPECT_THAT(wait_for_changes(), ElementsAre(deep_file));
}

TEST_F(WatchedFiles, AreToldOfStepByStepWhileTheirFoldersAreMade) {
    fs::create_directory(folder.file("luts"));
    EXPECT_THAT(watcher.take_changes(), IsEmpty()) << "there is no file yet";
    fs::create_directory(folder.file("luts/film"));
    EXPECT_THAT(watcher.take_changes(), IsEmpty());
    folder.write("luts/film/b.cube", "text");
    EXPECT_THAT(wait_for_changes(), ElementsAre(deep_file));
}

TEST_F(WatchedFiles, AreToldOfWhenTheirFolderIsReplacedAndAfterwards) {
    folder.write("luts/film/b.cube", "old");
    wait_for_changes();
    folder.write("new/film/b.cube", "new");
    fs::rename(folder.file("luts"), folder.file("former"));
    fs::rename(folder.file("new"), folder.file("luts"));
    EXPECT_THAT(wait_for_changes(), ElementsAre(deep_file));
    folder.write("luts/film/b.cube", "newer");
    EXPECT_THAT(wait_for_changes(), ElementsAre(deep_file));
    folder.write("former/film/b.cube", "nobody's any more");
    EXPECT_THAT(watcher.take_changes(), IsEmpty());
}

TEST_F(WatchedFiles, AreToldOfThroughLinks) {
    folder.write("versions/1.cube", "first");
    folder.write("versions/2.cube", "second");
    fs::create_symlink("versions/1.cube", file);
    EXPECT_THAT(wait_for_changes(), ElementsAre(file)) << "the link is made";
    folder.write("versions/1.cube", "edited");
    EXPECT_THAT(wait_for_changes(), ElementsAre(file)) << "what it leads to is edited";
    fs::create_symlink("versions/2.cube", folder.file("link.tmp"));
    fs::rename(folder.file("link.tmp"), file);
    EXPECT_THAT(wait_for_changes(), ElementsAre(file)) << "it leads elsewhere";
    folder.write("versions/2.cube", "edited");
    EXPECT_THAT(wait_for_changes(), ElementsAre(file));
}

TEST_F(WatchedFiles, AreToldOfInAFolderThatIsALink) {
    const TempDir store;
    store.write("film/b.cube", "text");
    fs::create_directory_symlink(store.get_path(), folder.file("luts"));
    EXPECT_THAT(wait_for_changes(), ElementsAre(deep_file));
    store.write("film/b.cube", "another text");
    EXPECT_THAT(wait_for_changes(), ElementsAre(deep_file));
}

TEST_F(WatchedFiles, AreAllToldOfByOneCall) {
    folder.write("luts/film/b.cube", "text");
    folder.write("a.cube", "text");
    EXPECT_THAT(wait_for_changes(), UnorderedElementsAre(file, deep_file));
}

TEST_F(WatchedFiles, AreNotReportedForChangesOfTheirNeighbors) {
    folder.write("b.cube", "text");
    folder.write("luts/a.cube", "text");
    folder.write("a.cube.tmp", "text");
    EXPECT_THAT(watcher.take_changes(), IsEmpty());
}

TEST_F(WatchedFiles, AreForgottenForOthers) {
    const TempDir other;
    const std::string other_file = other.file("c.cube");
    watcher.watch({other_file, "/no/such/folder/a.cube"});
    folder.write("a.cube", "text");
    other.write("c.cube", "text");
    EXPECT_THAT(wait_for_changes(), ElementsAre(other_file));
}

TEST_F(WatchedFiles, AreAwaitedForAnyTime) {
    constexpr auto LONGEST = std::chrono::milliseconds::max(), SHORTEST = std::chrono::milliseconds::min();
    EXPECT_THAT(watcher.take_changes(SHORTEST), IsEmpty());
    EXPECT_THAT(watcher.take_changes(std::chrono::milliseconds(-1)), IsEmpty());
    folder.write("a.cube", "text");
    EXPECT_THAT(watcher.take_changes(SHORTEST), ElementsAre(file));
    folder.write("a.cube", "another text");
    EXPECT_THAT(watcher.take_changes(LONGEST), ElementsAre(file));
}

TEST_F(WatchedFiles, AreNotToldOfWhenTheyAreRead) {
    folder.write("a.cube", "text");
    wait_for_changes();
    EXPECT_EQ(folder.read("a.cube"), "text");
    EXPECT_THAT(watcher.take_changes(), IsEmpty());
}

} // namespace
