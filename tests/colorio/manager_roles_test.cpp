#include <string>

#include "colorio/color_io_manager.h"
#include "tests/colorio/library_differences.h"
#include "tests/colorio/manager_fixture.h"

using library_differences::expected;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using library_differences::expected;
using Manager = ColorIOManager;

/// A started manager whose application can want a configuration without making it active.
class ManagerRoles : public ManagerTest {
protected:
    ManagerRoles() { take_log(); }

    /// Settles all roles with a configuration that is wanted, while the built-in one stays active.
    void settle_with(const std::string& config) {
        want_file(write_file("wanted.ocio", config));
        settle();
    }
    void settle() {
        for (int role = 0; role < Manager::ROLE_COUNT; ++role)
            manager.set_role_color_space(role);
    }
    std::vector<std::string> roles() const {
        std::vector<std::string> spaces;
        for (int role = 0; role < Manager::ROLE_COUNT; ++role)
            spaces.push_back(str(manager.get_role_color_space(role)));
        return spaces;
    }
    std::string role(Manager::Role role) const { return str(manager.get_role_color_space(role)); }

    ColorIOManager& manager = start_manager();
};

const std::vector<ViewText> ONE_VIEW = {{"Monitor", "Film", "lin"}};

} // namespace

TEST_F(ManagerRoles, HaveTheNamesOfTheColorLibrary) {
    EXPECT_STREQ(Manager::get_role_name(Manager::COLOR_PICKING), "color_picking");
    EXPECT_STREQ(Manager::get_role_name(Manager::COLOR_TIMING), "color_timing");
    EXPECT_STREQ(Manager::get_role_name(Manager::COMPOSITING_LOG), "compositing_log");
    EXPECT_STREQ(Manager::get_role_name(Manager::DATA), "data");
    EXPECT_STREQ(Manager::get_role_name(Manager::DEFAULT), "default");
    EXPECT_STREQ(Manager::get_role_name(Manager::MATTE_PAINT), "matte_paint");
    EXPECT_STREQ(Manager::get_role_name(Manager::REFERENCE), "reference");
    EXPECT_STREQ(Manager::get_role_name(Manager::TEXTURE_PAINT), "texture_paint");
}

TEST_F(ManagerRoles, HaveTheirFixedNumbers) {
    EXPECT_EQ(static_cast<int>(Manager::COLOR_PICKING), 0);
    EXPECT_EQ(static_cast<int>(Manager::COLOR_TIMING), 1);
    EXPECT_EQ(static_cast<int>(Manager::COMPOSITING_LOG), 2);
    EXPECT_EQ(static_cast<int>(Manager::DATA), 3);
    EXPECT_EQ(static_cast<int>(Manager::DEFAULT), 4);
    EXPECT_EQ(static_cast<int>(Manager::MATTE_PAINT), 5);
    EXPECT_EQ(static_cast<int>(Manager::REFERENCE), 6);
    EXPECT_EQ(static_cast<int>(Manager::TEXTURE_PAINT), 7);
}

TEST_F(ManagerRoles, OtherNumbersAreUnknown) {
    for (int number : {8, 9, 1000, -1, -2147483647 - 1})
        EXPECT_STREQ(Manager::get_role_name(static_cast<Manager::Role>(number)), "ROLE_UNKNOWN") << number;
}

TEST_F(ManagerRoles, OfOtherNumbersAreNotSettled) {
    for (int number : {8, 9, 1000, -1, -2147483647 - 1})
        manager.set_role_color_space(number);
    EXPECT_THAT(roles(),
                ElementsAre("sRGB", "linear", "linear", "linear", "linear", "linear", "linear", "linear"));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerRoles, OfTheBuiltInConfigurationPickInSrgbAndWorkInTheDefaultSpace) {
    EXPECT_THAT(roles(),
                ElementsAre("sRGB", "linear", "linear", "linear", "linear", "linear", "linear", "linear"));
    EXPECT_EQ(str(manager.get_default_color_picking_space_name()), "sRGB");
}

TEST_F(ManagerRoles, WithoutProbeTheDefaultNameAtTheTimeIsTaken) {
    Manager::s_default_color_space_name = "Cineon";
    settle();
    EXPECT_THAT(roles(),
                ElementsAre("sRGB", "Cineon", "Cineon", "Cineon", "Cineon", "Cineon", "Cineon", "Cineon"));
}

TEST_F(ManagerRoles, AreSettledOneByOne) {
    Manager::s_default_color_space_name = "Cineon";
    manager.set_role_color_space(Manager::DATA);
    EXPECT_THAT(roles(),
                ElementsAre("sRGB", "linear", "linear", "Cineon", "linear", "linear", "linear", "linear"));
}

