#include "colorio/color_io_transforms.h"

#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io_converter.h"
#include "colorio/color_io_inspection.h"
#include "tests/colorio/manager_fixture.h"

namespace {

using testing::ElementsAre;

constexpr char CONFIG[] = R"(ocio_profile_version: 2
strictparsing: true
roles: {scene_linear: lin, default: lin}
file_rules:
  - !<Rule> {name: Scans, extension: dpx, pattern: "*", colorspace: double}
  - !<Rule> {name: Default, colorspace: default}
displays:
  Monitor:
    - !<View> {name: Film, colorspace: double}
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace>
    name: double
    from_scene_reference: !<MatrixTransform> {matrix: [2, 0, 0, 0, 0.5, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1]}
named_transforms:
  - !<NamedTransform>
    name: both
    transform: !<MatrixTransform> {offset: [1, 2, 3, 0]}
    inverse_transform: !<MatrixTransform> {offset: [-2, -2, -2, 0]}
  - !<NamedTransform>
    name: there
    transform: !<MatrixTransform> {offset: [1, 2, 3, 0]}
)";

class TransformsOfV2 : public ManagerTest {
protected:
    TransformsOfV2() {
        want_file(write_file("show.ocio", CONFIG));
        start_manager().load_config(nullptr);
        take_log();
    }

    /// The color 1, 0.75, 0.25 through the converter.
    static std::vector<float> convert(const ColorIOConverter& made) {
        GMathVec4<float> pixel(1, 0.75f, 0.25f, 1);
        EXPECT_TRUE(made.convert_pixel(pixel));
        return {pixel[0], pixel[1], pixel[2]};
    }
};

TEST_F(TransformsOfV2, ViewsAreInverted) {
    ColorIOConverter made;
    ASSERT_TRUE(ColorIOTransforms::configure_inverse_view(made, "Monitor", "Film", "lin"));
    EXPECT_THAT(convert(made), ElementsAre(0.5f, 0.25f, 0.125f));
    EXPECT_FALSE(ColorIOTransforms::configure_inverse_view(made, "Monitor", "Flim", "lin"));
}

TEST_F(TransformsOfV2, NamedTransformsHaveTheirOwnInverseOrThatOfTheOther) {
    ColorIOConverter made;
    ASSERT_TRUE(
        ColorIOTransforms::configure_named_transform(made, "both", ColorIOTransforms::DIRECTION_FORWARD));
    EXPECT_THAT(convert(made), ElementsAre(2.0f, 2.75f, 3.25f));
    ASSERT_TRUE(
        ColorIOTransforms::configure_named_transform(made, "both", ColorIOTransforms::DIRECTION_INVERSE));
    EXPECT_THAT(convert(made), ElementsAre(-1.0f, -1.25f, -1.75f));
    ASSERT_TRUE(
        ColorIOTransforms::configure_named_transform(made, "there", ColorIOTransforms::DIRECTION_INVERSE));
    EXPECT_THAT(convert(made), ElementsAre(0.0f, -1.25f, -2.75f));
    EXPECT_FALSE(
        ColorIOTransforms::configure_named_transform(made, "nowhere", ColorIOTransforms::DIRECTION_FORWARD));
}

TEST_F(TransformsOfV2, FileRulesTellTheColorSpaceOfAPath) {
    const auto scan = ColorIOInspection::find_file_rule("/show/a.dpx");
    EXPECT_EQ(scan.name, "Scans");
    EXPECT_EQ(scan.color_space, "double");
    EXPECT_FALSE(scan.is_default);
    const auto other = ColorIOInspection::find_file_rule("/show/a.exr");
    EXPECT_EQ(other.name, "Default");
    EXPECT_TRUE(other.is_default);
}

} // namespace
