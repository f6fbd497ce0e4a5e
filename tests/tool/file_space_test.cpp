// Which color space an image is taken to be in, when the user does not say.

#include <nlohmann/json.hpp>

#include "tests/tool/color_tag_files.h"
#include "tests/tool/configs.h"
#include "tests/tool/file_space_fixture.h"

namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

using FileSpace = FileSpaceTest;

TEST_F(FileSpace, IsTheOneThatAConversionRecorded) {
    write("in.exr", OIIO::TypeFloat, 0.18f);
    for (const auto& [name, depth] : {std::pair("tagged.png", "uint16"), {"tagged.exr", "float"}}) {
        ASSERT_THAT(run({"convert", path("in.exr"), path(name), "--to", "Cineon", "-d", depth}), Succeeds());
        const ToolRun result = run({"convert", path(name), path("out.exr"), "--to", "linear", "-d", "float"});
        ASSERT_THAT(result, Succeeds());
        EXPECT_THAT(result.err, AllOf(HasSubstr(std::string(name) + ": Tavelion|Cineon, from the tag "),
                                      EndsWith("ColorSpace 'Cineon'\n")));
        EXPECT_NEAR(read_image(path("out.exr")).get("G"), 0.18, 1e-4) << "read as sRGB it would be 0.1662";
    }
}

TEST_F(FileSpace, IsThatOfTheFormatWhereTheFileSaysNothing) {
    write("in.png", OIIO::TypeUInt8, 0.5f);
    const ToolRun result = explain("in.png", {"linear"});
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(
        result.out,
        HasSubstr("source:        Tavelion|sRGB\n"
                  "  --from:        not given\n"
                  "  tags:          none\n"
                  "  file rules:    the built-in config has none\n"
                  "  associations:  the built-in associations, category Png, gives 'Tavelion|sRGB'\n"))
        << "the sRGB that OpenImageIO assumes of every PNG file is not a tag";
}

TEST_F(FileSpace, IsSrgbWhereTheFileStatesIt) {
    OIIO::ImageSpec srgb;
    srgb.attribute("oiio:ColorSpace", "sRGB");
    write("a.png", OIIO::TypeUInt8, 0.5f, srgb);
    write("a.jpg", OIIO::TypeUInt8, 0.5f, srgb);
    write("a.tif", OIIO::TypeUInt8, 0.5f, srgb);
    write_config({"Utility - sRGB - Texture"});
    for (const char* name : {"a.png", "a.jpg", "a.tif"}) {
        const ToolRun result = explain(name, with_config());
        ASSERT_THAT(result, Succeeds());
        EXPECT_THAT(result.out, HasSubstr("source:        Utility - sRGB - Texture\n")) << name;
    }
}

TEST_F(FileSpace, IsTheOneOfAGammaChunk) {
    OIIO::ImageSpec gamma;
    gamma.attribute("oiio:ColorSpace", "Gamma2.2");
    gamma.attribute("oiio:Gamma", 2.2f);
    write("in.png", OIIO::TypeUInt8, 0.5f, gamma);
    write_config({"g22_rec709"});
    EXPECT_THAT(explain("in.png", with_config()).out,
                AllOf(HasSubstr("  tags:          oiio:ColorSpace '"), HasSubstr("' is g22_rec709\n")));
}

TEST_F(FileSpace, IsTheOneOfACicpChunk) {
    write("in.png", OIIO::TypeUInt8, 0.5f);
    insert_png_chunk(path("in.png"), "cICP", std::string("\x0c\x0d\x00\x01", 4));
    write_config({"srgb_p3d65"});
    EXPECT_THAT(explain("in.png", with_config()).out,
                AllOf(HasSubstr("  tags:          "), HasSubstr(" is srgb_p3d65\n")));
    write("pq.png", OIIO::TypeUInt8, 0.5f);
    insert_png_chunk(path("pq.png"), "cICP", std::string("\x09\x10\x00\x01", 4));
    write_config({"Rec.2100-PQ - Display"});
    EXPECT_THAT(explain("pq.png", with_config()).out, HasSubstr(" is Rec.2100-PQ - Display\n"));
}

