#include "colorio/ocio/config.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "colorio/ocio/color_space.h"
#include "tests/colorio/library_differences.h"
#include "tests/colorio/ocio/test_configs.h"
#include "tests/support/env_guard.h"

namespace {

using test_configs::ConfigText;
using test_configs::load;
using test_configs::make_space;
using test_configs::refusal_of;
using testing::ElementsAre;
using testing::HasSubstr;

std::vector<std::string> names_of(const ocio::ConstConfigRcPtr& config) {
    std::vector<std::string> names;
    for (int i = 0; i < ocio::get_num_color_spaces(config); ++i)
        names.emplace_back(ocio::get_color_space_name_by_index(config, i));
    return names;
}

TEST(Config, ANewOneIsEmptyAndOfVersionOne) {
    const auto config = ocio::create_config();
    EXPECT_EQ(ocio::get_major_version(config), 1u);
    EXPECT_EQ(ocio::get_num_color_spaces(config), 0);
    EXPECT_EQ(ocio::get_num_displays(config), 0);
    EXPECT_STREQ(config->getSearchPath(), ".");
}

TEST(Config, TheWorkingFolderIsKept) {
    const auto config = ocio::create_config();
    ocio::set_working_dir(config, "/some/where");
    EXPECT_STREQ(ocio::get_working_dir(config), "/some/where");
}

TEST(Config, AMissingFileIsNamedInTheMessage) {
    EXPECT_THAT(refusal_of([] { ocio::create_config_from_file("/nowhere/at-all.ocio"); }),
                HasSubstr("/nowhere/at-all.ocio"));
}

TEST(Config, AVersionBeyondTheLibraryIsReportedAsSuch) {
    const TempDir folder;
    ConfigText text;
    text.version = "2.99";
    const std::string path = folder.file("config.ocio");
    EXPECT_EQ(refusal_of([&] { load(folder, text.str()); }),
              path + " is an OCIO 2.99 config and needs a newer OpenColorIO than " + ocio::get_version());
    text.version = "\"3\"  # quoted";
    EXPECT_EQ(refusal_of([&] { load(folder, text.str()); }),
              path + " is an OCIO 3.0 config and needs a newer OpenColorIO than " + ocio::get_version());
}

// The library reads archives from 2.2 on.
TEST(Config, AnArchiveThatTheLibraryCannotOpenIsReportedAsSuch) {
    const std::string version = ocio::get_version();
    if (version.substr(0, 2) != "1." && version.substr(0, 4) != "2.0." && version.substr(0, 4) != "2.1.")
        GTEST_SKIP() << "OpenColorIO " << version << " reads archives";
    const TempDir folder;
    const std::string path = folder.write("show.ocioz", std::string("PK\x03\x04\x14\0\0\0", 8));
    EXPECT_EQ(refusal_of([&] { ocio::create_config_from_file(path.c_str()); }),
              path + " is an archived OCIO config (.ocioz) and needs a newer OpenColorIO than " + version +
                  ": 2.2 or later. Extract it, and use its config.ocio");
}

TEST(Config, OtherFailuresAreTheLibrarysOwn) {
    const TempDir folder;
    EXPECT_THAT(refusal_of([&] { load(folder, "ocio_profile_version: {}"); }), HasSubstr("config.ocio"));
    EXPECT_THAT(refusal_of([&] { load(folder, ""); }), HasSubstr("config.ocio"));
    EXPECT_THAT(refusal_of([&] { load(folder, "ocio_profile_version: 1\nroles: [\n"); }),
                HasSubstr("config.ocio"));
}

TEST(Config, DeeplyNestedTextIsRefused) {
    const TempDir folder;
    EXPECT_NE(refusal_of([&] { load(folder, "ocio_profile_version: " + std::string(100000, '[')); }),
              "nothing thrown");
}

TEST(Config, AnImpossibleFileRuleIsRefused) {
    SKIP_WHERE_LISTED();
    const TempDir folder;
    ConfigText text;
    text.version = "2";
    text.settings = "file_rules:\n  - !<Rule> {name: x, regex: \"(((((\", colorspace: lin}\n"
                    "  - !<Rule> {name: Default, colorspace: lin}\n";
    EXPECT_NE(refusal_of([&] { load(folder, text.str()); }), "nothing thrown");
}

TEST(Config, TheEnvironmentNamesAConfiguration) {
    const TempDir folder;
    const EnvGuard ocio_variable("OCIO", folder.write("environment.ocio", ConfigText{}.str()));
    EXPECT_THAT(names_of(ocio::create_config_from_env()), ElementsAre("lin", "srgb"));
}

TEST(Config, AnEmptyEnvironmentGivesTheRawConfiguration) {
    const EnvGuard ocio_variable("OCIO");
    EXPECT_THAT(names_of(ocio::create_config_from_env()), ElementsAre("raw"));
}

TEST(Config, ANewerConfigurationInTheEnvironmentIsReportedAsSuch) {
    const TempDir folder;
    ConfigText text;
    text.version = "2.99";
    const EnvGuard ocio_variable("OCIO", folder.write("newer.ocio", text.str()));
    EXPECT_THAT(refusal_of([] { ocio::create_config_from_env(); }),
                HasSubstr("newer.ocio is an OCIO 2.99 config"));
}

TEST(Config, AnEditableCopyLeavesTheOriginalAlone) {
    const TempDir folder;
    const auto original = load(folder, ConfigText{}.str());
    const auto copy = ocio::create_editable_copy(original);
    ocio::add_color_space(copy, make_space("third"));
    EXPECT_THAT(names_of(copy), ElementsAre("lin", "srgb", "third"));
    EXPECT_THAT(names_of(original), ElementsAre("lin", "srgb"));
    EXPECT_STREQ(ocio::get_working_dir(copy), folder.get_path().c_str());
}

TEST(ConfigSpaces, AreFoundWhateverTheCase) {
    const TempDir folder;
    const auto config = load(folder, ConfigText{}.str());
    ASSERT_TRUE(ocio::get_color_space(config, "SRGB"));
    EXPECT_STREQ(ocio::get_name(ocio::get_color_space(config, "SRGB")), "srgb");
}

TEST(ConfigSpaces, AreFoundByRole) {
    const TempDir folder;
    ConfigText text;
    text.roles = "  default: lin\n  color_timing: srgb\n";
    const auto config = load(folder, text.str());
    ASSERT_TRUE(ocio::get_color_space(config, ocio::ROLE_COLOR_TIMING));
    EXPECT_STREQ(ocio::get_name(ocio::get_color_space(config, ocio::ROLE_COLOR_TIMING)), "srgb");
}

TEST(ConfigSpaces, UnknownNamesAreNullUnderStrictParsing) {
    const TempDir folder;
    const auto config = load(folder, ConfigText{}.str());
    EXPECT_FALSE(ocio::get_color_space(config, "nowhere"));
    EXPECT_FALSE(ocio::get_color_space(config, ""));
}

TEST(ConfigSpaces, UnknownNamesAreTheDefaultRoleUnderLaxParsing) {
    const TempDir folder;
    ConfigText text;
    text.settings = "strictparsing: false\n";
    text.roles = "  default: srgb\n";
    const auto config = load(folder, text.str());
    for (const char* name : {"nowhere", ""}) {
        ASSERT_TRUE(ocio::get_color_space(config, name)) << name;
        EXPECT_STREQ(ocio::get_name(ocio::get_color_space(config, name)), "srgb") << name;
    }
}

TEST(ConfigSpaces, LaxParsingWithoutADefaultRoleFindsNothing) {
    const TempDir folder;
    ConfigText text;
    text.settings = "strictparsing: false\n";
    text.roles = "  color_timing: srgb\n";
    EXPECT_FALSE(ocio::get_color_space(load(folder, text.str()), "nowhere"));
}

TEST(ConfigSpaces, OneOfTheSameNameIsReplacedInItsPlace) {
    const auto config = ocio::create_config();
    for (const char* name : {"first", "second", "third"})
        ocio::add_color_space(config, make_space(name));
    const auto replacement = make_space("SECOND");
    ocio::set_family(replacement, "new");
    ocio::add_color_space(config, replacement);
    EXPECT_THAT(names_of(config), ElementsAre("first", "SECOND", "third"));
    EXPECT_STREQ(ocio::get_family(ocio::get_color_space(config, "second")), "new");
}

TEST(ConfigSpaces, TheConfigurationKeepsItsOwnCopy) {
    const auto config = ocio::create_config();
    const auto space = make_space("space");
    ocio::add_color_space(config, space);
    ocio::set_family(space, "changed later");
    EXPECT_STREQ(ocio::get_family(ocio::get_color_space(config, "space")), "");
}

TEST(ConfigSpaces, TheNameOfARoleIsRefused) {
    const TempDir folder;
    ConfigText text;
    text.roles = "  default: lin\n  linear: lin\n";
    const auto config = ocio::create_editable_copy(load(folder, text.str()));
    EXPECT_THAT(refusal_of([&] { ocio::add_color_space(config, make_space("linear")); }), HasSubstr("role"));
    EXPECT_THAT(names_of(config), ElementsAre("lin", "srgb"));
}

TEST(ConfigSpaces, CanBeCleared) {
    const auto config = ocio::create_config();
    ocio::add_color_space(config, make_space("space"));
    ocio::clear_color_spaces(config);
    EXPECT_EQ(ocio::get_num_color_spaces(config), 0);
}

TEST(ConfigSpaces, VersionOnePublishesWhatTheEnvironmentWouldHide) {
    const TempDir folder;
    const EnvGuard inactive("OCIO_INACTIVE_COLORSPACES", "srgb");
    EXPECT_THAT(names_of(load(folder, ConfigText{}.str())), ElementsAre("lin", "srgb"));
}

TEST(ConfigSpaces, VersionTwoPublishesTheActiveOnes) {
    SKIP_WHERE_LISTED();
    const TempDir folder;
    ConfigText text;
    text.version = "2";
    text.settings = "inactive_colorspaces: [srgb]\n"
                    "display_colorspaces:\n  - !<ColorSpace>\n    name: monitor\n";
    const auto config = load(folder, text.str());
    EXPECT_THAT(names_of(config), ElementsAre("monitor", "lin"));
    EXPECT_TRUE(ocio::get_color_space(config, "srgb")) << "inactive ones are still found by name";
}

TEST(ConfigRoles, AnswerTheNameOfTheirSpace) {
    const TempDir folder;
    const auto config = load(folder, ConfigText{}.str());
    EXPECT_EQ(ocio::get_role_color_space(config, ocio::ROLE_DEFAULT), "lin");
    EXPECT_EQ(ocio::get_role_color_space(config, "DEFAULT"), "lin");
    EXPECT_EQ(ocio::get_role_color_space(config, ocio::ROLE_SCENE_LINEAR), "");
}

} // namespace
