// Which color space a DPX file is taken to be in, when the user does not say.

#include "tests/tool/file_space_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

using DpxFileSpace = FileSpaceTest;

TEST_F(DpxFileSpace, IsCineonForFilmScans) {
    OIIO::ImageSpec spec;
    spec.attribute("oiio:ColorSpace", "KodakLog");
    write("scan.dpx", OIIO::TypeUInt16, 0.5f, spec);
    EXPECT_THAT(explain("scan.dpx", {"linear"}).out, HasSubstr("source:        Tavelion|Cineon\n"));
}

TEST_F(DpxFileSpace, OfDpxTakesTransferAndPrimaries) {
    const auto write_dpx = [&](const char* transfer, const char* colorimetric) {
        OIIO::ImageSpec spec;
        spec.attribute("dpx:Transfer", transfer);
        spec.attribute("dpx:Colorimetric", colorimetric);
        write("in.dpx", OIIO::TypeUInt16, 0.5f, spec);
    };
    write_config({"lin_rec709", "Rec.1886 Rec.709 - Display", "Camera Rec.709", "paint"},
                 "  matte_paint: paint\n");
    for (const auto& [transfer, space] : {std::pair("Linear", "lin_rec709"),
                                          {"ITU-R 709-4", "Camera Rec.709"},
                                          {"SMPTE 274M", "Camera Rec.709"}}) {
        write_dpx(transfer, "ITU-R 709-4");
        EXPECT_THAT(explain("in.dpx", with_config()).out,
                    HasSubstr(std::string("source:        ") + space + "\n"))
            << transfer;
        write_dpx(transfer, "Undefined");
        const ToolRun result = explain("in.dpx", with_config());
        const bool is_linear = std::string(transfer) == "Linear";
        EXPECT_THAT(result.out,
                    AllOf(HasSubstr(is_linear ? "source:        lin\n" : "source:        paint\n"),
                          HasSubstr(std::string("  tags:          dpx:Transfer '") + transfer +
                                    "' with dpx:Colorimetric 'Undefined' does not specify the "
                                    "primaries\n")));
        EXPECT_THAT(
            run({"explain", "--image", path("in.dpx"), "lin", "--strict", "--config", path("show.ocio")}),
            FailsWith(1, HasSubstr("cannot determine the color space of 'in.dpx'")));
    }
}

TEST_F(DpxFileSpace, IsAssumedToBeSceneLinearForLinearPixels) {
    OIIO::ImageSpec spec;
    spec.attribute("dpx:Transfer", "Linear");
    write("in.dpx", OIIO::TypeUInt16, 0.5f, spec);
    EXPECT_THAT(explain("in.dpx", {"sRGB"}).out,
                AllOf(HasSubstr("source:        Tavelion|linear\n"),
                      HasSubstr("  assumption:    the role scene_linear for linear pixels\n")));
    EXPECT_THAT(run({"explain", "--image", path("in.dpx"), "sRGB", "--strict"}),
                FailsWith(1, HasSubstr("does not specify the primaries")));
}

} // namespace
