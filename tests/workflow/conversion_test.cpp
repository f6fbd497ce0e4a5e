#include "workflow/conversion.h"

#include <cmath>
#include <optional>
#include <thread>
#include <vector>

#include "colorio/color_io_converter.h"
#include "tests/workflow/workflow_fixture.h"

namespace {

using diagnostics::Code;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using workflow::Conversion;
using workflow::ConversionRequest;

/// SHOW_CONFIG: half_light is lin times 0.5, warm doubles red.
class Conversions : public WorkflowTest {
protected:
    static ConversionRequest to_space(const std::string& from, const std::string& to) {
        ConversionRequest request;
        request.from = from;
        request.to = to;
        return request;
    }

    workflow::Session session{show_options()};
};

TEST_F(Conversions, GoFromSpaceToSpace) {
    const Conversion conversion(session, to_space("lin", "half_light"));
    EXPECT_THAT(convert(conversion, {0.5f, 1, 2, 0.25f}), ElementsAre(0.25f, 0.5f, 1, 0.25f));
    EXPECT_EQ(conversion.get_source(), "lin");
    EXPECT_EQ(conversion.get_destination_space(), "half_light");
    EXPECT_FALSE(conversion.is_identity());
}

TEST_F(Conversions, GoThroughAView) {
    ConversionRequest request;
    request.from = "half_light";
    request.display = "Monitor";
    request.view = "Warm";
    const Conversion conversion(session, request);
    EXPECT_THAT(convert(conversion, {0.5f, 0.5f, 0.5f, 1}), ElementsAre(2, 1, 1, 1));
    EXPECT_EQ(conversion.get_destination_space(), "ops|warm");
}

TEST_F(Conversions, ChangeNothingFromASpaceToItself) {
    const Conversion conversion(session, to_space("lin", "scene_linear"));
    EXPECT_TRUE(conversion.is_identity());
    EXPECT_THAT(convert(conversion, {0.1f, -0.2f, 3, 0.5f}), ElementsAre(0.1f, -0.2f, 3, 0.5f));
}

// ASC CDL: out = (in * slope + offset) ^ power, then saturation; in scene-linear.
TEST_F(Conversions, ApplyCdlThenExposureInSceneLinear) {
    ConversionRequest request = to_space("half_light", "half_light");
    const std::string cdl =
        folder.write("slope.cc", "<ColorCorrection id=\"a\"><SOPNode><Slope>2 1 1</Slope><Offset>0.5 0 0"
                                 "</Offset><Power>1 1 1</Power></SOPNode></ColorCorrection>");
    request.steps = {{workflow::ColorStep::CDL, cdl}};
    request.takes_exposure = true;
    const Conversion conversion(session, request);
    EXPECT_EQ(conversion.get_working_space(), "lin");
    const std::array<float, 4> pixel = convert(conversion, {0.125f, 0.125f, 0.125f, 1}, 1);
    EXPECT_FLOAT_EQ(pixel[0], 0.5f * 2 * (0.25f * 2 + 0.5f));
    EXPECT_FLOAT_EQ(pixel[1], 0.5f * 2 * 0.25f);
    EXPECT_FLOAT_EQ(pixel[3], 1);
}

TEST_F(Conversions, SayForWhichNameTheyTookAnother) {
    const Conversion conversion(session, to_space("LIN", "half_light"));
    EXPECT_EQ(conversion.get_source(), "lin");
    ASSERT_THAT(conversion.get_notes(), testing::SizeIs(1));
    EXPECT_EQ(conversion.get_notes()[0].severity, diagnostics::Severity::NOTE);
    EXPECT_THAT(conversion.get_notes()[0].message, HasSubstr("lin"));
}

TEST_F(Conversions, FailForUnknownNamesWithTheNearest) {
    const diagnostics::Diagnostic space =
        failure_of([&] { Conversion conversion(session, to_space("half_lihgt", "lin")); });
    EXPECT_EQ(space.code, Code::COLOR_SPACE_UNKNOWN);
    EXPECT_EQ(space.subject, "half_lihgt");
    EXPECT_THAT(space.hint, HasSubstr("half_light"));

    ConversionRequest request;
    request.from = "lin";
    request.view = "Monitor.Flim";
    const diagnostics::Diagnostic view = failure_of([&] { Conversion conversion(session, request); });
    EXPECT_EQ(view.code, Code::VIEW_UNKNOWN);
    EXPECT_THAT(view.hint, HasSubstr("Monitor.Film"));
}

TEST_F(WorkflowTest, AConversionKeepsItsColorsAfterItsSession) {
    std::optional<workflow::Session> session(show_options());
    ConversionRequest request;
    request.from = "lin";
    request.to = "half_light";
    const Conversion conversion(*session, request);
    session.reset();
    EXPECT_THAT(convert(conversion, {1, 1, 1, 1}), ElementsAre(0.5f, 0.5f, 0.5f, 1));
}

TEST_F(Conversions, AreAppliedBySeveralThreadsAtOnce) {
    const Conversion conversion(session, to_space("lin", "half_light"));
    std::vector<std::thread> threads;
    std::vector<std::vector<float>> images(4, std::vector<float>(4 * 4096, 0.75f));
    threads.reserve(images.size());
    for (std::vector<float>& image : images)
        threads.emplace_back([&] { conversion.apply(image.data(), 64, 64); });
    for (std::thread& thread : threads)
        thread.join();
    std::vector<float> expected(4 * 4096, 0.375f);
    for (std::size_t alpha = 3; alpha < expected.size(); alpha += 4)
        expected[alpha] = 0.75f;
    for (const std::vector<float>& image : images)
        EXPECT_EQ(image, expected);
}

TEST_F(Conversions, FailRatherThanLeavePixelsAsTheyWere) {
    const Conversion conversion(session, to_space("lin", "half_light"));
    conversion.get_stages()[0].converter->configure("nowhere", "lin");
    std::vector<float> pixels(4, 1.0f);
    const diagnostics::Diagnostic failure = failure_of([&] { conversion.apply(pixels.data(), 1, 1); });
    EXPECT_THAT(failure.message, HasSubstr("lin to half_light"));
    EXPECT_THAT(failure.message, HasSubstr("not configured"));
    conversion.apply(pixels.data(), 0, 1); // there is nothing to convert
}

TEST(Gain, IsAPowerOfTwo) {
    EXPECT_FLOAT_EQ(workflow::get_gain(0), 1);
    EXPECT_FLOAT_EQ(workflow::get_gain(3), 8);
    EXPECT_FLOAT_EQ(workflow::get_gain(-0.5f), std::sqrt(0.5f));
}

} // namespace