TEST_F(ManagerRoles, WithoutProbePickingInSrgbNeedsTheActiveConfigurationToHaveIt) {
    app.color_space_file_path = write_file("config.ocio", config_text({{"", "lin"}}, ONE_VIEW)).c_str();
    manager.use_file_config(true); // The application itself does not want the file: no probe.
    ASSERT_FALSE(manager.is_using_tavelion_config());
    EXPECT_EQ(role(Manager::COLOR_PICKING), "linear");

    app.color_space_file_path =
        write_file("srgb.ocio", config_text({{"", "lin"}, {"Display", "sRGB"}}, ONE_VIEW)).c_str();
    manager.use_file_config(true);
    EXPECT_EQ(role(Manager::COLOR_PICKING), "sRGB");
}

TEST_F(ManagerRoles, AreReadFromTheWantedFile) {
    settle_with(config_text(
        {{"", "lin"}, {"", "a"}, {"", "b"}, {"", "c"}, {"", "d"}, {"", "e"}, {"", "f"}, {"", "g"}, {"", "h"}},
        ONE_VIEW,
        {{"color_picking", "a"},
         {"color_timing", "b"},
         {"compositing_log", "c"},
         {"data", "d"},
         {"default", "e"},
         {"matte_paint", "f"},
         {"reference", "g"},
         {"texture_paint", "h"}}));
    EXPECT_THAT(roles(), ElementsAre("a", "b", "c", "d", "e", "f", "g", "h"));
    EXPECT_TRUE(manager.is_using_tavelion_config());
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerRoles, OfASpaceWhoseNameHoldsABarKeepWhatFollowsTheFirst) {
    settle_with(config_text({{"Camera", "lin"}, {"", "Film|log|v2"}}, ONE_VIEW,
                            {{"color_picking", "lin"}, {"compositing_log", "Film|log|v2"}}));
    EXPECT_EQ(role(Manager::COLOR_PICKING), "lin");
    EXPECT_EQ(role(Manager::COMPOSITING_LOG), "log|v2");
}

TEST_F(ManagerRoles, ThatTheFileLacksFallBackToTheDefaultNameAndPickingToItsSrgb) {
    Manager::s_default_color_space_name = "Cineon";
    settle_with(config_text({{"", "lin"}, {"Display", "sRGB"}}, ONE_VIEW, {{"data", "lin"}}));
    EXPECT_THAT(roles(),
                ElementsAre("sRGB", "Cineon", "Cineon", "lin", "Cineon", "Cineon", "Cineon", "Cineon"));
}

TEST_F(ManagerRoles, PickingTakesTheFilesOwnSpellingOfSrgb) {
    settle_with(config_text({{"", "lin"}, {"", "SRGB"}}, ONE_VIEW));
    EXPECT_EQ(role(Manager::COLOR_PICKING), "SRGB");
}

// The active configuration has an sRGB space, the wanted one decides.
TEST_F(ManagerRoles, PickingWithoutRoleAndSrgbInTheFileFallsBackToTheDefaultName) {
    settle_with(config_text({{"", "lin"}}, ONE_VIEW));
    EXPECT_EQ(role(Manager::COLOR_PICKING), "linear");
}

TEST_F(ManagerRoles, MayBeFoundAsSpacesOfThatName) {
    settle_with(config_text({{"", "lin"}, {"Utility", "data"}, {"Paint", "Matte_Paint"}}, ONE_VIEW));
    EXPECT_EQ(role(Manager::DATA), "data");
    EXPECT_EQ(role(Manager::MATTE_PAINT), "Matte_Paint");
}

TEST_F(ManagerRoles, AreNotReadFromAFileThatIsNotWanted) {
    app.color_space_file_path =
        write_file("wanted.ocio", config_text({{"", "lin"}}, ONE_VIEW, {{"data", "lin"}})).c_str();
    settle();
    EXPECT_EQ(role(Manager::DATA), "linear");
}

TEST_F(ManagerRoles, FollowASwitchToTheFileAndBack) {
    want_file(write_file("wanted.ocio",
                         config_text({{"", "lin"}}, ONE_VIEW, {{"data", "lin"}, {"color_picking", "lin"}})));
    manager.use_file_config(true);
    EXPECT_EQ(role(Manager::DATA), "lin");
    EXPECT_EQ(role(Manager::COLOR_PICKING), "lin");

    app.use_color_space_file = false;
    manager.use_file_config(false);
    EXPECT_EQ(role(Manager::DATA), "linear");
    EXPECT_EQ(role(Manager::COLOR_PICKING), "sRGB");
}

