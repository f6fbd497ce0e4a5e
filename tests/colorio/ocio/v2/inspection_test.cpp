#include "colorio/ocio/inspection.h"

#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/colorio/ocio/test_configs.h"
#include "tests/support/env_guard.h"

namespace {

using test_configs::refusal_of;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr char SETTINGS[] = R"(inactive_colorspaces: [old, secret]
shared_views:
  - !<View> {name: film, view_transform: filmic, display_colorspace: <USE_DISPLAY_NAME>, looks: warm, description: soft}
view_transforms:
  - !<ViewTransform>
    name: filmic
    from_scene_reference: !<MatrixTransform> {}
  - !<ViewTransform>
    name: lost
    from_scene_reference: !<MatrixTransform> {}
    to_scene_reference: !<FileTransform> {src: nowhere.spi1d}
looks:
  - !<Look> {name: warm, process_space: lin}
display_colorspaces:
  - !<ColorSpace>
    name: monitor
    aliases: [screen, glass]
    family: shown
    categories: [file-io, basic]
    encoding: sdr-video
named_transforms:
  - !<NamedTransform>
    name: curve
    aliases: [bow]
    encoding: log
    inverse_transform: !<ExponentTransform> {value: 2.2}
  - !<NamedTransform>
    name: secret
    transform: !<ExponentTransform> {value: 2}
)";

class InspectionOfVersionTwo : public testing::Test {
protected:
    ocio::ConstConfigRcPtr load() {
        test_configs::ConfigText text;
        text.version = "2";
        text.settings = SETTINGS;
        text.displays = "  monitor:\n"
                        "    - !<View> {name: plain, colorspace: screen}\n"
                        "    - !<View> {name: bent, colorspace: bow}\n"
                        "    - !<View> {name: aged, colorspace: old}\n"
                        "    - !<Views> [film]\n";
        text.spaces = "  - !<ColorSpace>\n    name: old\n    family: past\n";
        return test_configs::load(folder_, text.str());
    }

private:
    TempDir folder_;
};

TEST_F(InspectionOfVersionTwo, DescribesSpaces) {
    std::map<std::string, ocio::SpaceFacts> spaces;
    for (const ocio::SpaceFacts& space : ocio::describe_spaces(load()))
        spaces[space.name] = space;
    ASSERT_EQ(spaces.size(), 4u);
    const ocio::SpaceFacts& monitor = spaces.at("monitor");
    EXPECT_TRUE(monitor.is_display_referred);
    EXPECT_TRUE(monitor.is_active);
    EXPECT_EQ(monitor.encoding, "sdr-video");
    EXPECT_THAT(monitor.aliases, ElementsAre("screen", "glass"));
    EXPECT_THAT(monitor.categories, ElementsAre("file-io", "basic"));
    EXPECT_FALSE(spaces.at("lin").is_display_referred);
    EXPECT_FALSE(spaces.at("old").is_active);
}

TEST_F(InspectionOfVersionTwo, DescribesNamedTransforms) {
    const std::vector<ocio::NamedTransformFacts> named = ocio::describe_named_transforms(load());
    ASSERT_EQ(named.size(), 2u);
    EXPECT_EQ(named[0].name, "curve");
    EXPECT_THAT(named[0].aliases, ElementsAre("bow"));
    EXPECT_EQ(named[0].encoding, "log");
    EXPECT_FALSE(named[0].has_forward);
    EXPECT_TRUE(named[0].has_inverse);
    EXPECT_TRUE(named[0].is_active);
    EXPECT_EQ(named[1].name, "secret");
    EXPECT_TRUE(named[1].has_forward);
    EXPECT_FALSE(named[1].is_active);
}

TEST_F(InspectionOfVersionTwo, DescribesSharedViews) {
    const ocio::ViewFacts film = ocio::describe_view(load(), "monitor", "film");
    EXPECT_EQ(film.color_space, "monitor");
    EXPECT_EQ(film.family, "shown");
    EXPECT_EQ(film.view_transform, "filmic");
    EXPECT_EQ(film.looks, "warm");
    EXPECT_EQ(film.description, "soft");
    EXPECT_TRUE(film.is_shared);
}

TEST_F(InspectionOfVersionTwo, GivesTheOwnNameOfWhatAViewShows) {
    const auto config = load();
    EXPECT_EQ(ocio::describe_view(config, "monitor", "plain").color_space, "monitor") << "by an alias";
    EXPECT_FALSE(ocio::describe_view(config, "monitor", "plain").is_shared);
    const ocio::ViewFacts bent = ocio::describe_view(config, "monitor", "bent");
    EXPECT_EQ(bent.color_space, "");
    EXPECT_EQ(bent.named_transform, "curve");
    const ocio::ViewFacts aged = ocio::describe_view(config, "monitor", "aged");
    EXPECT_EQ(aged.color_space, "old");
    EXPECT_EQ(aged.family, "past");
}

TEST_F(InspectionOfVersionTwo, TriesBothDirectionsOfAViewTransform) {
    const auto config = load();
    EXPECT_THAT(ocio::list_view_transforms(config), ElementsAre("filmic", "lost"));
    EXPECT_EQ(refusal_of([&] { ocio::try_view_transform(config, "filmic"); }), "nothing thrown");
    EXPECT_THAT(refusal_of([&] { ocio::try_view_transform(config, "lost"); }), HasSubstr("nowhere.spi1d"));
}

TEST_F(InspectionOfVersionTwo, HidesNothingOfAVersionOneConfiguration) {
    const EnvGuard inactive("OCIO_INACTIVE_COLORSPACES", "srgb");
    TempDir folder;
    for (const ocio::SpaceFacts& space :
         ocio::describe_spaces(test_configs::load(folder, test_configs::ConfigText{}.str())))
        EXPECT_TRUE(space.is_active) << space.name;
}

} // namespace
