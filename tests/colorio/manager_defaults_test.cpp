#include <cstdio>
#include <string>

#include "colorio/color_io_manager.h"
#include "host/of/of_enum.h"
#include "tests/colorio/library_differences.h"
#include "tests/colorio/manager_fixture.h"

using library_differences::expected;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const LogLine CREATING_LINEAR = {
    3, "Color Management: no default 'linear' color space has been found, creating one.\n"};

/// A started manager that can load a wanted configuration as the application's path event does.
class ManagerDefaults : public ManagerTest {
protected:
    ManagerDefaults() { take_log(); }

    void load(const std::string& config) {
        want_file(write_file("config.ocio", config));
        manager.update_file_config_path();
    }
    std::string scene_linear() const { return str(manager.get_ROLE_SCENE_LINEAR()); }
    std::vector<std::string> spaces() const { return strings(manager.get_color_space_names()); }
    std::string default_name() const { return str(manager.get_default_color_space_name()); }
    std::string default_name_for(const char* wanted) {
        app.default_color_space_name = wanted;
        manager.update_default_color_space_name();
        return default_name();
    }

    ColorIOManager& manager = start_manager();
};

using ManagerSceneLinear = ManagerDefaults;
using ManagerDefaultName = ManagerDefaults;

const std::vector<ViewText> LOG_VIEW = {{"Monitor", "Film", "log"}};

} // namespace

// The scene-linear space of a file

TEST_F(ManagerSceneLinear, IsTheSpaceOfTheRole) {
    log.set_level(3);
    load(config_text({{"", "log"}, {"Utility", "linear"}, {"Render", "rec709"}}, LOG_VIEW,
                     {{"scene_linear", "rec709"}}));
    EXPECT_EQ(scene_linear(), "rec709");
    EXPECT_THAT(spaces(), ElementsAre("log", "linear", "rec709"));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerSceneLinear, KeepsTheWholeNameOfASpaceWithABar) {
    load(config_text({{"", "log"}, {"", "Render|rec709"}}, LOG_VIEW, {{"scene_linear", "Render|rec709"}}));
    EXPECT_EQ(scene_linear(), "Render|rec709");
}

TEST_F(ManagerSceneLinear, MayBeASpaceOfThatNameInAnyCase) {
    load(config_text({{"", "log"}, {"", "linear"}, {"", "Scene_Linear"}}, LOG_VIEW));
    EXPECT_EQ(scene_linear(), "Scene_Linear");
}

TEST_F(ManagerSceneLinear, IsLinearWhenTheRoleIsMissing) {
    log.set_level(3);
    load(config_text({{"", "log"}, {"Utility", "linear"}}, LOG_VIEW));
    EXPECT_EQ(scene_linear(), "linear");
    EXPECT_THAT(spaces(), ElementsAre("log", "linear"));
    EXPECT_EQ(str(manager.get_color_space_name(1)), "Utility|linear");
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerSceneLinear, IsMadeWhenTheFileHasNone) {
    log.set_level(3);
    load(config_text({{"", "log"}}, LOG_VIEW));
    EXPECT_EQ(scene_linear(), "linear");
    EXPECT_THAT(spaces(), ElementsAre("log", "linear"));
    EXPECT_TRUE(manager.color_space_exists("linear"));
    EXPECT_THAT(take_log(), ElementsAre(CREATING_LINEAR));
}

TEST_F(ManagerSceneLinear, IsMadeInMemoryOnly) {
    const std::string text = config_text({{"", "log"}}, LOG_VIEW);
    load(text);
    EXPECT_EQ(folder.read("config.ocio"), text);
}

// A candidate's name is compared exactly, but OpenColorIO takes the new space for the same one.
TEST_F(ManagerSceneLinear, IsMadeInPlaceOfASpaceThatDiffersInCaseOnly) {
    log.set_level(3);
    load(config_text({{"", "Linear"}, {"", "log"}}, LOG_VIEW));
    EXPECT_EQ(scene_linear(), "linear");
    EXPECT_THAT(take_log(), ElementsAre(CREATING_LINEAR));
    EXPECT_THAT(spaces(), ElementsAre("linear", "log"));
}

TEST_F(ManagerSceneLinear, OfALenientFileIsItsDefaultSpace) {
    load(R"(ocio_profile_version: 1
search_path: .
strictparsing: false
roles: {default: log}
displays:
  Monitor:
    - !<View> {name: Film, colorspace: log}
colorspaces:
  - !<ColorSpace>
    name: linear
  - !<ColorSpace>
    name: log
)");
    EXPECT_EQ(scene_linear(), "log");
}

