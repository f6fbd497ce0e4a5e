#include "colorio/ocio/processor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "tests/colorio/library_differences.h"
#include "tests/colorio/ocio/gpu_shader_fixture.h"
#include "tests/colorio/ocio/test_configs.h"

namespace {

using namespace gpu_shader;
using library_differences::expected;
using test_configs::refusal_of;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// Shaders of conversions that mix tables with other things.
class MixedShader : public testing::Test {
protected:
    MixedShader() { test_configs::write_built_in_tables(folder_); }

    ocio::ConstProcessorRcPtr make(const std::string& version, const std::string& properties,
                                   const std::string& transform) {
        test_configs::ConfigText text;
        text.version = version;
        text.settings = "search_path: .\n";
        text.spaces = "  - !<ColorSpace>\n    name: x\n" + properties + "    " +
                      (version == "1" ? "to_reference" : "to_scene_reference") + ": " + transform + "\n";
        return ocio::get_processor(test_configs::load(folder_, text.str()), "x", "lin");
    }

    TempDir folder_;
};

constexpr const char* TABLE_THEN_SWAP =
    "!<GroupTransform>\n      children:\n        - !<FileTransform> {src: srgb.spi1d, interpolation: "
    "linear}\n"
    "        - !<MatrixTransform> {matrix: [0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 1]}\n";

TEST_F(MixedShader, TheLibrarysTextIsRewrittenForTheOneTable) {
    const auto processor =
        make("1", "    allocation: uniform\n    allocationvars: [0, 1]\n", TABLE_THEN_SWAP);
    for (const ocio::GpuShaderDesc& desc : {LEGACY, CORE}) {
        const std::string text = processor->get_gpu_shader_text(desc);
        EXPECT_THAT(text,
                    AllOf(HasSubstr(signature(desc)), HasSubstr("= texture3D(lut3d, "),
                          Not(HasSubstr("uniform")), Not(HasSubstr("Sampler")), Not(HasSubstr(".zyx"))));
    }
    const auto table = table_of(processor);
    // Linear values of the encoded 0, 1 and 10 / 31 (IEC 61966-2-1), each on its own axis.
    const float* triple = at(table, 0, 31, 10);
    EXPECT_NEAR(triple[0], 0.0, 2e-6);
    EXPECT_NEAR(triple[1], 1.0, 2e-6);
    EXPECT_NEAR(triple[2], std::pow((10.0 / 31 + 0.055) / 1.055, 2.4), 2e-6);
}

TEST_F(MixedShader, ACorrectionBetweenTablesDoesNotClampNegatives) {
    folder_.write("wide.spi1d", "Version 1\nFrom -64 64\nLength 2\nComponents 1\n{\n-128\n128\n}\n");
    const auto processor = make("1", "    allocation: uniform\n    allocationvars: [-1, 3]\n",
                                "!<GroupTransform>\n      children:\n"
                                "        - !<CDLTransform> {offset: [0.1, 0, -0.1], sat: 0.5}\n"
                                "        - !<FileTransform> {src: wide.spi1d, interpolation: linear}\n");
    // -1 is offset, pulled halfway to its Rec. 709 luma, and doubled.
    const auto table = table_of(processor);
    const float* triple = at(table, 0, 0, 0);
    const double luma = 0.2126 * -0.9 + 0.7152 * -1.0 + 0.0722 * -1.1;
    EXPECT_NEAR(triple[0], -0.9 + luma, 1e-5);
    EXPECT_NEAR(triple[1], -1.0 + luma, 1e-5);
    EXPECT_NEAR(triple[2], -1.1 + luma, 1e-5);
    EXPECT_THAT(processor->get_gpu_shader_text(CORE), HasSubstr("texture3D(lut3d, 0.96875 * "));
}

TEST_F(MixedShader, ATableOfAnotherSizeIsMadeAnew) {
    const auto processor =
        make("1", "    allocation: uniform\n    allocationvars: [0, 1]\n", TABLE_THEN_SWAP);
    std::vector<float> small(4 * 4 * 4 * 3);
    processor->get_gpu_lut_3d(small.data(), describe(ocio::GPU_LANGUAGE_GLSL_1_3, 4));
    EXPECT_NEAR(small[3], std::pow((1.0 / 3 + 0.055) / 1.055, 2.4), 2e-6) << "the second of four";
    EXPECT_NEAR(at(table_of(processor), 1, 0, 0)[0], 1.0 / 31 / 12.92, 2e-6) << "the second of 32";
}

TEST_F(MixedShader, LinearLightWithoutAnAllocationIsSpacedByStopsFromBlackUp) {
    SKIP_WHERE_LISTED();
    // Version 2 configurations often state none; the library would cut off everything above 1.
    const auto processor = make("2", "    encoding: scene-linear\n",
                                "!<GroupTransform>\n      direction: inverse\n      children:\n"
                                "        - !<FileTransform> {src: cineon.spi1d}\n"
                                "        - !<MatrixTransform> {matrix: [0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 0, "
                                "0, 0, 0, 1]}\n");
    EXPECT_THAT(
        processor->get_gpu_shader_text(CORE),
        AllOf(HasSubstr("log(out_pixel.rgb)"), HasSubstr("0.000976562"), HasSubstr("texture3D(lut3d, ")));
    const auto table = table_of(processor);
    EXPECT_NEAR(at(table, 0, 0, 0)[0], 95.0 / 1023, 2e-5) << "black is code 95 of the film curve";
    EXPECT_NEAR(at(table, 0, 0, 31)[0], 1.125, 2e-6) << "the brightest blue, now red, ends the curve";
    EXPECT_NEAR(at(table, 0, 0, 31)[2], 95.0 / 1023, 2e-5);
}

TEST_F(MixedShader, AStatedAllocationHolds) {
    SKIP_WHERE_LISTED();
    const auto processor = make(
        "2", "    encoding: scene-linear\n    allocation: lg2\n    allocationvars: [-8, 5, 0.00390625]\n",
        "!<FileTransform> {src: srgb.spi1d, interpolation: linear}");
    // As the 1.x library writes it.
    EXPECT_THAT(
        processor->get_gpu_shader_text(CORE),
        HasSubstr("out_pixel.rgb = max(vec3(1.17549e-38, 1.17549e-38, 1.17549e-38), vec3(1, 1, 1) * "
                  "out_pixel.rgb + vec3(0.00390625, 0.00390625, 0.00390625));\n"
                  "out_pixel.rgb = vec3(1.4427, 1.4427, 1.4427) * log(out_pixel.rgb) + vec3(0, 0, 0);\n"
                  "out_pixel = vec4(0.0769231, 0.0769231, 0.0769231, 1) * out_pixel;\n"
                  "out_pixel = vec4(0.615385, 0.615385, 0.615385, 0) + out_pixel;\n"));
    EXPECT_EQ(at(table_of(processor), 0, 0, 0)[0], 0.0f);
}

TEST_F(MixedShader, TheDefaultAllocationsAreThoseOfTheOldLibrary) {
    const std::string transform = "!<FileTransform> {src: srgb.spi1d, interpolation: linear}";
    EXPECT_THAT(make("1", "", transform)->get_gpu_shader_text(CORE),
                HasSubstr("inPixel; \nout_pixel.rgb = texture3D(lut3d, "));
    EXPECT_THAT(make("1", "    allocation: lg2\n", transform)->get_gpu_shader_text(CORE),
                HasSubstr("out_pixel = vec4(0.0625, 0.0625, 0.0625, 1) * out_pixel;\n"
                          "out_pixel = vec4(0.625, 0.625, 0.625, 0) + out_pixel;\n"));
}

TEST_F(MixedShader, ScalesOfOneAndOffsetsOfZeroAreLeftOut) {
    const std::string transform = "!<FileTransform> {src: srgb.spi1d, interpolation: linear}";
    EXPECT_THAT(make("1", "    allocation: uniform\n    allocationvars: [0, 2]\n", transform)
                    ->get_gpu_shader_text(CORE),
                HasSubstr("inPixel; \nout_pixel = vec4(0.5, 0.5, 0.5, 1) * out_pixel;\nout_pixel.rgb = tex"));
    EXPECT_THAT(make("1", "    allocation: uniform\n    allocationvars: [-1, 0]\n", transform)
                    ->get_gpu_shader_text(CORE),
                HasSubstr("inPixel; \nout_pixel = vec4(1, 1, 1, 0) + out_pixel;\nout_pixel.rgb = tex"));
}

TEST_F(MixedShader, AnAllocationWithoutARangeIsRefused) {
    const auto write = [&] {
        make("1", "    allocation: uniform\n    allocationvars: [1, 1]\n",
             "!<FileTransform> {src: srgb.spi1d, interpolation: linear}")
            ->get_gpu_shader_text(CORE);
    };
    EXPECT_THAT(refusal_of(write), HasSubstr(expected("an allocation without a range")));
}

} // namespace
