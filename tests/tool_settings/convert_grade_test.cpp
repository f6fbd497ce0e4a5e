#include <cmath>

#include "tests/tool/configs.h"
#include "tests/tool/images.h"
#include "tests/tool_settings/settings_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

class ConvertGrade : public SettingsTest {
protected:
    ConvertGrade() {
        folder.write("grades.ccc", GRADES);
        folder.write("show.ocio", SHOW_CONFIG);
    }

    Image convert(const std::vector<float>& color, const std::vector<std::string>& options) {
        write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeFloat, color));
        std::vector<std::string> arguments = {"convert", path("in.exr"), path("out.exr")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        EXPECT_THAT(run(arguments), Succeeds());
        return read_image(path("out.exr"));
    }

    std::string warm() const { return path("grades.ccc") + ":warm"; }
};

TEST_F(ConvertGrade, GradesBetweenASpaceAndItself) {
    const Image graded = convert({0.5f, 0.5f, 0.5f}, {"--from", "linear", "--to", "linear", "--cdl", warm()});
    EXPECT_FLOAT_EQ(graded.get("R"), 1.0f);
    EXPECT_FLOAT_EQ(graded.get("G"), 0.5f);
    EXPECT_FLOAT_EQ(graded.get("B"), 0.25f);
}

TEST_F(ConvertGrade, GradesInSceneLinearWhateverTheEnds) {
    // half_light holds half of the light: 0.25 there is 0.5, warm doubles its red to 1, which is 0.5 there.
    const Image graded = convert({0.25f, 0.25f, 0.25f}, {"--from", "half_light", "--to", "half_light",
                                                         "--cdl", warm(), "--config", path("show.ocio")});
    EXPECT_FLOAT_EQ(graded.get("R"), 0.5f);
    EXPECT_FLOAT_EQ(graded.get("B"), 0.125f);
    // An offset shows that the correction is applied to linear values, not to those of the file.
    const Image offset =
        convert({0.25f, 0.25f, 0.25f}, {"--from", "half_light", "--to", "lin", "--cdl",
                                        path("grades.ccc") + ":cold", "--config", path("show.ocio")});
    const float blue = 0.5f + 0.25f;
    const float luma = 0.2126f * 0.5f + 0.7152f * 0.5f + 0.0722f * blue;
    EXPECT_NEAR(offset.get("B"), luma + 0.8f * (blue - luma), 1e-6f);
}

TEST_F(ConvertGrade, GradesForADisplay) {
    const Image graded = convert({0.5f, 0.5f, 0.5f}, {"--from", "lin", "--view", "Monitor.Film", "--cdl",
                                                      warm(), "--config", path("show.ocio")});
    EXPECT_FLOAT_EQ(graded.get("R"), 0.5f);
}

TEST_F(ConvertGrade, RefusesAnInvalidCorrectionAsExplainAndCdlAddDo) {
    const auto correction = [](const std::string& slope, const std::string& power) {
        return "<ColorCorrection id=\"odd\"><SOPNode><Slope>" + slope +
               " 1 1</Slope><Offset>0 0 0</Offset><Power>" + power +
               " 1 1</Power></SOPNode><SATNode><Saturation>1</Saturation></SATNode></ColorCorrection>";
    };
    folder.write("slope.cc", correction("-1.5", "1"));
    folder.write("power.cc", correction("1", "0"));
    write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeFloat, {0.5f, 0.5f, 0.5f}));
    for (const auto& [file, fault] : {std::pair("slope.cc", "slope -1.5 is negative"),
                                      std::pair("power.cc", "power 0 is not greater than 0")}) {
        const auto refused = FailsWith(1, HasSubstr(path(file) + ":1: invalid CDL 'odd': " + fault));
        EXPECT_THAT(run({"convert", path("in.exr"), path("out.exr"), "--from", "linear", "--to", "linear",
                         "--cdl", path(file)}),
                    refused);
        EXPECT_THAT(run({"explain", "linear", "linear", "--cdl", path(file)}), refused);
        EXPECT_THAT(run({"cdl", "add", "odd", path(file)}), refused);
        EXPECT_THAT(run({"cdl", "show", path(file)}), Succeeds());
    }
    EXPECT_FALSE(folder.exists("out.exr"));
}

TEST_F(ConvertGrade, UndoesACorrection) {
    const Image undone = convert({1.0f, 0.5f, 0.25f},
                                 {"--from", "linear", "--to", "linear", "--cdl", warm(), "--inverse-cdl"});
    for (const char* channel : {"R", "G", "B"})
        EXPECT_FLOAT_EQ(undone.get(channel), 0.5f);
}

TEST_F(ConvertGrade, TakesTheFirstCorrectionWithoutAnId) {
    const Image graded =
        convert({0.5f, 0.5f, 0.5f}, {"--from", "linear", "--to", "linear", "--cdl", path("grades.ccc")});
    EXPECT_FLOAT_EQ(graded.get("R"), 1.0f);
}

