#include "colorio/ocio/search_folders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/colorio/ocio/test_configs.h"
#include "tests/support/env_guard.h"

namespace {

using testing::ElementsAre;

class SearchFolders : public testing::Test {
protected:
    std::vector<std::string> get(const std::string& search_path) {
        test_configs::ConfigText config;
        config.settings = "search_path: \"" + search_path + "\"\n";
        return ocio::get_search_folders(test_configs::load(folder, config.str()));
    }

    TempDir folder;
};

TEST_F(SearchFolders, StartAtTheFolderOfTheConfiguration) {
    EXPECT_THAT(get("luts:../shared:/abs/./luts"),
                ElementsAre(folder.get_path() + "/luts",
                            std::filesystem::path(folder.get_path()).parent_path().string() + "/shared",
                            "/abs/luts"));
}

TEST_F(SearchFolders, AreWithoutTheBlanksAroundEntries) {
    EXPECT_THAT(get(" luts : /abs "), ElementsAre(folder.get_path() + "/luts", "/abs"));
}

TEST_F(SearchFolders, AreTheOneOfTheConfigurationForAnEmptyEntry) {
    EXPECT_THAT(get("a::b"),
                ElementsAre(folder.get_path() + "/a", folder.get_path(), folder.get_path() + "/b"));
}

TEST_F(SearchFolders, AreSplitBeforeVariablesAreReplaced) {
    EnvGuard list("LIST_OF_THE_TEST");
    list.set("/a:/b");
    EXPECT_THAT(get("$LIST_OF_THE_TEST/c"), ElementsAre("/a:/b/c"));
}

TEST_F(SearchFolders, HaveTheirVariablesReplaced) {
    EnvGuard show("SHOW_OF_THE_TEST");
    show.set("/shows/blue");
    EXPECT_THAT(get("$SHOW_OF_THE_TEST/luts"), ElementsAre("/shows/blue/luts"));
}

TEST_F(SearchFolders, AreTheOneOfTheConfigurationWithoutASearchPath) {
    EXPECT_THAT(get(""), ElementsAre(folder.get_path()));
    EXPECT_THAT(ocio::get_search_folders(test_configs::load(folder, test_configs::ConfigText().str())),
                ElementsAre(folder.get_path()));
}

} // namespace
