#include "colorio/ocio/config.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "tests/colorio/library_differences.h"
#include "tests/colorio/ocio/test_configs.h"
#include "tests/support/env_guard.h"

namespace {

using library_differences::expected;
using test_configs::ConfigText;
using test_configs::load;
using test_configs::refusal_of;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

std::vector<std::string> views_of(const ocio::ConstConfigRcPtr& config, const char* display) {
    std::vector<std::string> views;
    for (int i = 0; i < ocio::get_num_views(config, display); ++i)
        views.emplace_back(ocio::get_view(config, display, i));
    return views;
}

/// With blanks in between.
std::string joined(const std::vector<std::string>& names) {
    std::string all;
    for (const std::string& name : names)
        all += (all.empty() ? "" : " ") + name;
    return all;
}

TEST(ConfigDisplays, AreListedWithTheirViews) {
    const TempDir folder;
    ConfigText text;
    text.displays = "  one:\n    - !<View> {name: b, colorspace: srgb}\n"
                    "    - !<View> {name: a, colorspace: lin}\n"
                    "  another:\n    - !<View> {name: c, colorspace: lin}\n";
    const auto config = load(folder, text.str());
    ASSERT_EQ(ocio::get_num_displays(config), 2);
    EXPECT_STREQ(ocio::get_display(config, 0), expected("first display"));
    EXPECT_STREQ(ocio::get_display(config, 1), expected("second display"));
    EXPECT_STREQ(ocio::get_default_display(config), expected("first display"));
    EXPECT_THAT(views_of(config, "one"), ElementsAre("b", "a"));
    EXPECT_STREQ(ocio::get_default_view(config, "one"), "b");
    EXPECT_EQ(ocio::get_display_color_space_name(config, "one", "a"), "lin");
}

TEST(ConfigDisplays, FollowTheListsOfActiveOnes) {
    const TempDir folder;
    ConfigText text;
    text.settings = "active_displays: [two, one]\nactive_views: [b, a]\n";
    text.displays = "  one:\n    - !<View> {name: a, colorspace: srgb}\n"
                    "    - !<View> {name: b, colorspace: srgb}\n"
                    "    - !<View> {name: c, colorspace: srgb}\n"
                    "  two:\n    - !<View> {name: a, colorspace: srgb}\n"
                    "  three:\n    - !<View> {name: a, colorspace: srgb}\n";
    const auto config = load(folder, text.str());
    ASSERT_EQ(ocio::get_num_displays(config), 2);
    EXPECT_STREQ(ocio::get_default_display(config), "two");
    EXPECT_STREQ(ocio::get_default_view(config, "one"), "b");
    EXPECT_EQ(joined(views_of(config, "one")), expected("views under a list of active ones"));
}

TEST(ConfigDisplays, ViewsAreAddedAndReplaced) {
    const auto config = ocio::create_config();
    ocio::add_display(config, "d", "v", "first", "");
    ocio::add_display(config, "d", "w", "second", "");
    ocio::add_display(config, "d", "v", "third", "");
    EXPECT_THAT(views_of(config, "d"), ElementsAre("v", "w"));
    EXPECT_EQ(ocio::get_display_color_space_name(config, "d", "v"), "third");
    ocio::clear_displays(config);
    EXPECT_EQ(ocio::get_num_displays(config), 0);
}

TEST(ConfigDisplays, ViewsWithoutANameAreRefused) {
    const auto config = ocio::create_config();
    EXPECT_NE(refusal_of([&] { ocio::add_display(config, "d", "", "space", ""); }), "nothing thrown");
    EXPECT_NE(refusal_of([&] { ocio::add_display(config, "", "v", "space", ""); }), "nothing thrown");
}

TEST(ConfigDisplays, UnknownOrEmptyNamesHaveNoColorSpace) {
    const TempDir folder;
    const auto config = load(folder, ConfigText{}.str());
    EXPECT_EQ(ocio::get_display_color_space_name(config, "nowhere", "v"), "");
    EXPECT_EQ(ocio::get_display_color_space_name(config, "d", "nowhere"), "");
    EXPECT_EQ(ocio::get_display_color_space_name(config, "", "v"), "");
    EXPECT_EQ(ocio::get_display_color_space_name(config, "d", ""), "");
    EXPECT_EQ(ocio::get_num_views(config, "nowhere"), 0);
}

class SharedViews : public testing::Test {
protected:
    ocio::ConstConfigRcPtr load_shared() {
        ConfigText text;
        text.version = "2";
        text.settings =
            "shared_views:\n"
            "  - !<View> {name: own, view_transform: vt, display_colorspace: <USE_DISPLAY_NAME>}\n"
            "  - !<View> {name: fixed, colorspace: srgb}\n"
            "  - !<View> {name: alias, colorspace: glass}\n"
            "  - !<View> {name: role, colorspace: default}\n"
            "view_transforms:\n"
            "  - !<ViewTransform>\n    name: vt\n    from_scene_reference: !<MatrixTransform> {}\n"
            "display_colorspaces:\n  - !<ColorSpace>\n    name: monitor\n    aliases: [glass]\n";
        text.displays = "  monitor:\n    - !<View> {name: plain, colorspace: lin}\n"
                        "    - !<Views> [own, fixed, alias, role]\n";
        return load(folder_, text.str());
    }

private:
    TempDir folder_;
};

TEST_F(SharedViews, AreListedWithTheOthers) {
    SKIP_WHERE_LISTED();
    EXPECT_THAT(views_of(load_shared(), "monitor"), ElementsAre("plain", "own", "fixed", "alias", "role"));
}

TEST_F(SharedViews, AreListedAtOnceAsOneByOne) {
    SKIP_WHERE_LISTED();
    const auto config = load_shared();
    EXPECT_EQ(ocio::list_views(config, "monitor"), views_of(config, "monitor"));
    EXPECT_THAT(ocio::list_views(config, "nowhere"), IsEmpty());
}

TEST_F(SharedViews, ShowTheSameSpacesWhenTheNamesAreKnown) {
    SKIP_WHERE_LISTED();
    const auto config = load_shared();
    const auto own_names = ocio::list_own_names(config);
    EXPECT_THAT(own_names, Contains("monitor"));
    EXPECT_THAT(own_names, Not(Contains("glass"))) << "an alias";
    for (const char* view : {"plain", "own", "fixed", "alias", "role", "missing"})
        EXPECT_EQ(ocio::get_display_color_space_name(config, "monitor", view, own_names),
                  ocio::get_display_color_space_name(config, "monitor", view))
            << view;
}

/// A display with as many views as take another way through the library.
class ManyViews : public testing::Test {
protected:
    ocio::ConstConfigRcPtr load_with(const std::string& active_views) {
        ConfigText text;
        text.settings = active_views;
        text.displays = "  d:\n";
        for (int i = 0; i < 60; ++i)
            text.displays += "    - !<View> {name: v" + std::to_string(i) + ", colorspace: lin}\n";
        return load(folder_, text.str());
    }

