#include "viewer/file_chooser.h"

#include <sys/stat.h>

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/env_guard.h"
#include "tests/support/temp_dir.h"

namespace {

namespace fs = std::filesystem;
using diagnostics::Code;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using viewer::FileChooser;

/// A folder with configurations, other files and folders.
class ChoiceOfAFile : public testing::Test {
protected:
    static constexpr const char* FILES[] = {"show/b.ocio",           "show/A.OCIO",
                                            "show/notes.txt",        "show/.hidden.ocio",
                                            "show/luts/film.cube",   "show/Versions/old.ocio",
                                            "show/.git/config.ocio", "other/c.ocio"};

    std::string write_files() const {
        for (const char* name : FILES)
            folder.write(name, "text");
        return folder.file("show");
    }
    /// What is listed, folders with a '/' behind.
    static std::vector<std::string> names_of(const viewer::FileChooser& chooser) {
        std::vector<std::string> names;
        for (const viewer::FileChooser::Entry& entry : chooser.get_entries())
            names.push_back(entry.name + (entry.is_folder ? "/" : ""));
        return names;
    }
    std::string selected_of(const viewer::FileChooser& chooser) const {
        return chooser.get_selected() < chooser.get_entries().size()
                   ? chooser.get_entries()[chooser.get_selected()].name
                   : "none";
    }

