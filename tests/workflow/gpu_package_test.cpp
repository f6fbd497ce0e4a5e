#include "workflow/gpu_package.h"

#include <filesystem>

#include "colorio/color_io_converter.h"
#include "tests/workflow/workflow_fixture.h"

namespace {

using testing::HasSubstr;
using testing::SizeIs;
using workflow::ConversionRequest;

using GpuPackages = WorkflowTest;

TEST_F(GpuPackages, HoldTheTextAndItsLut) {
    const workflow::Session session(show_options());
    ConversionRequest request;
    request.from = "lin";
    request.view = "Monitor.Warm";
    const workflow::Conversion conversion(session, request);
    const workflow::GpuConversion package = workflow::make_gpu_conversion(conversion, gl::GlProfile::CORE);
    EXPECT_THAT(package.text,
                testing::ContainsRegex("vec4 OCIODisplay\\(in vec4 inPixel,[ \n]+const sampler3D lut3d\\)"));
    EXPECT_EQ(package.edge, 32u);
    EXPECT_THAT(package.lut, SizeIs(3u * 32 * 32 * 32));

    const std::vector<std::string> files =
        workflow::write_gpu_conversion(package, folder.file("made/package"));
    EXPECT_THAT(files, SizeIs(3));
    for (const std::string& file : files)
        EXPECT_TRUE(std::filesystem::file_size(file) > 0) << file;
}

TEST_F(GpuPackages, HoldOneStageOfSeveralAlone) {
    const workflow::Session session(show_options());
    ConversionRequest request;
    request.from = "half_light";
    request.view = "Monitor.Warm";
    request.takes_exposure = true;
    const workflow::Conversion conversion(session, request);
    const std::vector<workflow::GpuConversion> stages =
        workflow::get_gpu_stages(conversion, gl::GlProfile::CORE);
    ASSERT_EQ(stages.size(), conversion.get_stages().size());
    ASSERT_THAT(stages, SizeIs(2));
    for (const workflow::GpuConversion& stage : stages) {
        EXPECT_THAT(stage.text, HasSubstr("OCIODisplay"));
        EXPECT_THAT(stage.lut, SizeIs(3u * 32 * 32 * 32));
    }
    EXPECT_EQ(failure_of([&] { workflow::make_gpu_conversion(conversion, gl::GlProfile::CORE); }).code,
              diagnostics::Code::SHADER_IMPOSSIBLE);
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
    request.from = request.to = "lin";
    EXPECT_THAT(get_reason(workflow::Conversion(session, request)),
                HasSubstr("source and destination are the same"));
    request.to = "half_light";
    const workflow::Conversion conversion(session, request);
    conversion.get_stages()[0].converter->configure("nowhere", "lin");
    EXPECT_THAT(get_reason(conversion), HasSubstr("not configured"));
    request.from = "half_light";
    request.takes_exposure = true;
    EXPECT_THAT(get_reason(workflow::Conversion(session, request)), HasSubstr("2 shaders"));
}

} // namespace
