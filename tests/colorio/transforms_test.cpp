#include "colorio/color_io_transforms.h"

#include <optional>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io_context.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_lut_writer.h"
#include "tests/colorio/manager_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr char CONFIG[] = R"(ocio_profile_version: 1
search_path: $SHOT
strictparsing: true
roles: {scene_linear: lin}
displays:
  Monitor:
    - !<View> {name: Film, colorspace: double}
looks:
  - !<Look> {name: warm, process_space: lin, transform: !<CDLTransform> {slope: [2, 1, 1]}}
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace>
    name: double
    from_reference: !<MatrixTransform> {matrix: [2, 0, 0, 0, 0.5, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1]}
  - !<ColorSpace>
    name: of the shot
    from_reference: !<FileTransform> {src: shot.spi1d, interpolation: linear}
)";

constexpr char HALVING_LUT[] = "Version 1\nFrom 0.0 1.0\nLength 2\nComponents 1\n{\n0.0\n0.5\n}\n";

class Transforms : public ManagerTest {
protected:
    Transforms() { lut = write_file("half.spi1d", HALVING_LUT); }
    ~Transforms() override { ColorIOContext::set_variables({}); }

    void use_config() {
        want_file(write_file("show.ocio", CONFIG));
        start_manager().load_config(nullptr);
        take_log();
        made.emplace();
    }

    /// Red, green and blue of a color through the converter.
    std::vector<float> convert(float red, float green, float blue) const {
        GMathVec4<float> pixel(red, green, blue, 1);
        EXPECT_TRUE(made->convert_pixel(pixel));
        return {pixel[0], pixel[1], pixel[2]};
    }

    /// A converter belongs to the manager that runs when it is made.
    std::optional<ColorIOConverter> made;
    std::string lut;
};

TEST_F(Transforms, ConvertBetweenColorSpacesOfTheConfig) {
    use_config();
    ASSERT_TRUE(ColorIOTransforms::configure(*made, "scene_linear", "double"));
    EXPECT_TRUE(made->is_enabled());
    EXPECT_THAT(convert(0.5f, 0.25f, 0.125f), ElementsAre(1.0f, 0.75f, 0.25f));
    ASSERT_TRUE(ColorIOTransforms::configure_view(*made, "lin", "Monitor", "Film"));
    EXPECT_THAT(convert(0.5f, 0.25f, 0.125f), ElementsAre(1.0f, 0.75f, 0.25f));
}

TEST_F(Transforms, ApplyLooksBothWays) {
    use_config();
    ASSERT_TRUE(ColorIOTransforms::configure_looks(*made, "lin", "warm"));
    EXPECT_THAT(convert(0.5f, 0.25f, 0.125f), ElementsAre(1.0f, 0.25f, 0.125f));
    ASSERT_TRUE(ColorIOTransforms::configure_looks(*made, "lin", "-warm"));
    EXPECT_THAT(convert(0.5f, 0.25f, 0.125f), ElementsAre(0.25f, 0.25f, 0.125f));
}

TEST_F(Transforms, ApplyFilesBothWays) {
    use_config();
    using Direction = ColorIOTransforms::Direction;
    ASSERT_TRUE(ColorIOTransforms::configure_file(*made, lut.c_str(), Direction::DIRECTION_FORWARD));
    EXPECT_THAT(convert(0.5f, 0.25f, 1.0f), ElementsAre(0.25f, 0.125f, 0.5f));
    ASSERT_TRUE(ColorIOTransforms::configure_file(*made, lut.c_str(), Direction::DIRECTION_INVERSE));
    EXPECT_THAT(convert(0.25f, 0.125f, 0.5f), ElementsAre(0.5f, 0.25f, 1.0f));
}

TEST_F(Transforms, FailWithTheReasonAndLeaveNoConversion) {
    use_config();
    ASSERT_TRUE(ColorIOTransforms::configure(*made, "lin", "double"));
    EXPECT_FALSE(ColorIOTransforms::configure(*made, "lin", "nowhere"));
    EXPECT_FALSE(made->is_configured());
    EXPECT_THAT(take_log(),
                Contains(testing::Field("text", &RecordingLog::Line::text, HasSubstr("OCIO exception: "))));
    EXPECT_FALSE(ColorIOTransforms::configure_file(*made, "/nowhere.cube", {}));
    EXPECT_FALSE(ColorIOTransforms::configure_looks(*made, "lin", "nowhere"));
}

TEST_F(Transforms, FailWithoutAManager) {
    made.emplace();
    EXPECT_FALSE(ColorIOTransforms::configure(*made, "lin", "double"));
    EXPECT_FALSE(ColorIOContext::is_used("SHOT"));
    EXPECT_TRUE(ColorIOLutWriter::write({}).is_empty());
}

TEST_F(Transforms, FollowContextVariables) {
    const std::string folder_of_shot = lut.substr(0, lut.rfind('/'));
    write_file("shot.spi1d", HALVING_LUT);
    CoreVector<ColorIOContext::Variable> variables;
    variables.append({"SHOT", folder_of_shot.c_str()});
    ColorIOContext::set_variables(variables);
    use_config();
    EXPECT_TRUE(ColorIOContext::is_used("SHOT"));
    EXPECT_FALSE(ColorIOContext::is_used("SEQUENCE"));
    ASSERT_TRUE(ColorIOTransforms::configure(*made, "lin", "of the shot"));
    EXPECT_THAT(convert(0.5f, 0.25f, 1.0f), ElementsAre(0.25f, 0.125f, 0.5f));
}

TEST_F(Transforms, AreWrittenAsLuts) {
    use_config();
    ColorIOLutWriter::Bake bake;
    bake.format = "cinespace";
    bake.source = "lin";
    bake.target = "double";
    bake.size = 2;
    bake.grid.resize(24);
    for (unsigned int i = 0; i < 8; ++i) {
        const float rgb[] = {i & 1 ? 1.0f : 0.0f, i & 2 ? 1.0f : 0.0f, i & 4 ? 1.0f : 0.0f};
        bake.grid[3 * i] = 2 * rgb[0];
        bake.grid[3 * i + 1] = 0.5f * rgb[0] + 2 * rgb[1];
        bake.grid[3 * i + 2] = 2 * rgb[2];
    }
    const CoreString text = ColorIOLutWriter::write(bake);
    const std::string path = write_file("baked.csp", text.get_data());
    ASSERT_TRUE(ColorIOTransforms::configure_file(*made, path.c_str(), {}));
    const std::vector<float> color = convert(0.5f, 0.25f, 0.125f);
    EXPECT_NEAR(color[0], 1.0, 1e-5);
    EXPECT_NEAR(color[1], 0.75, 1e-5);
    EXPECT_NEAR(color[2], 0.25, 1e-5);
    EXPECT_TRUE(ColorIOLutWriter::has_format("cinespace"));
    EXPECT_FALSE(ColorIOLutWriter::has_format("no format"));
    bake.format = "no format";
    EXPECT_TRUE(ColorIOLutWriter::write(bake).is_empty());
}

} // namespace