TEST_F(ConvertGrade, FindsTheCorrectionsOfADecisionListById) {
    folder.write("shot.cdl",
                 "<ColorDecisionList><ColorDecision><ColorCorrection id=\"a\"/></ColorDecision>"
                 "<ColorDecision><ColorCorrection id=\"b\"><SOPNode><Slope>3 3 3</Slope><Offset>0 0 "
                 "0</Offset><Power>1 1 1</Power></SOPNode></ColorCorrection></ColorDecision>"
                 "</ColorDecisionList>");
    const Image graded =
        convert({0.5f, 0.5f, 0.5f}, {"--from", "linear", "--to", "linear", "--cdl", path("shot.cdl") + ":b"});
    EXPECT_FLOAT_EQ(graded.get("G"), 1.5f);
}

TEST_F(ConvertGrade, RefusesCorrectionsThatAreNotThere) {
    write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeFloat, {0, 0, 0}));
    const auto grade = [&](const std::vector<std::string>& more) {
        std::vector<std::string> arguments = {"convert", path("in.exr"), path("out.exr"), "--to", "sRGB"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    };
    EXPECT_THAT(grade({"--cdl", path("none.cc")}), FailsWith(1, HasSubstr("no such file")));
    EXPECT_THAT(grade({"--cdl", path("grades.ccc") + ":wram"}),
                FailsWith(1, HasSubstr("did you mean 'warm'?")));
    EXPECT_THAT(grade({"--inverse-cdl"}), FailsWith(2, HasSubstr("--cdl")));
    folder.write("gray.cc",
                 "<ColorCorrection><SatNode><Saturation>0</Saturation></SatNode></ColorCorrection>");
    EXPECT_THAT(
        grade({"--cdl", path("gray.cc"), "--inverse-cdl"}),
        FailsWith(1, AllOf(HasSubstr("cannot apply the CDL '" + path("gray.cc")), HasSubstr("inverted"))));
    EXPECT_FALSE(folder.exists("out.exr"));
}

TEST_F(ConvertGrade, WarnsOfWhatIsNotReadOfACorrection) {
    write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeFloat, {0, 0, 0}));
    folder.write("odd.cc",
                 "<ColorCorrection id=\"a\"><ASC_SAT><Saturation>0</Saturation></ASC_SAT></ColorCorrection>");
    EXPECT_THAT(
        run({"convert", path("in.exr"), path("out.exr"), "--to", "sRGB", "--cdl", path("odd.cc")}).err,
        HasSubstr("ASC_SAT"));
}

TEST_F(ConvertGrade, ExplainsBothEnds) {
    write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeFloat, {0.5f, 0.5f, 0.5f}));
    const ToolRun result = run(
        {"convert", path("in.exr"), path("out.exr"), "--view", "Tavelion.sRGB", "--why", "--cdl", warm()});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(
        result.out,
        HasSubstr("config:        the built-in config\n"
                  "source:        Tavelion|linear, from the built-in associations, category Open EXR\n"
                  "  --from:        not given\n"
                  "  tags:          none\n"
                  "  file rules:    the built-in config has none\n"
                  "  associations:  the built-in associations, category Open EXR, gives 'Tavelion|linear'\n"
                  "CDL:           " +
                  warm() +
                  ", in Tavelion|linear, the scene-linear color space\n"
                  "destination:   Tavelion.sRGB, view 'sRGB' of display 'Tavelion', which shows "
                  "Tavelion|sRGB\n"
                  "written as:    sRGB\n"));
    EXPECT_TRUE(folder.exists("out.exr"));
}

TEST_F(ConvertGrade, ExplainsWhatNamesMean) {
    write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeFloat, {0.5f, 0.5f, 0.5f}));
    const std::string text = print({"convert", path("in.exr"), path("out.exr"), "--why", "--from",
                                    "texture_paint", "--to", "warm", "--config", path("show.ocio")});
    EXPECT_THAT(text,
                AllOf(HasSubstr("source:        half_light, from --from 'texture_paint', a role\n"),
                      HasSubstr("destination:   ops|warm, from --to 'warm', a name without its family\n")));
    EXPECT_THAT(print({"convert", path("in.exr"), path("out.exr"), "--why", "--from", "lin", "--to",
                       "ops|warm", "--config", path("show.ocio")}),
                AllOf(HasSubstr("lin, from --from\n"), HasSubstr("ops|warm, from --to\n")));
}

TEST_F(ConvertGrade, FollowsTheAssociationsOfThePreferences) {
    print({"formats", "set", "Open EXR", "--space", "Cineon"});
    write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeFloat, {0.5f, 0.5f, 0.5f}));
    EXPECT_EQ(run({"convert", path("in.exr"), path("out.exr"), "--to", "linear"}).err,
              "in.exr: Tavelion|Cineon, from the built-in associations, category Open EXR\n");
}

} // namespace
