// CDLs, looks, LUTs and context variables on the way of a conversion, on every OpenColorIO.

#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

/// "lin" is scene_linear, "half_light" holds half of it. The look "double" doubles, "more" adds 0.25, both in
/// lin. "of the shot" reads the LUT of the folder that the context variable SHOT names.
constexpr char CONFIG[] = R"(ocio_profile_version: 1
search_path: $SHOT
strictparsing: true
roles:
  scene_linear: lin
displays:
  M:
    - !<View> {name: V, colorspace: half_light}
looks:
  - !<Look> {name: double, process_space: lin, transform: !<MatrixTransform> {matrix: [2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1]}}
  - !<Look> {name: more, process_space: lin, transform: !<MatrixTransform> {offset: [0.25, 0.25, 0.25, 0]}}
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace>
    name: half_light
    from_reference: !<MatrixTransform> {matrix: [0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1]}
  - !<ColorSpace>
    name: of the shot
    from_reference: !<FileTransform> {src: shot.spi1d, interpolation: linear}
)";

/// 0 becomes 0, 1 becomes `factor`.
std::string make_lut(const std::string& factor) {
    return "Version 1\nFrom 0.0 1.0\nLength 2\nComponents 1\n{\n0.0\n" + factor + "\n}\n";
}

/// Slope 3, and in the second one offset 0.5.
constexpr char CDLS[] = "<ColorCorrectionCollection><ColorCorrection id=\"triple\"><SOPNode><Slope>3 3 "
                        "3</Slope><Offset>0 0 0</Offset>"
                        "<Power>1 1 1</Power></SOPNode></ColorCorrection><ColorCorrection "
                        "id=\"add\"><SOPNode><Slope>1 1 1</Slope>"
                        "<Offset>0.5 0.5 0.5</Offset><Power>1 1 "
                        "1</Power></SOPNode></ColorCorrection></ColorCorrectionCollection>";

class Steps : public ToolTest {
protected:
    Steps() {
        folder.write("show.ocio", CONFIG);
        folder.write("a.ccc", CDLS);
        folder.write("half.spi1d", make_lut("0.5"));
        folder.write("day/shot.spi1d", make_lut("0.25"));
        folder.write("night/shot.spi1d", make_lut("0.125"));
    }

    ToolRun convert(float gray, std::vector<std::string> arguments) {
        write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeFloat, {gray, gray, gray}));
        arguments.insert(arguments.begin(),
                         {"convert", path("in.exr"), path("out.exr"), "--config", path("show.ocio")});
        return run(arguments);
    }

    /// The green of the result.
    float get(float gray, const std::vector<std::string>& arguments) {
        const ToolRun result = convert(gray, arguments);
        EXPECT_THAT(result, Succeeds());
        return result.code == 0 ? read_image(path("out.exr")).get("G") : -1.0f;
    }

    std::string cdl(const std::string& id) const { return path("a.ccc") + ":" + id; }

    EnvGuard shot{"SHOT"};
};

TEST_F(Steps, LooksAreAppliedInSceneLinear) {
    // 0.25 in half_light is 0.5 of light; doubled and increased 1.25, which is 0.625 in half_light.
    EXPECT_FLOAT_EQ(get(0.25f, {"--from", "half_light", "--to", "half_light", "--look", "double, more"}),
                    0.625f);
    EXPECT_FLOAT_EQ(get(0.5f, {"--from", "lin", "--to", "lin", "--look", "more, +double"}), 1.5f);
}

TEST_F(Steps, ALookWithAMinusIsUndone) {
    EXPECT_FLOAT_EQ(get(0.5f, {"--from", "lin", "--to", "lin", "--look", "double, -more"}), 0.75f);
    EXPECT_FLOAT_EQ(get(1.25f, {"--from", "lin", "--to", "lin", "--look", "double, more", "--inverse"}), 0.5f)
        << "--inverse undoes the whole list";
}

