// LUTs that only OpenColorIO 2 writes: of whole pipelines, with shapers, and in the Common LUT Format.

#include <regex>

#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr char CONFIG[] = QB_TEST_CONFIG_FOLDER "/version_2/config.ocio";

class BakeVersionTwo : public ToolTest {
protected:
    ToolRun bake(const std::string& name, std::vector<std::string> more) {
        more.insert(more.begin(), {"bake", path(name), "--config", CONFIG});
        return run(more);
    }

    /// The number behind some words of the results.
    static double get(const ToolRun& result, const std::string& words) {
        std::smatch found;
        const bool has = std::regex_search(result.out, found, std::regex(words + "([0-9.e+-]+)"));
        EXPECT_TRUE(has) << result << result.err;
        return has ? std::stod(found[1]) : 1e9;
    }
};

TEST_F(BakeVersionTwo, EveryFormatHoldsAWholePipeline) {
    for (const char* name : {"a.cube", "a.csp", "a.clf", "a.spi3d"}) {
        const ToolRun coarse =
            bake(name, {"--from", "picking", "--view", "Monitor.Plain", "--look", "warm", "--size", "9"});
        const ToolRun fine =
            bake(name, {"--from", "picking", "--view", "Monitor.Plain", "--look", "warm", "--size", "65"});
        ASSERT_THAT(coarse, Succeeds()) << name;
        ASSERT_THAT(fine, Succeeds()) << name;
        EXPECT_LT(get(fine, "largest difference "), get(coarse, "largest difference ")) << name;
    }
}

TEST_F(BakeVersionTwo, AShaperSpacesTheLutForALinearSource) {
    for (const char* name : {"a.cube", "a.csp", "a.clf"}) {
        const ToolRun result = bake(name, {"--from", "linear", "--view", "Monitor.Film", "--shaper", "log",
                                           "--shaper-size", "4096", "--size", "33"});
        ASSERT_THAT(result, Succeeds()) << name;
        EXPECT_THAT(result.out, AllOf(HasSubstr("0 to 1 in Scene/Log|log ("), HasSubstr("in Scene|linear)")))
            << name;
        EXPECT_LT(get(result, "mean difference +"), 1e-3) << name << result.out;
    }
}

TEST_F(BakeVersionTwo, AShaperThatLosesShadowsIsAWarning) {
    EXPECT_THAT(
        bake("a.cube",
             {"--from", "linear", "--view", "Monitor.Film", "--shaper", "log", "--shaper-size", "16"})
            .err,
        AllOf(HasSubstr("warning: grays differ by up to "),
              HasSubstr("hint: the 1D LUT has even steps in the source, which are too wide for shadows")));
}

/// The shapers have the primaries of "lin" but for a rounding error, and others.
constexpr char PRIMARIES[] = R"(ocio_profile_version: 2
roles: {scene_linear: lin, default: lin}
displays:
  M:
    - !<View> {name: V, colorspace: shown}
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace>
    name: near_log
    from_scene_reference: !<GroupTransform>
      children:
        - !<MatrixTransform> {matrix: [1, 1e-5, 0, 0, 0, 1, 1e-5, 0, 0, 1e-5, 1, 0, 0, 0, 0, 1], offset: [0.0078125, 0.0078125, 0.0078125, 0]}
        - !<LogTransform> {base: 2}
        - !<MatrixTransform> {matrix: [0.1, 0, 0, 0, 0, 0.1, 0, 0, 0, 0, 0.1, 0, 0, 0, 0, 1], offset: [0.7, 0.7, 0.7, 0]}
  - !<ColorSpace>
    name: wide_log
    from_scene_reference: !<GroupTransform>
      children:
        - !<MatrixTransform> {matrix: [0.7, 0.2, 0.1, 0, 0.1, 0.8, 0.1, 0, 0.1, 0.1, 0.8, 0, 0, 0, 0, 1], offset: [0.0078125, 0.0078125, 0.0078125, 0]}
        - !<LogTransform> {base: 2}
        - !<MatrixTransform> {matrix: [0.1, 0, 0, 0, 0, 0.1, 0, 0, 0, 0, 0.1, 0, 0, 0, 0, 1], offset: [0.7, 0.7, 0.7, 0]}
  - !<ColorSpace>
    name: shown
    from_scene_reference: !<GroupTransform>
      children:
        - !<MatrixTransform> {matrix: [0.1, 0.02, 0, 0, 0, 0.1, 0, 0, 0, 0.02, 0.1, 0, 0, 0, 0, 1]}
        - !<ExponentTransform> {value: [0.5, 0.5, 0.5, 1]}
)";

TEST_F(BakeVersionTwo, AShaperOfOtherPrimariesIsTheCurveOfEachChannel) {
    folder.write("show.ocio", PRIMARIES);
    // The shaper ends where its curve does: 2^((1 - 0.7) / 0.1) - 1/128 = 7.9922.
    for (const char* shaper : {"near_log", "wide_log"})
        for (const char* name : {"a.cube", "a.csp", "a.clf"}) {
            const ToolRun result = run({"bake", path(name), "--config", path("show.ocio"), "--from", "lin",
                                        "--view", "M.V", "--shaper", shaper, "--shaper-size", "4096"});
            ASSERT_THAT(result, Succeeds()) << name << " " << shaper;
            EXPECT_THAT(result.out, HasSubstr("to 7.992 7.992 7.992 in lin)")) << name << " " << shaper;
            EXPECT_LT(get(result, "mean difference +"), 2e-3) << name << result.out;
        }
}

TEST_F(BakeVersionTwo, AViewLeadsBack) {
    for (const char* name : {"a.cube", "a.clf"}) {
        const ToolRun result = bake(name, {"--inverse-view", "Monitor.Plain", "--to", "log", "--size", "65"});
        ASSERT_THAT(result, Succeeds()) << name;
        EXPECT_LT(get(result, "mean difference +"), 1e-2) << name << result.out;
    }
}

TEST_F(BakeVersionTwo, DataIsNotConverted) {
    EXPECT_THAT(bake("a.cube", {"--from", "raw", "--view", "Monitor.Film"}),
                FailsWith(1, HasSubstr("holds data")));
}

} // namespace
