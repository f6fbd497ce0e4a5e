// The names that completion offers, and their cache.

#include <filesystem>

#include "tests/tool/configs.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class Complete : public ToolTest {
protected:
    Complete() { folder.write("show.ocio", SHOW_CONFIG); }

    /// What is offered for the last word.
    std::string complete(std::vector<std::string> words) {
        words.insert(words.begin(), {"__complete", "zsh"});
        const ToolRun result = run(words);
        EXPECT_EQ(result.code, 0);
        EXPECT_THAT(result.err, IsEmpty());
        return result.out;
    }
    std::string complete_spaces() { return complete({"explain", "--config", path("show.ocio"), ""}); }
    std::string find_cache_file() const {
        for (const auto& entry : std::filesystem::directory_iterator(path("cache/qb_colorio/completion")))
            return entry.path().lexically_relative(folder.get_path()).string();
        return "";
    }
};

TEST_F(Complete, OffersTheNamesOfTheConfigOfTheLine) {
    EXPECT_EQ(complete_spaces(), "=lin\n=half_light\n=warm\n=ops|warm\n=scene_linear\n=texture_paint\n");
    EXPECT_EQ(complete({"convert", "--config=" + path("show.ocio"), "--view", "C"}), "=Cinema.Film.v2\n");
    EXPECT_EQ(complete({"convert", "--config", path("show.ocio"), "--display", "Monitor", "--view="}),
              "=--view=Film\n=--view=Warm\n");
    EXPECT_EQ(complete({"convert", "--config", path("show.ocio"), "--display", ""}), "=Monitor\n=Cinema\n");
}

TEST_F(Complete, OffersThoseOfTheEnvironmentElseTheBuiltInOnes) {
    EXPECT_EQ(complete({"explain", "sR"}), "=sRGB\n");
    ocio.set(path("show.ocio"));
    EXPECT_EQ(complete({"explain", "ha"}), "=half_light\n");
}

TEST_F(Complete, OffersWhatThePreferencesHold) {
    ASSERT_EQ(run({"cdl", "add", "warm shot", "--values", "1.1,1,0.9/0,0,0/1,1,1/1"}).code, 0);
    EXPECT_EQ(complete({"cdl", "remove", "wa"}), "=warm shot\n");
    EXPECT_EQ(complete({"convert", "--cdl", "nothing"}), ":files\n");
    EXPECT_EQ(complete({"formats", "set", "Tar"}), "=Targa\n");
}

TEST_F(Complete, OffersNothingForABrokenConfig) {
    folder.write("show.ocio", "ocio_profile_version: 1\ncolorspaces: [\n");
    EXPECT_EQ(complete_spaces(), "");
    folder.write("show.ocio", SHOW_CONFIG);
    EXPECT_THAT(complete_spaces(), HasSubstr("half_light"));
}

TEST_F(Complete, ReadsNamesFromTheCacheUntilTheConfigChanges) {
    const std::string names = complete_spaces();
    const std::string file = find_cache_file();
    std::string content = folder.read(file);
    content.replace(content.find("half_light"), 10, "of_a_cache");
    folder.write(file, content);
    EXPECT_THAT(complete_spaces(), HasSubstr("of_a_cache"));
    folder.write("show.ocio", std::string(SHOW_CONFIG) + "  - !<ColorSpace> {name: new}\n");
    EXPECT_THAT(complete_spaces(),
                AllOf(HasSubstr("=new\n"), HasSubstr("half_light"), Not(HasSubstr("of_a_cache"))));
    const EnvGuard views("OCIO_ACTIVE_DISPLAYS", "Cinema");
    EXPECT_EQ(complete({"convert", "--config", path("show.ocio"), "--display", ""}), "=Cinema\n");
}

TEST_F(Complete, WorksWithADamagedCacheAndWithoutOne) {
    const std::string names = complete_spaces();
    folder.write(find_cache_file(), "no cache");
    EXPECT_EQ(complete_spaces(), names);
    folder.write("file", "in the way");
    const EnvGuard cache("XDG_CACHE_HOME", path("file/cache"));
    EXPECT_EQ(complete_spaces(), names);
}

} // namespace