TEST_F(Steps, AreAppliedInTheOrderGiven) {
    const std::vector<std::string> ends = {"--from", "lin", "--to", "lin"};
    const auto with = [&](std::vector<std::string> more) {
        more.insert(more.begin(), ends.begin(), ends.end());
        return get(1.0f, more);
    };
    EXPECT_FLOAT_EQ(with({"--cdl", cdl("triple"), "--look", "more", "--cdl", cdl("add")}), 3.75f);
    EXPECT_FLOAT_EQ(with({"--look", "more", "--cdl", cdl("triple"), "--cdl", cdl("add")}), 4.25f);
    EXPECT_FLOAT_EQ(with({"--cdl", cdl("add"), "--cdl", cdl("triple"), "--look", "more"}), 4.75f);
    EXPECT_FLOAT_EQ(with({"--cdl", cdl("add"), "--inverse", "--cdl", cdl("triple")}), 1.5f);
    EXPECT_NEAR(with({"--cdl", cdl("triple"), "--cdl", cdl("add"), "--inverse-cdl"}), 1.0 / 3 - 0.5, 1e-6);
}

TEST_F(Steps, TheFirstCorrectionOfACollectionIsTakenWithANote) {
    const ToolRun result = convert(1.0f, {"--from", "lin", "--to", "lin", "--cdl", path("a.ccc")});
    ASSERT_THAT(result, Succeeds());
    EXPECT_FLOAT_EQ(read_image(path("out.exr")).get("G"), 3.0f);
    EXPECT_THAT(
        result.err,
        HasSubstr("'" + path("a.ccc") +
                  "' has 2 color corrections, and the first one, 'triple', is used\nhint: choose one with " +
                  path("a.ccc") + ":ID; its ids: triple, add\n"));
    EXPECT_THAT(run({"cdl", "show", path("a.ccc")}).err, HasSubstr("the first one, 'triple', is used"));
    for (const std::string& chosen : {cdl("triple"), cdl("add")})
        EXPECT_THAT(convert(1.0f, {"--from", "lin", "--to", "lin", "--cdl", chosen}).err,
                    testing::Not(HasSubstr("color corrections")));
}

TEST_F(Steps, ALutIsAppliedToTheResult) {
    EXPECT_FLOAT_EQ(get(0.5f, {"--from", "lin", "--to", "half_light", "--lut", path("half.spi1d")}), 0.125f);
    EXPECT_FLOAT_EQ(get(0.5f, {"--from", "lin", "--lut", path("half.spi1d")}), 0.25f)
        << "without a destination";
    EXPECT_FLOAT_EQ(get(0.25f, {"--from", "lin", "--lut", path("half.spi1d"), "--inverse"}), 0.5f);
    EXPECT_FLOAT_EQ(get(0.5f, {"--from", "lin", "--lut", path("half.spi1d"), "--lut", path("half.spi1d")}),
                    0.125f);
}

TEST_F(Steps, NobodyKnowsTheColorSpaceBehindALut) {
    write_image(path("in.png"), make_image(1, 1, 3, OIIO::TypeUInt8, {0.5f, 0.5f, 0.5f}));
    for (const char* output : {"out.png", "out.exr", "out.dpx"}) {
        ASSERT_THAT(
            run({"convert", path("in.png"), path(output), "--from", "sRGB", "--lut", path("half.spi1d")}),
            Succeeds());
        EXPECT_THAT(run({"explain", "--image", path(output), "linear", "--why"}).out,
                    HasSubstr("  tags:          colorio:ColorSpace 'unknown' says that its color space is "
                              "unknown\n"))
            << output;
        const auto convert = [&](const std::vector<std::string>& more) {
            std::vector<std::string> arguments = {"convert", path(output), path("next.exr"), "--to",
                                                  "linear"};
            arguments.insert(arguments.end(), more.begin(), more.end());
            return run(arguments);
        };
        EXPECT_THAT(convert({"--strict"}), FailsWith(1, HasSubstr("color space is unknown"))) << output;
        EXPECT_THAT(convert({}).err, HasSubstr("color space is unknown")) << output;
        EXPECT_THAT(convert({"--from", "sRGB", "--strict"}), Succeeds()) << output;
    }
}