TEST_F(ManagerSceneLinear, ThatCannotBeMadeBecauseARoleHasItsNameIsNoReasonToFail) {
    load(config_text({{"", "log"}}, LOG_VIEW, {{"linear", "log"}}));
    EXPECT_FALSE(manager.is_using_tavelion_config());
    EXPECT_EQ(scene_linear(), "linear");
    EXPECT_EQ(spaces().at(0), "log");
}

TEST_F(ManagerSceneLinear, ThatCannotBeMadeBecauseAnAliasHasItsNameIsNoReasonToFail) {
    SKIP_WHERE_LISTED();
    load(R"(ocio_profile_version: 2
search_path: .
roles: {default: log}
displays:
  Monitor:
    - !<View> {name: Film, colorspace: log}
colorspaces:
  - !<ColorSpace>
    name: log
    aliases: [linear]
)");
    EXPECT_FALSE(manager.is_using_tavelion_config());
    EXPECT_EQ(scene_linear(), "linear");
    EXPECT_THAT(spaces(), ElementsAre("log"));
}

TEST_F(ManagerSceneLinear, IsReportedToListenersEachTimeItIsSettled) {
    EventRecorder events;
    manager.set_default_color_space_name(false);
    manager.set_default_color_space_name(true);
    EXPECT_THAT(events.take(), ElementsAre(SCENE_LINEAR_EVENT, SCENE_LINEAR_EVENT));
}

TEST_F(ManagerSceneLinear, IsAlreadySettledWhenListenersAreTold) {
    EventRecorder events;
    std::string seen;
    events.on_event = [&](const std::string&) { seen = scene_linear(); };
    want_file(write_file("config.ocio", config_text({{"", "log"}}, LOG_VIEW, {{"scene_linear", "log"}})));
    manager.update_file_config_path();
    EXPECT_EQ(seen, "log");
}

TEST_F(ManagerSceneLinear, IsReadFromTheApplicationsPathNotFromTheOneInForce) {
    load(config_text({{"", "log"}}, LOG_VIEW, {{"scene_linear", "log"}}));
    want_file(write_file("other.ocio",
                         config_text({{"", "log"}, {"", "other"}}, LOG_VIEW, {{"scene_linear", "other"}})));
    manager.set_default_color_space_name(true);
    EXPECT_EQ(scene_linear(), "other");
    EXPECT_THAT(spaces(), ElementsAre("log"));
}

TEST_F(ManagerSceneLinear, OfAFileThatVanishedIsMadeInTheConfigurationThatIsHeld) {
    load(config_text({{"", "log"}}, LOG_VIEW, {{"scene_linear", "log"}}));
    std::remove(path_of("config.ocio").c_str());
    log.set_level(3);
    manager.set_default_color_space_name(true);
    EXPECT_THAT(take_log(), ElementsAre(OcioExceptionAt(2), CREATING_LINEAR));
    EXPECT_EQ(scene_linear(), "linear");
}

TEST_F(ManagerSceneLinear, OfTheEnvironmentIsReadAgainFromTheVariable) {
    ocio_variable.set(
        write_file("studio.ocio", config_text({{"", "log"}}, LOG_VIEW, {{"scene_linear", "log"}})));
    want_file("");
    manager.use_file_config(true);
    ASSERT_EQ(scene_linear(), "log");
    ocio_variable.set(write_file(
        "other.ocio", config_text({{"", "log"}, {"", "other"}}, LOG_VIEW, {{"scene_linear", "other"}})));
    manager.set_default_color_space_name(true);
    EXPECT_EQ(scene_linear(), "other");
}

TEST_F(ManagerSceneLinear, OfAnEnvironmentThatIsGoneIsMadeInTheConfigurationThatIsHeld) {
    ocio_variable.set(
        write_file("studio.ocio", config_text({{"", "log"}}, LOG_VIEW, {{"scene_linear", "log"}})));
    want_file("");
    manager.use_file_config(true);
    ocio_variable.unset();
    take_log();
    log.set_level(3);
    manager.set_default_color_space_name(true);
    EXPECT_THAT(take_log(), ElementsAre(CREATING_LINEAR));
    EXPECT_EQ(scene_linear(), "linear");
}