TEST_F(FileSpace, IsTheOneOfARecognizedProfile) {
    const auto write_profile = [&](const char* name, const std::vector<std::uint8_t>& profile) {
        OIIO::ImageSpec spec;
        spec.attribute("ICCProfile", OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(profile.size())),
                       profile.data());
        write(name, OIIO::TypeUInt8, 0.5f, spec);
    };
    write_config({"srgb_tx", "g22_adobergb", "lin_rec709"});
    write_profile("srgb.png", make_icc_profile(SRGB_COLORANTS, 0));
    EXPECT_THAT(explain("srgb.png", with_config()).out, HasSubstr("ICC profile is srgb_tx\n"));
    // Adobe RGB (1998), 4.3.5, adapted to D50; its exponent is 2 + 51/256.
    write_profile("adobe.tif", make_icc_profile({0.60974, 0.31111, 0.01947, 0.20528, 0.62567, 0.06087,
                                                 0.14919, 0.06322, 0.74457},
                                                2 * 256 + 51));
    EXPECT_THAT(explain("adobe.tif", with_config()).out, HasSubstr("ICC profile is g22_adobergb\n"));
    write_profile("linear.tif", make_icc_profile(SRGB_COLORANTS, 256));
    EXPECT_THAT(explain("linear.tif", with_config()).out, HasSubstr("ICC profile is lin_rec709\n"));
    write_profile("odd.tif", make_icc_profile({0.5, 0.3, 0.1, 0.3, 0.6, 0.1, 0.2, 0.1, 0.6}, 256));
    EXPECT_THAT(explain("odd.tif", with_config()).out, HasSubstr("ICC profile is not recognized\n"));
}

TEST_F(FileSpace, SurvivesDamagedProfiles) {
    std::vector<std::uint8_t> profile = make_icc_profile(SRGB_COLORANTS, 0);
    write_config({"srgb_tx"});
    for (const std::size_t size :
         {std::size_t{4}, std::size_t{130}, std::size_t{210}, profile.size() - 2000}) {
        const std::vector<std::uint8_t> cut(profile.begin(),
                                            profile.begin() + static_cast<std::ptrdiff_t>(size));
        OIIO::ImageSpec spec;
        spec.attribute("ICCProfile", OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(size)),
                       cut.data());
        write("cut.tif", OIIO::TypeUInt8, 0.5f, spec);
        EXPECT_THAT(explain("cut.tif", with_config()).out, HasSubstr("ICC profile is not recognized\n"))
            << size;
    }
}

TEST_F(FileSpace, IsTheLinearOneOfKnownChromaticities) {
    OIIO::ImageSpec spec;
    const float ap1[] = {0.713f, 0.293f, 0.165f, 0.830f, 0.128f, 0.044f, 0.32168f, 0.33767f};
    spec.attribute("chromaticities", OIIO::TypeDesc(OIIO::TypeDesc::FLOAT, 8), ap1);
    write("in.exr", OIIO::TypeHalf, 0.5f, spec);
    write_config({"ACEScg"});
    EXPECT_THAT(explain("in.exr", with_config()).out, HasSubstr("source:        ACEScg\n"));
}

TEST_F(FileSpace, IsTheOneOfAnInteropId) {
    OIIO::ImageSpec spec;
    spec.attribute("colorInteropID", "lin_ap1_scene");
    write("in.exr", OIIO::TypeHalf, 0.5f, spec);
    write_config({"ACEScg", "lin_ap1_scene"});
    EXPECT_THAT(explain("in.exr", with_config()).out, HasSubstr("source:        lin_ap1_scene\n"));
    write_config({"ACEScg"});
    EXPECT_THAT(explain("in.exr", with_config()).out, HasSubstr("source:        ACEScg\n"));
    write_config({});
    const ToolRun result = explain("in.exr", with_config());
    EXPECT_THAT(result.out, HasSubstr("colorInteropID 'lin_ap1_scene' is not a color space of show.ocio\n"));
    EXPECT_THAT(result.err, HasSubstr("does not name a color space of show.ocio"));
}

TEST_F(FileSpace, OfATagThatIsNotInTheConfigIsSaidAndPassedOver) {
    OIIO::ImageSpec spec;
    spec.attribute("colorio:ColorSpace", "Cineon");
    write("in.png", OIIO::TypeUInt8, 0.5f, spec);
    write_config({"paint"}, "  matte_paint: paint\n");
    const ToolRun result = explain("in.png", with_config());
    EXPECT_THAT(result.err,
                HasSubstr("'in.png': its tag colorio:ColorSpace 'Cineon' does not name a color space"));
    EXPECT_THAT(result.out, HasSubstr("source:        paint\n"));
}

TEST_F(FileSpace, IsAssumedByTheTypeOfThePixels) {
    write("in.png", OIIO::TypeUInt8, 0.5f);
    write("in.exr", OIIO::TypeHalf, 0.5f);
    write_config({"paint"}, "  matte_paint: paint\n");
    const ToolRun integers = explain("in.png", with_config());
    ASSERT_THAT(integers, Succeeds());
    EXPECT_THAT(integers.out, AllOf(HasSubstr("source:        paint\n"),
                                    HasSubstr("'Tavelion|sRGB', which is not in show.ocio\n"),
                                    HasSubstr("  assumption:    the role matte_paint for integer pixels\n")));
    EXPECT_THAT(integers.err, AllOf(HasSubstr("warning: in.png: paint, assumed"), HasSubstr("--from")));
    const ToolRun floats = explain("in.exr", with_config());
    EXPECT_THAT(floats.out, HasSubstr("source:        lin\n"));
    EXPECT_THAT(floats.err, HasSubstr("assumed: the role scene_linear, for float pixels"));
}

