#include <cmath>

#include <nlohmann/json.hpp>

#include "tests/colorio/color_formulas.h"
#include "tests/colorio/library_differences.h"
#include "tests/tool/configs.h"
#include "tests/tool/tool_fixture.h"

namespace {

using library_differences::expected;
using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class Explain : public ToolTest {
protected:
    ToolRun explain(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "explain");
        return run(arguments);
    }
    ToolRun explain_show(std::vector<std::string> arguments) {
        folder.write("show.ocio", SHOW_CONFIG);
        arguments.insert(arguments.end(), {"--config", path("show.ocio")});
        return explain(arguments);
    }
    static json answer(const ToolRun& result) {
        EXPECT_THAT(result, Succeeds());
        return json::parse(result.out);
    }
};

TEST_F(Explain, ShowsTheOperationsAndWhatTheyAreSimplifiedTo) {
    SKIP_WHERE_LISTED();
    // half_light is undone by doubling, then warm doubles red.
    const ToolRun result = explain_show({"half_light", "warm"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.out,
                AllOf(HasSubstr("source:        half_light\n"), HasSubstr("destination:   ops|warm\n"),
                      HasSubstr("1  matrix 2 0 0 0 / 0 2 0 0 / 0 0 2 0 / 0 0 0 1, offset 0 0 0 0\n"),
                      HasSubstr("2  matrix 2 0 0 0 / 0 1 0 0 / 0 0 1 0 / 0 0 0 1, offset 0 0 0 0\n"),
                      HasSubstr("simplified from 2 to 1:\n"),
                      HasSubstr("1  matrix 4 0 0 0 / 0 2 0 0 / 0 0 2 0 / 0 0 0 1, offset 0 0 0 0\n")));
    EXPECT_THAT(result.out, Not(HasSubstr("red"))) << "no pixel was given";
}

TEST_F(Explain, ShowsAPixelAfterEachOperation) {
    SKIP_WHERE_LISTED();
    const ToolRun result = explain_show({"half_light", "warm", "--pixel", "0.25,-0.5,1"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, HasSubstr("1  1    -1     2     1      matrix 4"));
}

TEST_F(Explain, SaysWhichPathIsTaken) {
    const ToolRun result = explain({"sRGB", "linear"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, HasSubstr(expected("what converts pixels between built-in spaces")));
}

TEST_F(Explain, FollowsTheSwitchInTheEnvironment) {
    fast_path.set("0");
    const ToolRun off = explain({"sRGB", "linear", "--pixel", "0.5,0.5,0.5"});
    EXPECT_THAT(off, Succeeds());
    EXPECT_THAT(off.out, AllOf(HasSubstr("converted by OpenColorIO because "),
                               HasSubstr(expected("why the library converts"))));
    fast_path.set("1");
    EXPECT_THAT(explain({"sRGB", "linear"}).out,
                HasSubstr(expected("what converts pixels between built-in spaces")));
}

TEST_F(Explain, AnswersJson) {
    SKIP_WHERE_LISTED();
    for (const char* wish : {"0", "1"}) {
        fast_path.set(wish);
        const json all = answer(explain({"sRGB", "linear", "--pixel", "0.5,0.2,0,0.25", "--json"}));
        EXPECT_EQ(all["source"], "Tavelion|sRGB");
        EXPECT_EQ(all["destination"], "Tavelion|linear");
        EXPECT_EQ(all["config"]["source"], "builtin");
        EXPECT_EQ(all["pixel"][3], 0.25);
        ASSERT_EQ(all["parts"].size(), 1u);
        const json& part = all["parts"][0];
        EXPECT_EQ(part["path"], *wish == '0' ? "opencolorio" : "simd");
        EXPECT_EQ(part.contains("reason"), *wish == '0');
        EXPECT_EQ(part.contains("vector_target"), *wish == '1');
        EXPECT_EQ(part["operations"].size(), 2u);
        const json& last = part["steps"].back();
        EXPECT_EQ(last["operation"], "1D LUT of 4101 entries, one curve");
        EXPECT_NEAR(last["pixel"][0], formula::srgb_to_linear(0.5), 5e-6);
        EXPECT_NEAR(last["pixel"][1], formula::srgb_to_linear(0.2), 5e-6);
        EXPECT_NEAR(last["pixel"][2], 0, 5e-6);
        EXPECT_EQ(last["pixel"][3], 0.25);
    }
}

TEST_F(Explain, ShowsViews) {
    for (const std::vector<std::string>& view :
         {std::vector<std::string>{"--view", "Monitor.Warm"}, {"--display", "Monitor", "--view", "Warm"}}) {
        std::vector<std::string> arguments{"lin", "--pixel", "0.25,0.5,0.75", "--json"};
        arguments.insert(arguments.end(), view.begin(), view.end());
        const json all = answer(explain_show(arguments));
        EXPECT_EQ(all["destination"], "Monitor.Warm");
        EXPECT_EQ(all["parts"][0]["steps"].back()["pixel"], json({0.5, 0.5, 0.75, 1.0}));
    }
}

TEST_F(Explain, ShowsACorrectionOnTheWay) {
    folder.write("dark.cc", "<ColorCorrection id=\"dark\"><SOPNode><Slope>0.5 0.5 0.25</Slope>"
                            "<Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode></ColorCorrection>");
    const json applied = answer(
        explain_show({"half_light", "lin", "--cdl", path("dark.cc"), "--pixel", "0.25,0.5,1", "--json"}));
    ASSERT_EQ(applied["parts"].size(), 2u);
    EXPECT_EQ(applied["parts"][0]["title"], "half_light to lin");
    EXPECT_EQ(applied["parts"][0]["steps"].back()["pixel"], json({0.5, 1.0, 2.0, 1.0}));
    EXPECT_EQ(applied["parts"][1]["title"], path("dark.cc") + " in lin");
    EXPECT_EQ(applied["parts"][1]["steps"].back()["pixel"], json({0.25, 0.5, 0.5, 1.0}));

    const json undone = answer(explain_show(
        {"lin", "lin", "--cdl", path("dark.cc"), "--inverse-cdl", "--pixel", "0.25,0.5,1", "--json"}));
    ASSERT_EQ(undone["parts"].size(), 1u);
    EXPECT_EQ(undone["parts"][0]["steps"].back()["pixel"], json({0.5, 1.0, 4.0, 1.0}));
}

TEST_F(Explain, SaysThatNothingHappensBetweenASpaceAndItself) {
    const ToolRun result = explain({"sRGB", "Tavelion|sRGB"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, HasSubstr("colors are unchanged"));
    EXPECT_TRUE(answer(explain({"sRGB", "sRGB", "--json"}))["parts"].empty());
}

TEST_F(Explain, ShowsNoStepsWhereThereAreNone) {
    SKIP_WHERE_LISTED();
    folder.write("twins.ocio",
                 "ocio_profile_version: 1\nroles: {default: a}\ndisplays: {D: [!<View> {name: V, "
                 "colorspace: a}]}\ncolorspaces: [!<ColorSpace> {name: a}, !<ColorSpace> {name: "
                 "b, isdata: true}]\n");
    const ToolRun result = explain({"a", "b", "--config", path("twins.ocio"), "--pixel", "1,2,3"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, AllOf(HasSubstr("no operations: pixels are unchanged"),
                                  Not(HasSubstr("one by one")), Not(HasSubstr("after the operation"))));
}

TEST_F(Explain, SaysWhenOperationsAreSimplifiedToAsMany) {
    SKIP_WHERE_LISTED();
    folder.write("gain.ocio", R"(ocio_profile_version: 2
roles: {default: a}
file_rules: [!<Rule> {name: Default, colorspace: default}]
displays: {D: [!<View> {name: V, colorspace: a}]}
colorspaces:
  - !<ColorSpace> {name: a}
  - !<ColorSpace> {name: gain, from_scene_reference: !<CDLTransform> {slope: [2, 1, 1], style: noclamp}}
  - !<ColorSpace> {name: log, from_scene_reference: !<LogTransform> {base: 2}}
)");
    const std::string config = path("gain.ocio");
    EXPECT_THAT(explain({"a", "gain", "--config", config}).out,
                HasSubstr("simplified to:\n#  operation\n1  matrix 2 0 0 0"));
    EXPECT_THAT(explain({"a", "log", "--config", config}).out, HasSubstr("carried out one by one:"));
}

TEST_F(Explain, TakesThreeOrFourNumbersForAPixel) {
    for (const char* pixel : {"", "1", "1,2", "1,2,3,4,5", "1,2,x", "1,,2", "1,2,3,", "nan,0,0"}) {
        const ToolRun result = explain({"sRGB", "linear", std::string("--pixel=") + pixel});
        EXPECT_THAT(result, FailsWith(2, HasSubstr("--pixel"))) << pixel;
    }
    EXPECT_THAT(explain({"sRGB", "linear", "--pixel", "-0.5,+1,1e-3"}), Succeeds());
}

TEST_F(Explain, NeedsOneDestination) {
    EXPECT_THAT(explain({"sRGB"}), FailsWith(2, HasSubstr("a second color space or --view")));
    EXPECT_THAT(explain({"sRGB", "linear", "--view", "Tavelion.sRGB"}),
                FailsWith(2, HasSubstr("cannot be combined")));
    EXPECT_THAT(explain({"sRGB", "lineer"}), FailsWith(1, HasSubstr("did you mean 'linear'")));
    EXPECT_THAT(explain({}), FailsWith(2, HasSubstr("source")));
}

} // namespace