TEST_F(ManagerSceneLinear, OfAnEnvironmentThatLostItsSpacesIsMadeInTheConfigurationThatIsHeld) {
    ocio_variable.set(
        write_file("studio.ocio", config_text({{"", "log"}}, LOG_VIEW, {{"scene_linear", "log"}})));
    want_file("");
    manager.use_file_config(true);
    ocio_variable.set(write_file("empty.ocio", expected("configuration without spaces")));
    take_log();
    log.set_level(3);
    manager.set_default_color_space_name(true);
    EXPECT_THAT(take_log(), ElementsAre(CREATING_LINEAR));
    EXPECT_EQ(scene_linear(), "linear");
}

TEST_F(ManagerSceneLinear, IsTheBuiltInOneWhenNoFileIsKnownGood) {
    want_file(write_file("config.ocio", config_text({{"", "log"}}, LOG_VIEW, {{"scene_linear", "log"}})));
    manager.set_default_color_space_name(true);
    EXPECT_EQ(scene_linear(), "linear");
    EXPECT_EQ(manager.get_tavelion_color_spaces().get_count(), 3u);
}

// The scene-linear space of the built-in configuration

TEST_F(ManagerSceneLinear, OfTheBuiltInConfigurationIsAddedOnce) {
    manager.set_default_color_space_name(false);
    manager.set_default_color_space_name(false);
    manager.use_file_config(false);
    EXPECT_EQ(manager.get_tavelion_color_spaces().get_count(), 3u);
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_THAT(strings(manager.get_display_view_names()),
                ElementsAre("Tavelion.sRGB", "Tavelion.Cineon", "Tavelion.linear"));
    EXPECT_EQ(scene_linear(), "linear");
}

TEST_F(ManagerSceneLinear, CanBeTheBuiltInOneWhileAFileIsActive) {
    load(config_text({{"", "log"}}, LOG_VIEW, {{"scene_linear", "log"}}));
    manager.set_default_color_space_name(false);
    EXPECT_EQ(scene_linear(), "linear");
    EXPECT_FALSE(manager.is_using_tavelion_config());
}

// The default color space

TEST_F(ManagerDefaultName, IsTheApplicationsWhenTheActiveConfigurationHasIt) {
    EXPECT_EQ(default_name_for("Cineon"), "Cineon");
    EXPECT_EQ(str(ColorIOManager::s_default_color_space_name), "Cineon");
}

TEST_F(ManagerDefaultName, IsSceneLinearOtherwise) {
    ColorIOManager::s_default_color_space_name = "Cineon";
    for (const char* unknown : {"unknown", "", "Use scene_linear", "Tavelion|Cineon", "Tavelion.Cineon"}) {
        EXPECT_EQ(default_name_for(unknown), "linear") << unknown;
        default_name_for("Cineon");
    }
}

TEST_F(ManagerDefaultName, IsSpelledAsTheApplicationSpellsIt) {
    EXPECT_EQ(default_name_for("CINEON"), "CINEON");
}

TEST_F(ManagerDefaultName, MayBeARoleOfTheActiveConfiguration) {
    load(config_text({{"", "log"}}, LOG_VIEW, {{"scene_linear", "log"}, {"data", "log"}}));
    EXPECT_EQ(default_name_for("data"), "data");
    EXPECT_EQ(default_name_for("scene_linear"), "scene_linear");
    EXPECT_EQ(default_name_for("texture_paint"), "log");
}

TEST_F(ManagerDefaultName, IsJudgedByTheActiveConfigurationNotByTheBuiltInOne) {
    load(config_text({{"", "log"}}, LOG_VIEW, {{"scene_linear", "log"}}));
    EXPECT_EQ(default_name_for("Cineon"), "log");
    EXPECT_EQ(default_name_for("log"), "log");
}

TEST_F(ManagerDefaultName, IsNotSettledBySwitchingConfigurationsAlone) {
    app.default_color_space_name = "Cineon";
    manager.use_file_config(false);
    EXPECT_EQ(default_name(), "linear");
}

TEST_F(ManagerDefaultName, BeforeStartUpIsTheSceneLinearNameThatIsNotSettledYet) {
    ColorIOManager unstarted(&app);
    unstarted.update_default_color_space_name();
    EXPECT_EQ(default_name(), str(unstarted.get_ROLE_SCENE_LINEAR()));
}

TEST_F(ManagerDefaultName, RaisesNothing) {
    EventRecorder events;
    default_name_for("Cineon");
    EXPECT_THAT(events.take(), IsEmpty());
}
