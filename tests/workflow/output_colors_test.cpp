#include "workflow/output_colors.h"

#include "tests/workflow/workflow_fixture.h"
#include "workflow/color_identity.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OutputColors : public WorkflowTest {
protected:
    workflow::Session session{options_for(R"(ocio_profile_version: 1
strictparsing: true
roles: {scene_linear: lin}
displays:
  Monitor:
    - !<View> {name: Film, colorspace: srgb_display}
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace> {name: paint}
  - !<ColorSpace> {name: acescg, family: Linear}
  - !<ColorSpace> {name: srgb_display}
)")};

    image::ColorDescription describe(const workflow::ConversionRequest& request) {
        return workflow::describe_output_colors(workflow::Conversion(session, request));
    }
    image::ColorDescription describe_space(const std::string& to) {
        workflow::ConversionRequest request;
        request.from = "lin";
        request.to = to;
        return describe(request);
    }
};

TEST_F(OutputColors, FollowFromTheCommonNameOfTheColorSpace) {
    const image::ColorDescription colors = describe_space("acescg");
    EXPECT_EQ(colors.name, "acescg");
    EXPECT_EQ(colors.interop_id, "lin_ap1_scene") << "in another case, and with a family";
    EXPECT_EQ(colors.chromaticities.size(), 8u);
    EXPECT_THAT(colors.cicp, IsEmpty()) << "ITU-T H.273 has no number for these primaries";
    EXPECT_THAT(colors.icc_profile, IsEmpty());
    EXPECT_EQ(colors.dpx_transfer, "Linear");
    EXPECT_EQ(colors.dpx_colorimetric, "");
}

TEST_F(OutputColors, OfAViewAreThoseOfItsColorSpace) {
    workflow::ConversionRequest request;
    request.from = "lin";
    request.view = "Monitor.Film";
    const image::ColorDescription colors = describe(request);
    EXPECT_EQ(colors.interop_id, "srgb_rec709_display");
    EXPECT_THAT(colors.cicp, ElementsAre(1, 13, 0, 1));
    EXPECT_FALSE(colors.icc_profile.empty());
    EXPECT_THAT(colors.chromaticities, IsEmpty()) << "they are for linear colors";
}

TEST_F(OutputColors, OfOtherColorSpacesAreTheirName) {
    const image::ColorDescription colors = describe_space("paint");
    EXPECT_EQ(colors.name, "paint");
    EXPECT_EQ(colors.interop_id + colors.dpx_transfer + colors.dpx_colorimetric, "");
    EXPECT_THAT(colors.chromaticities, IsEmpty());
    EXPECT_THAT(colors.cicp, IsEmpty());
    EXPECT_THAT(colors.icc_profile, IsEmpty());
}

TEST(DpxColors, OfAcesDensitiesArePrintingDensity) {
    const workflow::DpxColors colors =
        workflow::get_dpx_colors(workflow::remove_image_state("adx10_apd_scene"));
    EXPECT_STREQ(colors.transfer, "Printing density");
    EXPECT_STREQ(colors.colorimetric, "Printing density");
}

TEST_F(OutputColors, AreUnknownAfterALut) {
    workflow::ConversionRequest request;
    request.from = "lin";
    request.to = "srgb_display";
    request.steps.push_back({workflow::ColorStep::LUT, folder.write("half.spi1d", R"(Version 1
From 0 1
Length 2
Components 1
{
0
0.5
}
)"),
                             false});
    const image::ColorDescription colors = describe(request);
    EXPECT_EQ(colors.name, "unknown");
    EXPECT_EQ(colors.interop_id, "");
    EXPECT_THAT(colors.icc_profile, IsEmpty());
}

} // namespace
