#include "colorio/color_io_inspection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "tests/colorio/manager_fixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr char CONFIG[] = R"(ocio_profile_version: 1
strictparsing: true
roles: {scene_linear: lin}
displays:
  Monitor:
    - !<View> {name: Film, colorspace: gamma, looks: warm}
  Projector:
    - !<View> {name: Film, colorspace: gamma}
active_displays: [Monitor]
looks:
  - !<Look> {name: warm, process_space: lin, transform: !<CDLTransform> {slope: [2, 1, 1]}}
  - !<Look> {name: lost, process_space: lin, transform: !<FileTransform> {src: nowhere.cc}}
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace>
    name: gamma
    family: shown
    description: For screens
    to_reference: !<ExponentTransform> {value: [2.2, 2.2, 2.2, 1]}
  - !<ColorSpace>
    name: lut
    to_reference: !<FileTransform> {src: nowhere.spi1d}
  - !<ColorSpace> {name: raw, isdata: true}
)";

class ActiveConfig : public ManagerTest {
protected:
    void use_config() {
        want_file(write_file("show.ocio", CONFIG));
        start_manager().load_config(nullptr);
        take_log();
    }
};

TEST_F(ActiveConfig, IsDescribedSpaceBySpace) {
    use_config();
    const CoreVector<ColorIOInspection::ColorSpace> spaces = ColorIOInspection::get_color_spaces();
    ASSERT_EQ(spaces.get_count(), 4u);
    EXPECT_EQ(str(spaces[1].name), "gamma");
    EXPECT_EQ(str(spaces[1].family), "shown");
    EXPECT_EQ(str(spaces[1].description), "For screens");
    EXPECT_FALSE(spaces[1].is_data);
    EXPECT_TRUE(spaces[3].is_data);
    EXPECT_TRUE(spaces[3].is_active);
    EXPECT_EQ(ColorIOInspection::get_named_transforms().get_count(), 0u);
}

TEST_F(ActiveConfig, TellsItsOwnRolesFromThoseThatTheModuleFills) {
    use_config();
    EXPECT_TRUE(ColorIOInspection::has_role("scene_linear"));
    EXPECT_FALSE(ColorIOInspection::has_role("matte_paint"));
    EXPECT_FALSE(str(ColorIO::get_role_color_space(ColorIOManager::MATTE_PAINT)).empty());
    EXPECT_FALSE(ColorIOInspection::has_role("gamma")) << "a color space";
}

TEST_F(ActiveConfig, TellsWhatLeadsToAView) {
    use_config();
    const ColorIOInspection::View view = ColorIOInspection::get_view("Monitor", "Film");
    EXPECT_EQ(str(view.color_space), "gamma");
    EXPECT_EQ(str(view.family), "shown");
    EXPECT_EQ(str(view.looks), "warm");
    const ColorIOInspection::View none = ColorIOInspection::get_view("Monitor", "None");
    EXPECT_EQ(str(none.name), "None");
    EXPECT_EQ(str(none.color_space), "");
}

TEST_F(ActiveConfig, TellsTheViewsThatItHides) {
    use_config();
    EXPECT_THAT(strings(ColorIO::get_display_view_names()), ElementsAre("Monitor.Film"));
    const CoreVector<ColorIOInspection::View> hidden = ColorIOInspection::get_hidden_views();
    ASSERT_EQ(hidden.get_count(), 1u);
    EXPECT_EQ(str(hidden[0].display), "Projector");
    EXPECT_EQ(str(hidden[0].name), "Film");
    EXPECT_EQ(str(hidden[0].color_space), "gamma");
}

TEST_F(ActiveConfig, SaysWhyAViewTransformCannotBeMade) {
    use_config();
    EXPECT_FALSE(ColorIOInspection::try_view_transform("none"));
    const std::vector<LogLine> lines = take_log();
    ASSERT_THAT(lines, testing::ElementsAre(OcioExceptionAt(LOG_ERROR)));
    EXPECT_THAT(lines[0].text, HasSubstr("unknown view transform 'none'"));
}

TEST_F(ActiveConfig, IsTheBuiltinOneWithoutAnother) {
    start_manager();
    EXPECT_EQ(str(ColorIOInspection::get_view("Tavelion", "sRGB").color_space), "sRGB");
    EXPECT_EQ(ColorIOInspection::get_hidden_views().get_count(), 0u);
    EXPECT_EQ(ColorIOInspection::get_looks().get_count(), 0u);
    EXPECT_EQ(ColorIOInspection::get_view_transforms().get_count(), 0u);
}

TEST_F(ActiveConfig, IsNoneWithoutAManager) {
    EXPECT_EQ(ColorIOInspection::get_color_spaces().get_count(), 0u);
    EXPECT_EQ(ColorIOInspection::get_hidden_views().get_count(), 0u);
    EXPECT_EQ(str(ColorIOInspection::get_view("Tavelion", "sRGB").color_space), "");
    EXPECT_FALSE(ColorIOInspection::try_view_transform("none"));
    EXPECT_THAT(take_log(), IsEmpty());
}

} // namespace
