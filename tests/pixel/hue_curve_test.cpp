#include <array>
#include <cmath>
#include <stdexcept>
#include <vector>

#include "every_target.h"
#include "samples.h"

using namespace pixel;
using namespace pixel_test;

namespace {

class HueCurves : public EveryTarget {};
RUN_ON_EVERY_TARGET(HueCurves);

using Color = std::array<float, 3>;

struct Example {
    Color in, out;
};

/// All eight curves, none of them neutral.
const std::array<std::vector<ControlPoint>, 8> CURVES{{
    {{0, 0.02f, 0}, {0.3333333f, 0.3f, 0}, {0.6666667f, 0.7f, 0}},
    {{0, 1.2f, 0}, {0.3f, 0.8f, 0}, {0.6f, 1, 0}},
    {{0.1f, 0.9f, 0}, {0.5f, 1.1f, 0}, {0.8f, 1, 0}},
    {{0, 1, 0}, {0.5f, 1.3f, 0}, {1, 0.9f, 0}},
    {{0, 0, 0}, {0.5f, 0.6f, 0}, {1, 1.1f, 0}},
    {{0, 0.02f, 0}, {0.5f, 0.45f, 0}, {1, 1, 0}},
    {{0, 1, 0}, {0.5f, 1.1f, 0}, {1, 0.9f, 0}},
    {{0, 0.05f, 0}, {0.4f, -0.05f, 0}, {0.7f, 0, 0}},
}};

void expect_colors(const HueCurve& curves, const std::vector<Example>& examples) {
    const Single one(curves);
    for (const Example& example : examples) {
        const Pixel actual = one({example.in[0], example.in[1], example.in[2], 0.5f});
        for (std::size_t c = 0; c < 3; ++c) {
            EXPECT_NEAR(actual[c], example.out[c], 5e-6)
                << c << " of " << example.in[0] << " " << example.in[1] << " " << example.in[2];
        }
        EXPECT_EQ(actual[3], 0.5f);
    }
}

// The expectations are results of OpenColorIO 2.5.1 on Debian (x86-64, glibc 2.43), without optimizations.

TEST_P(HueCurves, LogStyle) {
    expect_colors({GradingStyle::Log, true, CURVES, Direction::Forward},
                  {{{0.5f, 0.2f, 0.1f}, {0.437526762f, 0.0825382695f, 0.0125197917f}},
                   {{0.1f, 0.4f, 0.3f}, {-0.0951961577f, 0.342294693f, 0.239132151f}},
                   {{0.3f, 0.3f, 0.3f}, {0.265557081f, 0.265557081f, 0.265557081f}},
                   {{0.9f, 0.2f, 0.8f}, {1.26737154f, -0.0967915952f, 0.53917259f}},
                   {{-0.05f, 0.6f, 0.02f}, {-0.222041667f, 0.488817573f, -0.269535184f}}});
    expect_colors({GradingStyle::Log, true, CURVES, Direction::Inverse},
                  {{{0.5f, 0.2f, 0.1f}, {0.542336106f, 0.330852449f, 0.157307476f}},
                   {{0.1f, 0.4f, 0.3f}, {0.245195001f, 0.443889558f, 0.36365971f}},
                   {{0.3f, 0.3f, 0.3f}, {0.33958441f, 0.33958441f, 0.33958441f}},
                   {{0.9f, 0.2f, 0.8f}, {0.779679f, 0.440238565f, 0.925190926f}},
                   {{-0.05f, 0.6f, 0.02f}, {0.148704082f, 0.711633682f, 0.270499557f}}});
}

TEST_P(HueCurves, OfChannelsThatAreHueSaturationAndLuma) {
    expect_colors({GradingStyle::Log, false, CURVES, Direction::Forward},
                  {{{0.5f, 0.2f, 0.1f}, {0.460658312f, 0.251653433f, 0.109518677f}},
                   {{0.1f, 0.4f, 0.3f}, {0.14127472f, 0.666901052f, 0.265731066f}},
                   {{0.9f, 0.2f, 0.8f}, {0.970908284f, 0.323335558f, 0.778232515f}},
                   {{-0.05f, 0.6f, 0.02f}, {1.02381837f, 0.858853161f, 0.0293045044f}}});
    expect_colors({GradingStyle::Log, false, CURVES, Direction::Inverse},
                  {{{0.5f, 0.2f, 0.1f}, {0.524550736f, 0.157007873f, 0.0904422104f}},
                   {{0.1f, 0.4f, 0.3f}, {0.0382264853f, 0.217549875f, 0.332838446f}},
                   {{0.9f, 0.2f, 0.8f}, {0.836212277f, 0.129616171f, 0.820890248f}},
                   {{-0.05f, 0.6f, 0.02f}, {0.881117105f, 0.430641294f, -0.00902732369f}}});
}

TEST_P(HueCurves, VideoStyle) {
    expect_colors({GradingStyle::Video, true, CURVES, Direction::Forward},
                  {{{0.5f, 0.2f, 0.1f}, {0.556155205f, 0.147838205f, 0.0673011243f}},
                   {{0.1f, 0.4f, 0.3f}, {-0.0823022723f, 0.417941511f, 0.299981505f}},
                   {{0.9f, 0.2f, 0.8f}, {1.36220503f, -0.10712716f, 0.577866256f}}});
    expect_colors({GradingStyle::Video, true, CURVES, Direction::Inverse},
                  {{{0.5f, 0.2f, 0.1f}, {0.441972077f, 0.252652138f, 0.0972948372f}},
                   {{0.1f, 0.4f, 0.3f}, {0.220660552f, 0.401928961f, 0.32873553f}},
                   {{0.9f, 0.2f, 0.8f}, {0.683625281f, 0.386268705f, 0.811096668f}}});
}

TEST_P(HueCurves, LinearStyle) {
    expect_colors({GradingStyle::Linear, true, CURVES, Direction::Forward},
                  {{{0.5f, 0.2f, 0.1f}, {0.554522812f, 0.141613618f, 0.0601707846f}},
                   {{0.1f, 0.4f, 0.3f}, {0.0278898776f, 0.468125105f, 0.36431542f}},
                   {{0.3f, 0.3f, 0.3f}, {0.292425543f, 0.292425543f, 0.292425543f}},
                   {{0.9f, 0.2f, 0.8f}, {1.04053962f, 0.163642764f, 0.572446525f}},
                   {{-0.05f, 0.6f, 0.02f}, {0.0836140811f, 0.464096963f, 0.058193475f}}});
    expect_colors({GradingStyle::Linear, true, CURVES, Direction::Inverse},
                  {{{0.5f, 0.2f, 0.1f}, {0.397920072f, 0.232388839f, 0.0965527147f}},
                   {{0.1f, 0.4f, 0.3f}, {0.155435279f, 0.341913581f, 0.266616493f}},
                   {{0.3f, 0.3f, 0.3f}, {0.30688706f, 0.30688706f, 0.30688706f}},
                   {{0.9f, 0.2f, 0.8f}, {0.746195912f, 0.228037894f, 0.968320847f}},
                   {{-0.05f, 0.6f, 0.02f}, {-1.53087318f, 2.15132666f, -0.734192014f}}});
}

TEST(HueCurveParameters, AreChecked) {
    HueCurve short_of_points{GradingStyle::Log, true, CURVES, Direction::Forward};
    short_of_points.curve[3].resize(1);
    EXPECT_THROW(Program({short_of_points}), std::invalid_argument);
}

} // namespace