TEST_F(FileSpace, IsNotAssumedUnderStrict) {
    write("in.png", OIIO::TypeUInt8, 0.5f);
    write_config({"paint"}, "  matte_paint: paint\n");
    EXPECT_THAT(
        run({"convert", path("in.png"), path("out.png"), "--to", "lin", "--strict", "--config",
             path("show.ocio")}),
        FailsWith(1, AllOf(HasSubstr("cannot determine the color space of 'in.png'"), HasSubstr("--from"))));
    EXPECT_FALSE(folder.exists("out.png"));
    EXPECT_THAT(run({"convert", path("in.png"), path("out.png"), "--to", "linear", "--strict"}), Succeeds())
        << "the association of the format is not an assumption";
}

TEST_F(FileSpace, OfASequenceIsThatOfItsFirstImage) {
    OIIO::ImageSpec spec;
    spec.attribute("colorio:ColorSpace", "Cineon");
    write("shot.0003.png", OIIO::TypeUInt8, 0.5f, spec);
    EXPECT_THAT(
        run({"convert", path("shot.####.png"), path("out.####.exr"), "--frames", "1-3", "--to", "linear"})
            .err,
        HasSubstr("shot.0003.png: Tavelion|Cineon, from the tag"));
}

TEST_F(FileSpace, OfASequenceWithOtherTagsFurtherOnIsNoted) {
    OIIO::ImageSpec spec;
    spec.attribute("colorio:ColorSpace", "Cineon");
    write("shot.1.png", OIIO::TypeUInt8, 0.5f, spec);
    write("shot.2.png", OIIO::TypeUInt8, 0.5f, spec);
    const auto convert = [&] {
        return run({"convert", path("shot.#.png"), path("out.#.exr"), "--frames", "1-2", "--to", "linear"});
    };
    EXPECT_THAT(convert().err, Not(HasSubstr("differ")));
    write("shot.2.png", OIIO::TypeUInt8, 0.5f);
    EXPECT_THAT(convert().err, HasSubstr("the color tags of some images differ from those of the first one"));
}

TEST_F(FileSpace, TagsDoNotOutliveTheColorsThatTheyDescribe) {
    OIIO::ImageSpec spec;
    const float ap1[] = {0.713f, 0.293f, 0.165f, 0.830f, 0.128f, 0.044f, 0.32168f, 0.33767f};
    spec.attribute("chromaticities", OIIO::TypeDesc(OIIO::TypeDesc::FLOAT, 8), ap1);
    spec.attribute("colorInteropID", "lin_ap1_scene");
    write("in.exr", OIIO::TypeHalf, 0.5f, spec);
    write_config({"paint"});
    ASSERT_THAT(run({"convert", path("in.exr"), path("out.exr"), "--from", "lin", "--to", "paint", "--config",
                     path("show.ocio")}),
                Succeeds());
    const Image out = read_image(path("out.exr"));
    EXPECT_EQ(out.spec.find_attribute("colorInteropID"), nullptr);
    EXPECT_EQ(out.spec.find_attribute("chromaticities"), nullptr);
}

TEST_F(FileSpace, IsExplainedAsJson) {
    write("in.png", OIIO::TypeUInt8, 0.5f);
    const ToolRun result = run({"explain", "--image", path("in.png"), "linear", "--json"});
    const auto answer = nlohmann::json::parse(result.out);
    EXPECT_EQ(answer.at("source"), "Tavelion|sRGB");
    EXPECT_EQ(answer.at("source_assumed"), false);
    EXPECT_EQ(answer.at("source_steps").at(0), nlohmann::json({{"step", "tags"}, {"answer", "none"}}));
}

TEST_F(FileSpace, ExplainTakesOneSource) {
    write("in.png", OIIO::TypeUInt8, 0.5f);
    EXPECT_THAT(explain("in.png", {"linear", "sRGB"}), FailsWith(2, HasSubstr("the source is given twice")));
    EXPECT_THAT(explain("in.png", {"linear", "--inverse-view", "Tavelion.sRGB"}),
                FailsWith(2, HasSubstr("--image and --inverse-view cannot be combined")));
    EXPECT_THAT(run({"explain"}), FailsWith(2, HasSubstr("no source")));
}

} // namespace
