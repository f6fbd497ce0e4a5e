#include "workflow/gpu_package.h"

#include <filesystem>

#include "colorio/color_io_converter.h"
#include "tests/workflow/workflow_fixture.h"
#include "workflow/shader_comparison.h"

namespace {

using testing::AllOf;
using testing::FloatNear;
using testing::HasSubstr;
using testing::Pointwise;
using testing::SizeIs;
using workflow::ConversionRequest;

class GpuPackages : public WorkflowTest {
protected:
    EnvGuard no_driver_cache{"MESA_SHADER_CACHE_DISABLE", "true"};

    /// From half_light through a CDL to a view.
    ConversionRequest make_graded_request() const {
        ConversionRequest request;
        request.from = "half_light";
        request.steps = {
            {workflow::ColorStep::CDL,
             folder.write("slope.cc", "<ColorCorrection id=\"a\"><SOPNode><Slope>2 1 1</Slope><Offset>"
                                      "0.5 0 0</Offset><Power>1 1 1</Power></SOPNode></ColorCorrection>")}};
        request.view = "Monitor.Warm";
        return request;
    }
};

TEST_F(GpuPackages, HoldTheTextAndItsLut) {
    const workflow::Session session(show_options());
    ConversionRequest request;
    request.from = "lin";
    request.view = "Monitor.Warm";
    const workflow::Conversion conversion(session, request);
    const workflow::GpuConversion package = workflow::make_gpu_conversion(conversion, gl::GlProfile::CORE);
    EXPECT_THAT(package.text,
                testing::ContainsRegex("vec4 OCIODisplay\\(in vec4 inPixel,[ \n]+const sampler3D lut3d\\)"));
    ASSERT_THAT(package.luts, SizeIs(1));
    EXPECT_EQ(package.luts[0].edge, 32u);
    EXPECT_THAT(package.luts[0].values, SizeIs(3u * 32 * 32 * 32));

    const std::vector<std::string> files =
        workflow::write_gpu_conversion(package, folder.file("made/package"));
    EXPECT_THAT(files, SizeIs(3));
    for (const std::string& file : files)
        EXPECT_TRUE(std::filesystem::file_size(file) > 0) << file;
}

// 0.125 of half_light is 0.25 of lin; the CDL makes 1, 0.25, 0.25 of that, and "Warm" doubles red.
TEST_F(GpuPackages, ChainTheFunctionsOfSeveralStages) {
    const workflow::Session session(show_options());
    const workflow::Conversion conversion(session, make_graded_request());
    ASSERT_THAT(conversion.get_stages(), SizeIs(3));
    for (const gl::GlProfile profile : {gl::GlProfile::CORE, gl::GlProfile::LEGACY}) {
        const workflow::GpuConversion package = workflow::make_gpu_conversion(conversion, profile);
        ASSERT_THAT(package.luts, SizeIs(3));
        EXPECT_FALSE(package.takes_gain);
        EXPECT_THAT(package.text,
                    HasSubstr("\nvec4 OCIODisplay(in vec4 inPixel, const sampler3D lut3d_0, const "
                              "sampler3D lut3d_1, const sampler3D lut3d_2) {"));
        gl::GlEvaluator evaluator(profile);
        for (const workflow::ColorDifference& difference :
             workflow::compare_shader(evaluator, package, conversion)) {
            EXPECT_LT(difference.largest, 1e-4) << difference.colors;
            EXPECT_EQ(difference.incomparable, 0u) << difference.colors;
        }
        EXPECT_THAT(evaluator.run({0.125f, 0.125f, 0.125f, 0.75f}),
                    Pointwise(FloatNear(1e-5f), {2.0f, 0.25f, 0.25f, 0.75f}));
    }
}

TEST_F(GpuPackages, TakeTheGainOfAnExposureAsTheirLastParameter) {
    const workflow::Session session(show_options());
    ConversionRequest request = make_graded_request();
    request.takes_exposure = true;
    const workflow::Conversion conversion(session, request);
    EXPECT_TRUE(conversion.takes_exposure());
    const workflow::GpuConversion package = workflow::make_gpu_conversion(conversion, gl::GlProfile::CORE);
    EXPECT_TRUE(package.takes_gain);
    EXPECT_THAT(package.text, HasSubstr("const sampler3D lut3d_2, in float gain) {"));
    gl::GlEvaluator evaluator(gl::GlProfile::CORE);
    std::vector<gl::Lut3d> luts;
    for (const workflow::GpuLut& lut : package.luts)
        luts.push_back({lut.values.data(), static_cast<int>(lut.edge)});
    evaluator.load(package.text, luts, "2.0");
    EXPECT_THAT(evaluator.run({0.125f, 0.125f, 0.125f, 0.75f}),
                Pointwise(FloatNear(1e-5f), {4.0f, 0.5f, 0.5f, 0.75f}))
        << "after the CDL, before the view";
    EXPECT_LT(workflow::compare_shader(evaluator, package, conversion)[0].largest, 1e-4)
        << "with a gain of 1";
}

TEST_F(GpuPackages, OfSeveralStagesHaveAFileForEachLut) {
    const workflow::Session session(show_options());
    const workflow::GpuConversion package = workflow::make_gpu_conversion(
        workflow::Conversion(session, make_graded_request()), gl::GlProfile::CORE);
    std::vector<std::string> expected = {folder.file("made/OCIODisplay.glsl")};
    for (const char* lut : {"_0", "_1", "_2"})
        for (const char* extension : {".spi3d", ".cube"})
            expected.push_back(folder.file("made/OCIODisplay") + lut + extension);
    EXPECT_EQ(workflow::write_gpu_conversion(package, folder.file("made")), expected);
    for (const std::string& file : expected)
        EXPECT_TRUE(std::filesystem::file_size(file) > 0) << file;
}

TEST_F(GpuPackages, OfSourceAndDestinationThatAreTheSameChangeNothing) {
    const workflow::Session session(show_options());
    ConversionRequest request;
    request.from = request.to = "lin";
    const workflow::GpuConversion package =
        workflow::make_gpu_conversion(workflow::Conversion(session, request), gl::GlProfile::LEGACY);
    EXPECT_THAT(package.luts, SizeIs(0));
    gl::GlEvaluator evaluator(gl::GlProfile::LEGACY);
    evaluator.load(package.text, {});
    EXPECT_THAT(evaluator.run({0.1f, -7, 65504, 0.5f}), testing::ElementsAre(0.1f, -7, 65504, 0.5f));
}

TEST_F(GpuPackages, FailWhereTheFolderCannotBeMade) {
    const workflow::Session session(show_options());
    ConversionRequest request;
    request.from = "lin";
    request.view = "Monitor.Warm";
    const workflow::GpuConversion package =
        workflow::make_gpu_conversion(workflow::Conversion(session, request), gl::GlProfile::LEGACY);
    const std::string blocked = folder.write("file", "in the way");
    const diagnostics::Diagnostic failure =
        failure_of([&] { workflow::write_gpu_conversion(package, blocked + "/package"); });
    EXPECT_THAT(failure.file, HasSubstr(blocked));
}

TEST_F(GpuPackages, FailWithTheReason) {
    const workflow::Session session(show_options());
    const auto get_reason = [](const workflow::Conversion& conversion) {
        return failure_of([&] { workflow::make_gpu_conversion(conversion, gl::GlProfile::CORE); }).message;
    };
    ConversionRequest request;
    request.from = "lin";
    request.to = "half_light";
    const workflow::Conversion conversion(session, request);
    conversion.get_stages()[0].converter->configure("nowhere", "lin");
    EXPECT_THAT(get_reason(conversion), AllOf(HasSubstr("cannot make a shader from 'lin' to 'half_light'"),
                                              HasSubstr("not configured")));
}

TEST_F(GpuPackages, ThatTheDriverDoesNotCompileCannotBeCompared) {
    const workflow::Session session(show_options());
    const workflow::Conversion conversion(session, make_graded_request());
    workflow::GpuConversion package = workflow::make_gpu_conversion(conversion, gl::GlProfile::CORE);
    package.text += "no shader";
    gl::GlEvaluator evaluator(gl::GlProfile::CORE);
    const diagnostics::Diagnostic failure =
        failure_of([&] { workflow::compare_shader(evaluator, package, conversion); });
    EXPECT_EQ(failure.code, diagnostics::Code::SHADER_INVALID);
    EXPECT_THAT(failure.message, HasSubstr("cannot compare the shader with the CPU"));
}

} // namespace
