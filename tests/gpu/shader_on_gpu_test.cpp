#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/colorio/library_differences.h"
#include "tests/gpu/module_fixture.h"
#include "tests/gpu/sample_cdls.h"
#include "tests/gpu/sample_configs.h"
#include "tests/gpu/shader_proof.h"

namespace {

using GlslVersion = ColorIOConverter::GlslVersion;

/// The module's shaders, run by OpenGL in the dialect of the parameter.
class ShaderOnGpu : public RunningModuleTest, public testing::WithParamInterface<GlslVersion> {
protected:
    static void SetUpTestSuite() { runners = new ShaderRunners; }
    static void TearDownTestSuite() {
        delete runners;
        runners = nullptr;
    }

    /// Expects the shader of each to show what the CPU converts, and some pixels of each to be in range.
    void expect_cpu_colors(const std::vector<NamedConversion>& conversions) {
        ASSERT_FALSE(conversions.empty());
        double largest_error = 0, largest_sampling = 0;
        for (const NamedConversion& conversion : conversions) {
            SCOPED_TRACE(conversion.name);
            const ShaderReport report = prove_shader(*runners, *conversion.converter, GetParam());
            EXPECT_GT(report.pixels, 1000u);
            if (HasFailure())
                return;
            largest_error = std::max(largest_error, report.largest_error);
            largest_sampling = std::max(largest_sampling, report.largest_sampling);
            tables += report.uses_table;
        }
        RecordProperty("conversions", static_cast<int>(conversions.size()));
        RecordProperty("tables", static_cast<int>(tables));
        RecordProperty("largest_error", std::to_string(largest_error));
        RecordProperty("largest_sampling_error", std::to_string(largest_sampling));
    }

    std::size_t tables = 0; ///< Shaders that used their table.
    static ShaderRunners* runners;
};
ShaderRunners* ShaderOnGpu::runners = nullptr;

TEST_P(ShaderOnGpu, InterpolatesTablesAsExactlyAsGraphicsCardsDo) {
    EXPECT_LE(runners->get_position_error(), 1.0 / 256 + 1e-5);
}

TEST_P(ShaderOnGpu, ShowsEveryPairOfBuiltInSpacesAsTheCpuConvertsIt) {
    std::vector<NamedConversion> pairs;
    for (const char* source : {"linear", "sRGB", "Cineon"})
        for (const char* destination : {"linear", "sRGB", "Cineon"})
            if (source != destination)
                pairs.push_back(convert(source, destination));
    expect_cpu_colors(pairs);
    EXPECT_EQ(tables, 6u);
}

TEST_P(ShaderOnGpu, ShowsTheBuiltInViewsAsTheCpuConvertsThem) {
    expect_cpu_colors(get_views());
}

TEST_P(ShaderOnGpu, AppliesAndUndoesCdlsAsTheCpuDoes) {
    use_cdls(get_sample_cdls());
    expect_cpu_colors(get_cdls());
    EXPECT_EQ(tables, 0u) << "a CDL needs no table";
}

TEST_P(ShaderOnGpu, ShowsTheSpacesOfAVersion1ConfigurationAsTheCpuConvertsThem) {
    SKIP_WHERE_LISTED();
    use_config(write_version_1_config(folder));
    expect_cpu_colors(get_spaces());
    EXPECT_GT(tables, 0u);
}

TEST_P(ShaderOnGpu, ShowsTheViewsOfAVersion1ConfigurationAsTheCpuConvertsThem) {
    use_config(write_version_1_config(folder));
    expect_cpu_colors(get_views());
    EXPECT_GT(tables, 0u);
}

TEST_P(ShaderOnGpu, ShowsTheSpacesOfAVersion2ConfigurationAsTheCpuConvertsThem) {
    SKIP_WHERE_LISTED();
    use_config(write_version_2_config(folder));
    expect_cpu_colors(get_spaces());
    EXPECT_GT(tables, 0u);
}

TEST_P(ShaderOnGpu, ShowsTheViewsOfAVersion2ConfigurationAsTheCpuConvertsThem) {
    SKIP_WHERE_LISTED();
    use_config(write_version_2_config(folder));
    expect_cpu_colors(get_views());
    EXPECT_GT(tables, 0u);
}

INSTANTIATE_TEST_SUITE_P(Dialects, ShaderOnGpu,
                         testing::Values(ColorIOConverter::GLSL_VERSION_LEGACY,
                                         ColorIOConverter::GLSL_VERSION_CORE),
                         [](const auto& version) {
                             return version.param == ColorIOConverter::GLSL_VERSION_CORE ? "Core" : "Legacy";
                         });

} // namespace