    TempDir folder;
    viewer::FileChooser chooser{write_files(), {".ocio"}};
};

TEST_F(ChoiceOfAFile, IsAmongFoldersAndFilesOfTheExtensionInTheOrderOfTheirNames) {
    EXPECT_EQ(chooser.get_folder(), folder.file("show"));
    EXPECT_THAT(names_of(chooser), ElementsAre("luts/", "Versions/", "A.OCIO", "b.ocio"));
    EXPECT_EQ(chooser.get_error(), std::nullopt);
}

TEST_F(ChoiceOfAFile, HasNumberedFilesInTheOrderOfTheirNumbers) {
    for (const char* name : {"shots/s10.ocio", "shots/S9.ocio", "shots/s2.ocio"})
        folder.write(name, "text");
    chooser.enter(folder.file("shots"));
    EXPECT_THAT(names_of(chooser), ElementsAre("s2.ocio", "S9.ocio", "s10.ocio"));
}

TEST_F(ChoiceOfAFile, IsAmongAllFilesButHiddenOnesWhenWanted) {
    chooser.set_shows_all(true);
    EXPECT_THAT(names_of(chooser), ElementsAre("luts/", "Versions/", "A.OCIO", "b.ocio", "notes.txt"));
    chooser.set_shows_all(false);
    EXPECT_THAT(names_of(chooser), ElementsAre("luts/", "Versions/", "A.OCIO", "b.ocio"));
}

TEST_F(ChoiceOfAFile, LeavesOutWhatMayNeverEnd) {
    ASSERT_EQ(mkfifo(folder.file("show/pipe.ocio").c_str(), 0600), 0);
    chooser.set_shows_all(true);
    EXPECT_THAT(names_of(chooser), testing::Not(testing::Contains("pipe.ocio")));
    EXPECT_FALSE(chooser.choose_typed("pipe.ocio"));
    EXPECT_THAT(chooser.get_error().value().message,
                HasSubstr("pipe.ocio': it exists and is not a regular file"));
}

TEST_F(ChoiceOfAFile, GoesIntoFoldersAndUpAgain) {
    chooser.select(1);
    EXPECT_FALSE(chooser.choose_selected());
    EXPECT_EQ(chooser.get_folder(), folder.file("show/Versions"));
    EXPECT_THAT(names_of(chooser), ElementsAre("old.ocio"));
    EXPECT_EQ(chooser.choose_selected(), folder.file("show/Versions/old.ocio"));
    chooser.go_up();
    EXPECT_EQ(chooser.get_folder(), folder.file("show"));
    EXPECT_EQ(selected_of(chooser), "Versions") << "where it came from";
}

TEST_F(ChoiceOfAFile, EndsAtTheTop) {
    for (int i = 0; i < 100; ++i)
        chooser.go_up();
    EXPECT_EQ(chooser.get_folder(), "/");
    EXPECT_EQ(chooser.get_error(), std::nullopt);
}

TEST_F(ChoiceOfAFile, MovesItsSelectionAsFarAsThereAreEntries) {
    EXPECT_EQ(selected_of(chooser), "luts");
    chooser.move_selection(-1);
    EXPECT_EQ(selected_of(chooser), "luts");
    chooser.move_selection(2);
    EXPECT_EQ(selected_of(chooser), "A.OCIO");
    chooser.move_selection(100);
    EXPECT_EQ(selected_of(chooser), "b.ocio");
    EXPECT_EQ(chooser.choose_selected(), folder.file("show/b.ocio"));
}

TEST_F(ChoiceOfAFile, IsNoneInAnEmptyFolder) {
    fs::create_directory(folder.file("show/empty"));
    chooser.enter("empty");
    EXPECT_THAT(names_of(chooser), IsEmpty());
    chooser.move_selection(1);
    chooser.select(7);
    EXPECT_FALSE(chooser.choose_selected());
    EXPECT_EQ(chooser.get_error(), std::nullopt);
}

TEST_F(ChoiceOfAFile, TakesATypedPath) {
    EXPECT_EQ(chooser.choose_typed("b.ocio"), folder.file("show/b.ocio"));
    EXPECT_EQ(chooser.choose_typed("luts/../notes.txt"), folder.file("show/notes.txt"))
        << "though not listed";
    EXPECT_EQ(chooser.choose_typed(folder.file("other/c.ocio")), folder.file("other/c.ocio"));
    EXPECT_FALSE(chooser.choose_typed("../other/"));
    EXPECT_EQ(chooser.get_folder(), folder.file("other"));
    EXPECT_THAT(names_of(chooser), ElementsAre("c.ocio"));
    EXPECT_FALSE(chooser.choose_typed(""));
    EXPECT_EQ(chooser.get_error(), std::nullopt);
}

TEST_F(ChoiceOfAFile, SaysWhatIsWrongWithATypedPathAndStays) {
    EXPECT_FALSE(chooser.choose_typed("none.ocio"));
    EXPECT_EQ(chooser.get_error().value().message,
              "cannot read '" + folder.file("show/none.ocio") + "': no such file");
    EXPECT_EQ(chooser.get_error()->code, Code::FILE_MISSING);
    EXPECT_EQ(chooser.get_error()->file, folder.file("show/none.ocio"));
    EXPECT_FALSE(chooser.choose_typed("b.ocio/inside"));
    EXPECT_THAT(chooser.get_error().value().message, HasSubstr("b.ocio/inside"));
    fs::create_symlink("loop", folder.file("show/loop"));
    EXPECT_FALSE(chooser.choose_typed("loop"));
    EXPECT_THAT(chooser.get_error().value().message, HasSubstr("loop': it exists and is not a regular file"));
    EXPECT_EQ(chooser.get_error()->code, Code::FILE_NOT_REGULAR);
    EXPECT_EQ(chooser.get_folder(), folder.file("show"));
    EXPECT_THAT(names_of(chooser), ElementsAre("luts/", "Versions/", "A.OCIO", "b.ocio"));
    EXPECT_TRUE(chooser.choose_typed("b.ocio"));
    EXPECT_EQ(chooser.get_error(), std::nullopt) << "the next thing goes well";
}

TEST_F(ChoiceOfAFile, SaysWhyAFolderCannotBeEntered) {
    chooser.enter("none");
    EXPECT_THAT(chooser.get_error().value().message,
                AllOf(HasSubstr("cannot read the folder"), HasSubstr("show/none'"),
                      HasSubstr("No such file or directory")));
    EXPECT_EQ(chooser.get_error()->code, Code::FILE_MISSING);
    chooser.enter("b.ocio");
    EXPECT_EQ(chooser.get_error().value().code, Code::FILE_UNREADABLE);
    EXPECT_THAT(chooser.get_error().value().message, HasSubstr("Not a directory"));
    fs::create_directory(folder.file("show/gone"));
    chooser.enter(".");
    chooser.select(0);
    EXPECT_EQ(selected_of(chooser), "gone");
    fs::remove(folder.file("show/gone"));
    EXPECT_FALSE(chooser.choose_selected());
    EXPECT_THAT(chooser.get_error().value().message, HasSubstr("gone"));
    EXPECT_EQ(chooser.get_folder(), folder.file("show"));
}

TEST_F(ChoiceOfAFile, GoesHome) {
    EnvGuard home("HOME", folder.file("other"));
    chooser.go_home();
    EXPECT_EQ(chooser.get_folder(), folder.file("other"));
    chooser.enter(folder.file("show"));
    EXPECT_EQ(chooser.choose_typed("~/c.ocio"), folder.file("other/c.ocio"));
    EXPECT_FALSE(chooser.choose_typed("~"));
    EXPECT_EQ(chooser.get_folder(), folder.file("other"));
    EXPECT_EQ(chooser.get_shown_folder(), "~");
    home.set(folder.get_path() + "/");
    EXPECT_EQ(chooser.get_shown_folder(), "~/other");
    home.set(folder.file("oth"));
    EXPECT_EQ(chooser.get_shown_folder(), folder.file("other"));
    home.unset();
    EXPECT_EQ(chooser.get_shown_folder(), folder.file("other"));
    chooser.go_home();
    EXPECT_THAT(chooser.get_error().value().message, HasSubstr("HOME"));
}

TEST_F(ChoiceOfAFile, StartsInTheNearestFolderThatThereIs) {
    EXPECT_EQ(viewer::FileChooser(folder.file("show/none/deep"), {".ocio"}).get_folder(),
              folder.file("show"));
    EXPECT_EQ(viewer::FileChooser(folder.file("show/b.ocio"), {".ocio"}).get_folder(), folder.file("show"));
    EXPECT_EQ(viewer::FileChooser(folder.file("show/"), {".ocio"}).get_folder(), folder.file("show"));
    EXPECT_EQ(viewer::FileChooser("", {".ocio"}).get_folder(), fs::current_path());
    EXPECT_EQ(viewer::FileChooser(folder.file("show/none"), {".ocio"}).get_error(), std::nullopt);
}

TEST_F(ChoiceOfAFile, FollowsLinks) {
    fs::create_directory_symlink(folder.file("other"), folder.file("show/link"));
    fs::create_symlink(folder.file("other/c.ocio"), folder.file("show/linked.ocio"));
    chooser.enter(".");
    EXPECT_THAT(names_of(chooser),
                ElementsAre("link/", "luts/", "Versions/", "A.OCIO", "b.ocio", "linked.ocio"));
    chooser.enter("link");
    EXPECT_THAT(names_of(chooser), ElementsAre("c.ocio"));
}

} // namespace
