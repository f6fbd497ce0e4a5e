#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/colorio/library_differences.h"
#include "tests/colorio/ocio/test_configs.h"

namespace {

using library_differences::expected;
using test_configs::ConfigText;
using test_configs::load;
using test_configs::refusal_of;
using testing::EndsWith;
using testing::HasSubstr;

constexpr const char* LOOK = "looks:\n  - !<Look> {name: warm, process_space: lin, "
                             "transform: !<CDLTransform> {slope: [1.2, 1, 0.9]}}\n";

class SanityCheck : public testing::Test {
protected:
    std::string refusal(const ConfigText& text) {
        const auto config = load(folder_, text.str());
        return refusal_of([&] { ocio::sanity_check(config); });
    }

    std::string refusal_of_space_with(const std::string& transform) {
        ConfigText text;
        text.spaces = "  - !<ColorSpace>\n    name: x\n    to_reference: " + transform + "\n";
        return refusal(text);
    }

    std::string refusal_of_view(const std::string& view) {
        ConfigText text;
        text.settings = LOOK;
        text.displays = "  d:\n    - !<View> {" + view + "}\n";
        return refusal(text);
    }

    const std::string accepted_ = "nothing thrown";
    TempDir folder_;
};

TEST_F(SanityCheck, AcceptsASmallVersionOneConfiguration) {
    EXPECT_EQ(refusal({}), accepted_);
}

TEST_F(SanityCheck, NeedsNoRoles) {
    ConfigText text;
    text.roles = "  {}\n";
    EXPECT_EQ(refusal(text), accepted_);
}

TEST_F(SanityCheck, ANewConfigurationHasNoDisplays) {
    EXPECT_EQ(refusal_of([] { ocio::sanity_check(ocio::create_config()); }),
              "the config is invalid: it has no displays");
}

TEST_F(SanityCheck, RefusesAConfigurationWithoutDisplays) {
    ConfigText text;
    text.displays = "  {}\n";
    EXPECT_EQ(refusal(text), "the config is invalid: it has no displays");
}

TEST_F(SanityCheck, AcceptsACreatedConfigurationWithAViewOfItsSpace) {
    const auto config = test_configs::create_built_in_like(folder_);
    EXPECT_EQ(refusal_of([&] { ocio::sanity_check(config); }), accepted_);
}

TEST_F(SanityCheck, RolesPointAtSpaces) {
    ConfigText text;
    text.roles = "  default: LIN\n";
    EXPECT_EQ(refusal(text), accepted_);
    text.roles = "  default: nowhere\n";
    EXPECT_THAT(refusal(text), EndsWith(expected("a role of an unknown space")));
    text.roles = "  default: ''\n";
    EXPECT_THAT(refusal(text), EndsWith(expected("a role of no space")));
}

TEST_F(SanityCheck, ARoleDoesNotPointAtARole) {
    ConfigText text;
    text.roles = "  default: lin\n  reference: default\n";
    EXPECT_THAT(refusal(text), EndsWith(expected("a role of a role")));
}

TEST_F(SanityCheck, ARoleIsNotNamedLikeASpace) {
    ConfigText text;
    text.roles = "  srgb: lin\n";
    // Some versions of the library refuse to load it.
    EXPECT_THAT(refusal_of([&] { ocio::sanity_check(load(folder_, text.str())); }), HasSubstr("srgb"));
}

TEST_F(SanityCheck, TwoSpacesOfOneNameDoNotEvenLoad) {
    ConfigText text;
    text.spaces = "  - !<ColorSpace>\n    name: srgb\n";
    EXPECT_THAT(refusal_of([&] { load(folder_, text.str()); }), HasSubstr("srgb"));
}

TEST_F(SanityCheck, ViewsShowSpaces) {
    EXPECT_EQ(refusal_of_view("name: v, colorspace: SRGB"), accepted_);
    EXPECT_THAT(refusal_of_view("name: v, colorspace: nowhere"),
                EndsWith("view 'v' of display 'd' refers to an unknown color space, 'nowhere'"));
    EXPECT_THAT(refusal_of_view("name: v, colorspace: default"),
                EndsWith("view 'v' of display 'd' refers to an unknown color space, 'default'"));
}

TEST_F(SanityCheck, ViewsKnownToShowTheSpacesOfTheirNamesNeedThem) {
    const auto refusal_of_known = [](const ocio::ConfigRcPtr& config) {
        return refusal_of([&] { ocio::sanity_check(config, ocio::KnownViews::SHOW_SPACES_OF_THEIR_NAMES); });
    };
    const auto config = test_configs::create_built_in_like(folder_);
    const std::string space = ocio::get_color_space_name_by_index(config, 0);
    ocio::clear_displays(config);
    EXPECT_THAT(refusal_of_known(config), EndsWith("it has no displays"));
    ocio::add_display(config, "d", space.c_str(), space.c_str(), "");
    EXPECT_EQ(refusal_of_known(config), accepted_);
    ocio::add_display(config, "d", "lost", "lost", "");
    EXPECT_THAT(refusal_of_known(config),
                EndsWith("view 'lost' of display 'd' refers to an unknown color space, 'lost'"));
}

TEST_F(SanityCheck, HiddenViewsAreJudgedToo) {
    ConfigText text;
    text.settings = "active_displays: [d]\nactive_views: [v]\n";
    text.displays = "  d:\n    - !<View> {name: v, colorspace: srgb}\n"
                    "    - !<View> {name: hidden, colorspace: nowhere}\n";
    EXPECT_THAT(refusal(text), HasSubstr("view 'hidden' of display 'd'"));
    text.displays = "  d:\n    - !<View> {name: v, colorspace: srgb}\n"
                    "  e:\n    - !<View> {name: v, colorspace: nowhere}\n";
    EXPECT_THAT(refusal(text), HasSubstr("view 'v' of display 'e'"));
}

TEST_F(SanityCheck, ViewsUseKnownLooks) {
    EXPECT_EQ(refusal_of_view("name: v, colorspace: srgb, looks: '+Warm, -warm | warm'"), accepted_);
    EXPECT_THAT(refusal_of_view("name: v, colorspace: srgb, looks: '+warm, -cold | warm'"),
                EndsWith("view 'v' of display 'd' refers to an unknown look, 'cold'"));
}

TEST_F(SanityCheck, LooksNameAnExistingProcessSpace) {
    ConfigText text;
    text.settings = LOOK;
    EXPECT_EQ(refusal(text), accepted_);
    text.settings = "looks:\n  - !<Look> {name: warm, process_space: nowhere}\n";
    EXPECT_THAT(refusal(text), EndsWith("look 'warm' refers to an unknown color space, 'nowhere'"));
    text.settings = "looks:\n  - !<Look> {name: warm, process_space: default}\n";
    EXPECT_THAT(refusal(text), EndsWith("look 'warm' refers to an unknown color space, 'default'"));
    text.settings = "looks:\n  - !<Look> {name: warm}\n";
    EXPECT_THAT(refusal(text), EndsWith("look 'warm' names no color space"));
}

TEST_F(SanityCheck, LaxParsingExcusesNoUnknownSpace) {
    ConfigText text;
    text.settings = "strictparsing: false\n";
    EXPECT_EQ(refusal(text), accepted_);
    text.roles = "  default: lin\n  reference: nowhere\n";
    EXPECT_THAT(refusal(text), HasSubstr("'nowhere'"));
}

TEST_F(SanityCheck, VersionOneMayNameAbsentActiveDisplays) {
    ConfigText text;
    text.settings = "active_displays: [absent, d]\nactive_views: [absent, v]\n";
    EXPECT_EQ(refusal(text), accepted_);
}

TEST_F(SanityCheck, VersionOneNeedsNoSearchPathForItsFiles) {
    EXPECT_EQ(refusal_of_space_with("!<FileTransform> {src: table.spi1d}"), accepted_);
}

TEST_F(SanityCheck, VersionOneMayHoldNegativeCorrections) {
    EXPECT_EQ(refusal_of_space_with("!<CDLTransform> {slope: [-1, 1, 1], sat: -1}"), accepted_);
}

TEST_F(SanityCheck, VersionOneMayUseUnknownVariables) {
    ConfigText text;
    text.settings = "search_path: $QB_NO_SUCH_VARIABLE/luts\n";
    EXPECT_EQ(refusal(text), accepted_);
}

TEST_F(SanityCheck, VersionOneMayReferToUnknownSpacesInTransforms) {
    EXPECT_EQ(refusal_of_space_with("!<ColorSpaceTransform> {src: nowhere, dst: lin}"), accepted_);
}

TEST_F(SanityCheck, VersionTwoIsJudgedByTheLibrary) {
    SKIP_WHERE_LISTED();
    ConfigText text;
    text.version = "2";
    EXPECT_EQ(refusal(text), accepted_);
    text.settings = "active_displays: [absent]\n";
    EXPECT_THAT(refusal(text), HasSubstr("absent"));
}

TEST_F(SanityCheck, VersionTwoNeedsNoSearchPathEither) {
    SKIP_WHERE_LISTED();
    ConfigText text;
    text.version = "2";
    text.spaces = "  - !<ColorSpace>\n    name: x\n    to_scene_reference: "
                  "!<FileTransform> {src: table.spi1d}\n";
    EXPECT_EQ(refusal(text), accepted_);
}

TEST_F(SanityCheck, AFailedConfigurationGivesItsReasonEveryTime) {
    SKIP_WHERE_LISTED();
    ConfigText text;
    text.version = "2";
    text.spaces = "  - !<ColorSpace>\n    name: x\n    to_scene_reference: !<FileTransform> {src: ''}\n";
    const auto config = load(folder_, text.str());
    const auto check = [&] { ocio::sanity_check(config); };
    const std::string first = refusal_of(check);
    EXPECT_THAT(first, HasSubstr("empty file path"));
    EXPECT_EQ(refusal_of(check), first);
    EXPECT_EQ(refusal_of(check), first);
}

} // namespace