TEST_F(Steps, AreExplained) {
    const ToolRun result = run({"explain", "lin", "half_light", "--look", "double", "--cdl", cdl("triple"),
                                "--lut", path("half.spi1d"), "--config", path("show.ocio")});
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, AllOf(HasSubstr("double in lin"), HasSubstr("a.ccc:triple in lin"),
                                  HasSubstr("lin to half_light"), HasSubstr("LUT ")));
    EXPECT_THAT(convert(0.5f, {"--from", "lin", "--to", "lin", "--look", "double", "--why"}).out,
                HasSubstr("looks:         double, in lin, the scene-linear color space\n"));
}

TEST_F(Steps, WrongOnesAreOneClearError) {
    const auto with = [&](std::vector<std::string> more) {
        more.insert(more.begin(), {"--from", "lin", "--to", "lin"});
        return convert(0.5f, more);
    };
    EXPECT_THAT(
        with({"--look", "dobule"}),
        FailsWith(1, "colorio: error: no look 'dobule' in show.ocio\nhint: did you mean 'double'?\n"));
    EXPECT_THAT(with({"--look", "double,,more"}), FailsWith(2, HasSubstr("is not a list of looks")));
    EXPECT_THAT(with({"--inverse"}), FailsWith(2, HasSubstr("--inverse needs a preceding --cdl")));
    EXPECT_THAT(with({"--lut", path("gone.cube")}), FailsWith(1, HasSubstr("gone.cube': no such file")));
    EXPECT_THAT(with({"--lut", path("show.ocio")}), FailsWith(1, HasSubstr("cannot apply the LUT")));
    EXPECT_THAT(with({"--cdl", cdl("tripel")}), FailsWith(1, HasSubstr("did you mean 'triple'?")));
    EXPECT_THAT(with({"--inverse-view", "M.V"}),
                FailsWith(2, HasSubstr("--from and --inverse-view cannot be combined")));
    EXPECT_FALSE(folder.exists("out.exr"));
}

TEST_F(Steps, ContextVariablesChooseTheFilesOfAConfig) {
    EXPECT_FLOAT_EQ(get(0.5f, {"--from", "lin", "--to", "of the shot", "--context", "SHOT=day"}), 0.125f);
    EXPECT_FLOAT_EQ(get(0.5f, {"--from", "lin", "--to", "of the shot", "--context", "SHOT=night"}), 0.0625f);
    shot.set("day");
    EXPECT_FLOAT_EQ(get(0.5f, {"--from", "lin", "--to", "of the shot"}), 0.125f);
    EXPECT_FLOAT_EQ(get(0.5f, {"--from", "lin", "--to", "of the shot", "--context", "SHOT=night"}), 0.0625f)
        << "before that of the environment";
    EXPECT_THAT(run({"check", "--config", path("show.ocio"), "--context", "SHOT=night"}), Succeeds());
    EXPECT_THAT(run({"check", "--config", path("show.ocio"), "--context", "SHOT=nowhere"}).code, 1);
}

TEST_F(Steps, WrongContextVariablesAreReported) {
    EXPECT_THAT(convert(0.5f, {"--from", "lin", "--to", "half_light", "--context", "SHOT"}),
                FailsWith(2, HasSubstr("'SHOT' is not a context variable KEY=VALUE")));
    EXPECT_THAT(convert(0.5f, {"--from", "lin", "--to", "half_light", "--context", "SHTO=day"}).err,
                HasSubstr("show.ocio does not use the context variable 'SHTO'"));
}

} // namespace
