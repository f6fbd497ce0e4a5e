#include "colorio/ocio/literal_paths.h"

#include <gtest/gtest.h>

#include <array>

#include "colorio/ocio/processor.h"
#include "tests/colorio/ocio/test_configs.h"
#include "tests/support/env_guard.h"

namespace {

const char HALF[] = "Version 1\nFrom 0.0 1.0\nLength 2\nComponents 1\n{\n0.0\n0.5\n}\n";

/// Objects that version 1 does not have also read files: a named transform, a view transform and a look.
const char CONFIG[] = R"(ocio_profile_version: 2
environment: {QB_TEST_X: elsewhere, QB_TEST_LUT: half}
search_path: luts
roles: {default: lin}
file_rules:
  - !<Rule> {name: Default, colorspace: default}
displays:
  d:
    - !<View> {name: v, view_transform: vt, display_colorspace: shown}
    - !<View> {name: looked, colorspace: lin, looks: l}
view_transforms:
  - !<ViewTransform>
    name: vt
    from_scene_reference: !<FileTransform> {src: "${QB_TEST_LUT}.spi1d", interpolation: linear}
looks:
  - !<Look>
    name: l
    process_space: lin
    transform: !<FileTransform> {src: half.spi1d, interpolation: linear}
display_colorspaces:
  - !<ColorSpace>
    name: shown
colorspaces:
  - !<ColorSpace>
    name: lin
  - !<ColorSpace>
    name: x
    to_scene_reference: !<LookTransform> {src: lin, dst: lin, looks: l}
named_transforms:
  - !<NamedTransform>
    name: named
    transform: !<FileTransform> {src: half.spi1d, interpolation: linear}
)";

class LiteralPathsOfVersion2 : public testing::TestWithParam<const char*> {
protected:
    static float red_after(const ocio::ConstProcessorRcPtr& processor) {
        std::array<float, 4> pixel{1, 1, 1, 1};
        processor->apply_rgba(pixel.data());
        return pixel[0];
    }

    TempDir folder;
    EnvGuard lut{"QB_TEST_LUT"};
    EnvGuard variable{"QB_TEST_X"};
};

TEST_P(LiteralPathsOfVersion2, AreTakenAsTheyAreWhereverAFileIsRead) {
    const std::string below = GetParam();
    folder.write(below + "/luts/half.spi1d", HALF);
    const auto config = ocio::create_config_from_file(folder.write(below + "/config.ocio", CONFIG).c_str());
    EXPECT_EQ(test_configs::refusal_of([&] { ocio::sanity_check(config); }), "nothing thrown");
    EXPECT_FLOAT_EQ(red_after(ocio::get_processor(config, "named", "lin")), 0.5f);
    EXPECT_FLOAT_EQ(red_after(ocio::get_processor(config, "x", "lin")), 0.5f);
    EXPECT_FLOAT_EQ(red_after(ocio::get_processor(config, ocio::DisplayTransform{"lin", "d", "v"})), 0.5f);
    EXPECT_FLOAT_EQ(red_after(ocio::get_processor(config, ocio::DisplayTransform{"lin", "d", "looked"})),
                    0.5f);
}

INSTANTIATE_TEST_SUITE_P(Folders, LiteralPathsOfVersion2,
                         testing::Values("plain", "c$QB_TEST_X", "c${QB_TEST_X}", "%QB_TEST_X%", "a$"),
                         [](const auto& test) { return "Folder" + std::to_string(test.index); });

} // namespace