    /// The list of all views, in another order that begins and ends alike.
    static std::string reordered() {
        std::string list = "active_views: [v0, v2, v1";
        for (int i = 3; i < 60; ++i)
            list += ", v" + std::to_string(i);
        return list + "]\n";
    }

private:
    TempDir folder_;
    EnvGuard variable_{"OCIO_ACTIVE_VIEWS"};
};

TEST_F(ManyViews, AreListedAtOnceAsOneByOne) {
    for (const std::string& active : {std::string(), std::string("active_views: [v7, v3]\n"), reordered()}) {
        const auto config = load_with(active);
        EXPECT_EQ(ocio::list_views(config, "d"), views_of(config, "d")) << active;
    }
    EXPECT_EQ(ocio::list_views(load_with(""), "d").size(), 60u);
}

TEST_F(ManyViews, FollowTheListOfTheEnvironment) {
    const EnvGuard variable("OCIO_ACTIVE_VIEWS", "v9, v4");
    const auto config = load_with("");
    EXPECT_EQ(ocio::list_views(config, "d"), views_of(config, "d"));
}

TEST_F(SharedViews, ShowTheirOwnSpaceOrTheOneNamedLikeTheDisplay) {
    SKIP_WHERE_LISTED();
    const auto config = load_shared();
    EXPECT_EQ(ocio::get_display_color_space_name(config, "monitor", "fixed"), "srgb");
    EXPECT_EQ(ocio::get_display_color_space_name(config, "monitor", "own"), "monitor");
    EXPECT_EQ(ocio::get_display_color_space_name(config, "monitor", "alias"), "monitor");
    EXPECT_EQ(ocio::get_display_color_space_name(config, "monitor", "role"), "default") << "as on 1.x";
}

TEST_F(SharedViews, ShowNothingWithoutADisplay) {
    SKIP_WHERE_LISTED();
    EXPECT_EQ(ocio::get_display_color_space_name(load_shared(), "", "fixed"), "");
}

} // namespace
