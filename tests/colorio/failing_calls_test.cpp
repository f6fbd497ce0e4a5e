#include <string>

#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_diagnostics.h"
#include "colorio/color_io_evaluation.h"
#include "colorio/color_io_inspection.h"
#include "colorio/color_io_manager.h"
#include "tests/colorio/running_module.h"

namespace {

using diagnostics::Code;

/// Calls that fail: each reports the reason to programs, in addition to the log.
class FailingCall : public RunningModule {
protected:
    /// The one diagnostic of `action`; fails the test when there is none or another one.
    template <class Action>
    diagnostics::Diagnostic report_of(const Action& action) {
        ColorIODiagnostics collector;
        action();
        const diagnostics::Diagnostics reports = collector.take();
        EXPECT_EQ(reports.size(), 1u);
        return reports.empty() ? diagnostics::Diagnostic() : reports.front();
    }
    template <class Action>
    Code code_of(const Action& action) {
        return report_of(action).code;
    }
};

TEST_F(FailingCall, WritesOrReadsADocument) {
    ColorIOManager& manager = *ColorIOManager::get_instance();
    const CoreString blocked = "/nowhere/a.cc";
    CoreVector<ColorIOManager::ColorDecisionListDef> cdls;
    cdls.append({"a", "", "", {1, 1, 1}, {0, 0, 0}, {1, 1, 1}, 1, false});
    const diagnostics::Diagnostic unwritable =
        report_of([&] { EXPECT_FALSE(manager.create_XML_from_CDL(cdls, blocked, false)); });
    EXPECT_EQ(unwritable.code, Code::FILE_UNWRITABLE);
    EXPECT_EQ(unwritable.file, "/nowhere/a.cc");
    EXPECT_EQ(unwritable.message, "cannot write '/nowhere/a.cc': No such file or directory");
    ColorIOManager::ColorDecisionListDef read{};
    EXPECT_EQ(code_of([&] { manager.read_CDL_from_XML(blocked, read, false); }), Code::FILE_MISSING);
}

TEST_F(FailingCall, NamesACategoryThatDoesNotExist) {
    ColorIOAutoDetection& detection = *ColorIOAutoDetection::get_instance();
    for (const unsigned int row : {detection.get_categories_count(), NOT_FOUND}) {
        EXPECT_EQ(code_of([&] { detection.set_file_format(row, "x"); }), Code::FORMAT_UNKNOWN);
        EXPECT_EQ(code_of([&] { detection.set_extension_from_file_format(row, "x"); }), Code::FORMAT_UNKNOWN);
        EXPECT_EQ(code_of([&] { detection.set_default_color_space_from_file_format(row, "sRGB"); }),
                  Code::FORMAT_UNKNOWN);
    }
    EXPECT_EQ(report_of([&] { detection.get_extension_from_file_format("none"); }).subject, "none");
}

TEST_F(FailingCall, UsesAConverterThatIsNotConfigured) {
    const ColorIOConverter converter;
    float pixels[4] = {};
    GMathVec4<float> pixel;
    CoreString text;
    CoreArray<float> lut;
    ColorIOEvaluation::Explanation explanation;
    EXPECT_EQ(code_of([&] { EXPECT_FALSE(converter.convert_buffer(pixels, 1, 1, 4)); }), Code::USAGE);
    EXPECT_EQ(code_of([&] { EXPECT_FALSE(converter.convert_buffers(pixels, pixels, pixels, pixels, 1, 1)); }),
              Code::USAGE);
    EXPECT_EQ(code_of([&] { EXPECT_FALSE(converter.convert_pixel(pixel)); }), Code::USAGE);
    EXPECT_EQ(code_of([&] {
                  EXPECT_FALSE(converter.get_gpu_shader_data(text, lut, ColorIOConverter::GLSL_VERSION_CORE));
              }),
              Code::USAGE);
    EXPECT_EQ(code_of([&] { EXPECT_FALSE(ColorIOEvaluation::explain(converter, pixel, explanation)); }),
              Code::USAGE);
}

TEST_F(FailingCall, ConvertsAnImageWithoutPixels) {
    ColorIOConverter converter;
    ASSERT_TRUE(converter.configure("sRGB", "linear"));
    float pixels[4] = {};
    EXPECT_EQ(code_of([&] { EXPECT_FALSE(converter.convert_buffer(pixels, 0, 1, 4)); }), Code::USAGE);
}

TEST_F(FailingCall, ConfiguresAConverterOfAModuleThatEnded) {
    ColorIOConverter converter;
    ColorIOManager::destroy();
    EXPECT_EQ(code_of([&] { EXPECT_FALSE(converter.configure("sRGB", "linear")); }), Code::USAGE);
    EXPECT_EQ(code_of([&] { EXPECT_FALSE(ColorIOInspection::try_view_transform("none")); }),
              Code::CONVERSION_IMPOSSIBLE);
}

} // namespace
