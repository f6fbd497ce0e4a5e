#include "colorio/ocio/inspection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/ocio/transform_processors.h"
#include "tests/colorio/ocio/test_configs.h"

namespace {

using test_configs::ConfigText;
using test_configs::refusal_of;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Inspection : public testing::Test {
protected:
    ocio::ConstConfigRcPtr load(const ConfigText& text) { return test_configs::load(folder, text.str()); }

    TempDir folder;
};

TEST_F(Inspection, DescribesEverySpaceInOrder) {
    ConfigText text;
    text.spaces = "  - !<ColorSpace>\n    name: raw\n    family: numbers\n    description: as they are\n"
                  "    isdata: true\n";
    const std::vector<ocio::SpaceFacts> spaces = ocio::describe_spaces(load(text));
    ASSERT_EQ(spaces.size(), 3u);
    EXPECT_EQ(spaces[0].name, "lin");
    EXPECT_FALSE(spaces[0].is_data);
    EXPECT_EQ(spaces[2].name, "raw");
    EXPECT_EQ(spaces[2].family, "numbers");
    EXPECT_EQ(spaces[2].description, "as they are");
    EXPECT_TRUE(spaces[2].is_data);
    for (const ocio::SpaceFacts& space : spaces) {
        EXPECT_TRUE(space.is_active) << space.name;
        EXPECT_FALSE(space.is_display_referred) << space.name;
        EXPECT_THAT(space.aliases, IsEmpty());
        EXPECT_THAT(space.categories, IsEmpty());
        EXPECT_EQ(space.encoding, "");
    }
}

TEST_F(Inspection, DescribesWhatAViewShowsAndItsLooks) {
    ConfigText text;
    text.settings = "looks:\n  - !<Look> {name: warm, process_space: lin}\n";
    text.displays = "  d:\n    - !<View> {name: v, colorspace: default, looks: +warm}\n";
    const ocio::ViewFacts view = ocio::describe_view(load(text), "d", "v");
    EXPECT_EQ(view.color_space, "lin") << "the view gives a role";
    EXPECT_EQ(view.looks, "+warm");
    EXPECT_EQ(view.view_transform, "");
    EXPECT_EQ(view.named_transform, "");
    EXPECT_FALSE(view.is_shared);
}

TEST_F(Inspection, KnowsNothingOfAnUnknownView) {
    const auto config = load({});
    for (const auto& [display, view] : {std::pair("d", "none"), {"none", "v"}, {"", ""}}) {
        const ocio::ViewFacts facts = ocio::describe_view(config, display, view);
        EXPECT_EQ(facts.color_space, "");
        EXPECT_EQ(facts.looks, "");
    }
}

TEST_F(Inspection, ListsLooksThatCannotBeMadeToo) {
    ConfigText text;
    text.settings = "looks:\n"
                    "  - !<Look>\n    name: warm\n    process_space: lin\n"
                    "    transform: !<CDLTransform> {slope: [2, 1, 1]}\n"
                    "  - !<Look>\n    name: lost\n    process_space: lin\n"
                    "    transform: !<FileTransform> {src: nowhere.cc}\n";
    const auto config = load(text);
    EXPECT_THAT(ocio::list_looks(config), ElementsAre("warm", "lost"));
    EXPECT_EQ(refusal_of([&] { ocio::get_look_processor(config, "lin", "warm"); }), "nothing thrown");
    EXPECT_THAT(refusal_of([&] { ocio::get_look_processor(config, "lin", "lost"); }),
                HasSubstr("nowhere.cc"));
}

TEST_F(Inspection, FindsALookThatRefersToItself) {
    ConfigText text;
    text.settings = "looks:\n  - !<Look>\n    name: ring\n    process_space: lin\n"
                    "    transform: !<LookTransform> {src: lin, dst: lin, looks: ring}\n";
    const auto config = load(text);
    EXPECT_THAT(refusal_of([&] { ocio::get_look_processor(config, "lin", "ring"); }), HasSubstr("cycle"));
}

TEST_F(Inspection, FindsNoOtherKindsInAVersionOneConfiguration) {
    const auto config = load({});
    EXPECT_THAT(ocio::describe_named_transforms(config), IsEmpty());
    EXPECT_THAT(ocio::list_view_transforms(config), IsEmpty());
    EXPECT_EQ(refusal_of([&] { ocio::try_view_transform(config, "none"); }), "unknown view transform 'none'");
}

} // namespace
