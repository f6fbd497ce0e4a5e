#include "colorio/ocio/config.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "colorio/ocio/processor.h"
#include "tests/colorio/library_differences.h"
#include "tests/support/env_guard.h"

namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char DISPLAY[] = "sRGB - Display";
constexpr char VIEW[] = "ACES 2.0 - SDR 100 nits (Rec.709)";
constexpr int EDGE = 32;

/// A configuration that OpenColorIO itself holds, named by the environment.
class BuiltinConfigs : public testing::Test {
protected:
    ocio::ConstConfigRcPtr load(const char* name) {
        variable.set(name);
        const ocio::ConstConfigRcPtr config = ocio::create_config_from_env();
        ocio::sanity_check(config);
        return config;
    }

    EnvGuard variable{"OCIO"};
};

TEST_F(BuiltinConfigs, HaveADefault) {
    SKIP_WHERE_LISTED();
    const ocio::ConstConfigRcPtr config = load("ocio://default");
    EXPECT_GT(ocio::get_num_color_spaces(config), 10);
    EXPECT_GT(ocio::get_num_displays(config), 1);
    EXPECT_TRUE(ocio::get_color_space(config, ocio::get_role_color_space(config, "scene_linear").c_str()));
}

TEST_F(BuiltinConfigs, ShowAcesTwoThroughOneTable) {
    SKIP_WHERE_LISTED();
    const ocio::ConstConfigRcPtr config = load("ocio://studio-config-v4.0.0_aces-v2.0_ocio-v2.5");
    const auto processor = ocio::get_processor(config, ocio::DisplayTransform{"ACEScg", DISPLAY, VIEW});

    float black[] = {0, 0, 0, 1}, gray[] = {0.18f, 0.18f, 0.18f, 1}, bright[] = {50, 50, 50, 1};
    for (float* pixel : {black, gray, bright})
        processor->apply_rgba(pixel);
    EXPECT_NEAR(black[0], 0, 0.01);
    EXPECT_NEAR(gray[0], gray[1], 1e-3) << "gray stays gray";
    EXPECT_GT(gray[0], 0.25f);
    EXPECT_LT(gray[0], 0.5f);
    EXPECT_NEAR(bright[0], 1, 0.02) << "of a display of 100 nits";

    const ocio::GpuShaderDesc desc{ocio::GPU_LANGUAGE_GLSL_1_3, "OCIODisplay", EDGE};
    const std::string text = processor->get_gpu_shader_text(desc);
    EXPECT_THAT(text, HasSubstr("texture3D(lut3d, "));
    EXPECT_THAT(text, Not(HasSubstr("uniform"))) << "the view's two tables of its own are baked into the one";
    std::vector<float> table(EDGE * EDGE * EDGE * 3);
    processor->get_gpu_lut_3d(table.data(), desc);
    EXPECT_TRUE(std::all_of(table.begin(), table.end(), [](float value) { return std::isfinite(value); }));
    EXPECT_GT(*std::max_element(table.begin(), table.end()), 0.9f);
}

} // namespace
