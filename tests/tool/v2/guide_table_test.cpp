// The commands that the guide sets beside those of other programs work as they stand there.

#include <cmath>

#include "tests/tool/images.h"
#include "tests/tool/v2/guide_fixture.h"

namespace {

using testing::HasSubstr;
using testing::Not;

using GuideTable = GuideFixture;

TEST_F(GuideTable, HasCommandsThatWork) {
    const std::vector<std::string> commands = read_commands();
    ASSERT_GE(commands.size(), 30u);
    for (const std::string& command : commands) {
        const ToolRun result = run(split_words(command));
        EXPECT_EQ(result.code, 0) << command << "\n" << result;
        EXPECT_THAT(result.err, Not(HasSubstr("error"))) << command;
    }
}

TEST_F(GuideTable, SkipsWhatItSays) {
    const float log = 0.057f * std::log2(0.25f + 0.0078125f) + 0.5548f;
    ASSERT_THAT(run({"convert", "layers.exr", "out.exr", "--from", "ACEScg", "--to", "ACEScct"}), Succeeds());
    EXPECT_NEAR(get("out.exr", "R"), log, 5e-4);
    EXPECT_NEAR(get("out.exr", "diffuse.R"), log, 5e-4);
    EXPECT_EQ(get("out.exr", "Z"), 0.25f);
    ASSERT_THAT(
        run({"convert", "layers.exr", "out.exr", "--from", "ACEScg", "--to", "ACEScct", "--skip", "diffuse"}),
        Succeeds());
    EXPECT_NEAR(get("out.exr", "R"), log, 5e-4);
    EXPECT_EQ(get("out.exr", "diffuse.R"), 0.25f);
}

TEST_F(GuideTable, ComesBackFromAView) {
    ASSERT_THAT(
        run({"convert", "render.exr", "shown.exr", "-d", "float", "--from", "ACEScg", "--view", "sRGB.Film"}),
        Succeeds());
    // IEC 61966-2-1
    EXPECT_NEAR(read_image("shown.exr").get("R"), 1.055 * std::pow(get("render.exr", "R"), 1 / 2.4) - 0.055,
                1e-6);
    ASSERT_THAT(run({"convert", "shown.exr", "back.exr", "-d", "float", "--inverse-view", "sRGB.Film"}),
                Succeeds());
    for (const char* channel : {"R", "G", "B"})
        EXPECT_NEAR(read_image("back.exr").get(channel), read_image("render.exr").get(channel), 1e-6);
}

} // namespace
