#include <string>

#include "colorio/ocio/config.h"
#include "tests/colorio/manager_sources_fixture.h"
#include "tests/support/open_counter.h"

namespace {

/// Every reload parses the config once: it opens the file as often as a single parse does.
class ConfigReload : public ManagerSources {
protected:
    int opens_of_one_parse() {
        OpenCounter opens(path);
        ocio::create_config_from_file(path.c_str());
        return opens.take();
    }

    const std::string path = write_file("film.ocio", FILM);
};

TEST_F(ConfigReload, ParsesTheFileOnceWhenTheUserSwitchesToIt) {
    const int once = opens_of_one_parse();
    ASSERT_GT(once, 0);
    OpenCounter opens(path);
    use_file(path);
    EXPECT_EQ(opens.take(), once);
    EXPECT_THAT(spaces(), testing::ElementsAre("film"));
}

TEST_F(ConfigReload, ParsesTheFileOnceWhenThePathChanges) {
    const int once = opens_of_one_parse();
    OpenCounter opens(path);
    change_path(path);
    EXPECT_EQ(opens.take(), once);
    change_path(path);
    EXPECT_EQ(opens.take(), once) << "the next reload reads the disk again";
}

TEST_F(ConfigReload, ParsesTheFileOnceWhenPreferencesAreRead) {
    const int once = opens_of_one_parse();
    OpenCounter opens(path);
    want_file(path);
    EXPECT_TRUE(manager.load_config(nullptr));
    EXPECT_EQ(opens.take(), once);
}

TEST_F(ConfigReload, ParsesTheFileOfTheEnvironmentOnce) {
    const int once = opens_of_one_parse();
    ocio_variable.set(path);
    OpenCounter opens(path);
    use_file("");
    EXPECT_EQ(opens.take(), once);
    EXPECT_THAT(spaces(), testing::ElementsAre("film"));
}

TEST_F(ConfigReload, SharesAFailureAndReportsItForEachStepThatNeedsTheFile) {
    const std::string broken = write_file("broken.ocio", NO_CONFIGURATION);
    OpenCounter opens(broken);
    EXPECT_THROW(ocio::create_config_from_file(broken.c_str()), ocio::Exception);
    const int once = opens.take();
    use_file(broken);
    EXPECT_EQ(opens.take(), once);
    const std::vector<LogLine> lines = take_log();
    ASSERT_EQ(lines.size(), 10u) << "the check, each of the eight roles, and the fallback";
    EXPECT_THAT(lines[0], OcioExceptionAt(LOG_ERROR));
    for (std::size_t role = 1; role <= 8; ++role)
        EXPECT_THAT(lines[role], OcioExceptionAt(LOG_WARNING));
    EXPECT_EQ(lines[9].text, falling_back_from(broken));
}

/// A listener's action during a reload is a separate reload.
TEST_F(ConfigReload, FollowsAListenerThatWantsAnotherFileMeanwhile) {
    const std::string video = write_file("video.ocio", VIDEO);
    bool changed = false;
    events.on_event = [&](const std::string& event) {
        if (event == SCENE_LINEAR_EVENT && !changed) {
            changed = true;
            change_path(video);
        }
    };
    use_file(path);
    EXPECT_THAT(spaces(), testing::ElementsAre("video"));
}

TEST_F(ConfigReload, TakesAnEditedFileTheNextTime) {
    use_file(path);
    write_file("film.ocio", STUDIO);
    change_path(path);
    EXPECT_THAT(spaces(), testing::ElementsAre("studio"));
}

} // namespace