TEST_F(ManagerRoles, FollowAChangeOfThePath) {
    want_file(write_file("wanted.ocio", config_text({{"", "lin"}}, ONE_VIEW, {{"data", "lin"}})));
    manager.update_file_config_path();
    EXPECT_EQ(role(Manager::DATA), "lin");

    app.color_space_file_path = path_of("missing.ocio").c_str();
    manager.update_file_config_path();
    EXPECT_EQ(role(Manager::DATA), "linear");
    EXPECT_EQ(role(Manager::COLOR_PICKING), "sRGB");
}

// The look-up of the file settles them, though the fall-back itself leaves lists and events alone.
TEST_F(ManagerRoles, AreSettledEvenWhenTheSwitchFallsBack) {
    Manager::s_default_color_space_name = "Cineon";
    want_file(path_of("missing.ocio"));
    manager.use_file_config(true);
    EXPECT_EQ(role(Manager::DATA), "Cineon");
}

TEST_F(ManagerRoles, StayWhenAPathChangesThatIsNotWanted) {
    Manager::s_default_color_space_name = "Cineon";
    manager.update_file_config_path();
    EXPECT_EQ(role(Manager::DATA), "linear");
}

TEST_F(ManagerRoles, AreReadFromTheEnvironmentWhenTheWantedFileIsMissing) {
    ocio_variable.set(write_file("studio.ocio", config_text({{"", "lin"}}, ONE_VIEW, {{"data", "lin"}})));
    want_file(path_of("missing.ocio"));
    settle();
    EXPECT_EQ(role(Manager::DATA), "lin");
    EXPECT_EQ(role(Manager::COLOR_PICKING), "linear");
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerRoles, AreNotReadFromTheEnvironmentWhileTheFileIsNotWanted) {
    ocio_variable.set(write_file("studio.ocio", config_text({{"", "lin"}}, ONE_VIEW, {{"data", "lin"}})));
    settle();
    EXPECT_EQ(role(Manager::DATA), "linear");
}

TEST_F(ManagerRoles, OfAFileThatCannotBeReadAreThoseOfTheActiveConfigurationAndAWarning) {
    want_file(write_file("wanted.ocio", "this: [is no configuration"));
    manager.set_role_color_space(Manager::COLOR_PICKING);
    EXPECT_THAT(take_log(), ElementsAre(OcioExceptionAt(2)));
    EXPECT_EQ(role(Manager::COLOR_PICKING), "sRGB");
    manager.set_role_color_space(Manager::DATA);
    EXPECT_THAT(take_log(), ElementsAre(OcioExceptionAt(2)));
    EXPECT_EQ(role(Manager::DATA), "linear");
}

TEST_F(ManagerRoles, OfAnEnvironmentThatCannotBeReadAreThoseOfTheActiveConfigurationAndAWarning) {
    ocio_variable.set(path_of("nowhere.ocio"));
    want_file("");
    manager.set_role_color_space(Manager::COLOR_PICKING);
    EXPECT_THAT(take_log(), ElementsAre(OcioExceptionAt(2)));
    EXPECT_EQ(role(Manager::COLOR_PICKING), "sRGB");
}

// A configuration of the environment without spaces counts as none, one of a file does not.
TEST_F(ManagerRoles, OfAnEnvironmentWithoutSpacesAreThoseOfTheActiveConfiguration) {
    ocio_variable.set(write_file("empty.ocio", expected("configuration without spaces")));
    want_file("");
    settle();
    EXPECT_EQ(role(Manager::COLOR_PICKING), "sRGB");
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerRoles, OfAFileWithoutSpacesAreTheDefaultName) {
    settle_with(expected("configuration without spaces"));
    EXPECT_EQ(role(Manager::COLOR_PICKING), "linear");
    EXPECT_THAT(take_log(), IsEmpty());
}

// The probe is only asked for names, so what the check would refuse does not matter.
TEST_F(ManagerRoles, AreReadFromAFileThatFailsTheCheck) {
    settle_with(config_text({{"", "lin"}}, ONE_VIEW, {{"data", "lin"}, {"reference", "nowhere"}}));
    EXPECT_EQ(role(Manager::DATA), "lin");
    EXPECT_EQ(role(Manager::REFERENCE), "linear");
}

TEST_F(ManagerRoles, OfALenientFileAreAllItsDefaultSpace) {
    settle_with(R"(ocio_profile_version: 1
search_path: .
strictparsing: false
roles: {default: lin, data: raw}
displays:
  Monitor:
    - !<View> {name: Film, colorspace: lin}
colorspaces:
  - !<ColorSpace>
    name: lin
  - !<ColorSpace>
    name: raw
)");
    EXPECT_THAT(roles(), ElementsAre("lin", "lin", "lin", "raw", "lin", "lin", "lin", "lin"));
}
