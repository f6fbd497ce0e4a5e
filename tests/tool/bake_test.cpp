// Conversions as LUTs: what the files hold, by OpenColorIO reading them and by formulas.

#include <cmath>
#include <regex>

#include <nlohmann/json.hpp>

#include "tests/colorio/library_differences.h"
#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

/// "mixed" has a third of the red in its green: no curve alone makes it.
constexpr char CONFIG[] = R"(ocio_profile_version: 1
strictparsing: true
roles:
  scene_linear: lin
displays:
  M:
    - !<View> {name: V, colorspace: mixed}
looks:
  - !<Look> {name: half, process_space: lin, transform: !<MatrixTransform> {matrix: [0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1]}}
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace>
    name: mixed
    from_reference: !<MatrixTransform> {matrix: [0.5, 0, 0, 0, 0.25, 0.5, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]}
  - !<ColorSpace>
    name: log
    from_reference: !<GroupTransform>
      children:
        - !<MatrixTransform> {offset: [0.0078125, 0.0078125, 0.0078125, 0]}
        - !<LogTransform> {base: 2}
        - !<MatrixTransform> {matrix: [0.1, 0, 0, 0, 0, 0.1, 0, 0, 0, 0, 0.1, 0, 0, 0, 0, 1], offset: [0.7, 0.7, 0.7, 0]}
)";

class Bake : public ToolTest {
protected:
    Bake() { folder.write("show.ocio", CONFIG); }

    ToolRun bake(const std::string& name, std::vector<std::string> more) {
        more.insert(more.begin(), {"bake", path(name), "--config", path("show.ocio")});
        return run(more);
    }

    /// The largest difference that the command measured.
    static double get_largest(const ToolRun& result) {
        std::smatch found;
        const bool has = std::regex_search(result.out, found, std::regex("largest difference ([^ ]+) at"));
        EXPECT_TRUE(has) << result.out;
        return has ? std::stod(found[1]) : INFINITY;
    }

    /// A color through the LUT, which OpenColorIO reads.
    Image apply(const std::string& name, const std::vector<float>& color) {
        write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeFloat, color));
        EXPECT_THAT(run({"convert", path("in.exr"), path("out.exr"), "--config", path("show.ocio"), "--from",
                         "lin", "--lut", path(name)}),
                    Succeeds());
        return read_image(path("out.exr"));
    }
};

TEST_F(Bake, SaysWhatItWroteAndHowFarThatIsFromTheConversion) {
    const ToolRun result = bake("a.spi3d", {"--from", "lin", "--to", "mixed", "--size", "5"});
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, AllOf(HasSubstr("a.spi3d: lin to mixed, written by colorio\n"),
                                  HasSubstr("LUT against CPU, 54872 colors, 0 to 1 in lin:\n")));
    EXPECT_LT(get_largest(result), 1e-6) << "a matrix is linear between the colors of a LUT";
    EXPECT_EQ(count_files(), 2u) << "nothing else is left";
}

TEST_F(Bake, ReportsAsJson) {
    const ToolRun result = bake("a.spi3d", {"--from", "lin", "--to", "mixed", "--size", "5", "--json"});
    ASSERT_THAT(result, Succeeds());
    const nlohmann::json answer = nlohmann::json::parse(result.out);
    EXPECT_EQ(answer.at("output"), path("a.spi3d"));
    EXPECT_EQ(answer.at("source"), "lin");
    EXPECT_EQ(answer.at("destination"), "mixed");
    EXPECT_EQ(answer.at("difference").at("colors"), 54872);
    EXPECT_LT(answer.at("difference").at("largest"), 1e-6);
    EXPECT_EQ(answer.at("difference").at("lut").size(), 3u);
}

TEST_F(Bake, MeasuresTheErrorOfCurves) {
    // A parabola over a step of h = 1/4 is off by h^2/4 in its middle at most; the LUT of x^2 is measured at
    // 1/37ths.
    folder.write("square.ocio",
                 std::string(CONFIG) +
                     "  - !<ColorSpace>\n    name: squared\n    from_reference: !<ExponentTransform> "
                     "{value: [2, 2, 2, 1]}\n");
    const ToolRun result = run({"bake", path("a.spi3d"), "--config", path("square.ocio"), "--from", "lin",
                                "--to", "squared", "--size", "5"});
    ASSERT_THAT(result, Succeeds());
    double expected = 0;
    for (int i = 0; i < 38; ++i) {
        const double x = i / 37.0, low = std::floor(x * 4) / 4;
        expected = std::max(expected, low * low + (x - low) * (2 * low + 0.25) - x * x);
    }
    EXPECT_NEAR(get_largest(result), expected, 1e-4);
}

TEST_F(Bake, WarnsOfWhatIsClippedAndOfCurvesThatItCannotFollow) {
    folder.write(
        "steep.ocio",
        std::string(CONFIG) +
            "  - !<ColorSpace>\n    name: steep\n    from_reference: !<ExponentTransform> "
            "{value: [0.2, 0.2, 0.2, 1]}\n"
            "  - !<ColorSpace>\n    name: double\n    from_reference: !<MatrixTransform> {matrix: [2, "
            "0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1]}\n");
    const auto bake_to = [&](const char* name, const char* to) {
        return run({"bake", path(name), "--config", path("steep.ocio"), "--from", "lin", "--to", to});
    };
    EXPECT_THAT(bake_to("a.spi3d", "steep").err, HasSubstr("warning: grays differ by up to "));
    EXPECT_THAT(bake_to("a.spi3d", "double").err, "");
    EXPECT_THAT(
        bake_to("a.3dl", "double").err,
        HasSubstr("warning: results from 0 to 2 are clipped: the format .3dl holds 0 to 1\nhint: bake a "
                  ".cube or a .clf\n"));
}

TEST_F(Bake, RefusesWhatCannotBe) {
    EXPECT_THAT(bake("a.lut", {"--from", "lin", "--to", "mixed"}),
                FailsWith(2, HasSubstr("not one of cube, csp, clf, 3dl, spi3d")));
    EXPECT_THAT(bake("a", {"--from", "lin", "--to", "mixed"}),
                FailsWith(2, HasSubstr("the format '' is not")));
    EXPECT_THAT(bake("a.cube", {"--from", "lin", "--to", "mixed", "--size", "1"}),
                FailsWith(2, HasSubstr("2 to 129")));
    EXPECT_THAT(bake("a.spi3d", {"--from", "lin", "--to", "mixed", "--shaper", "log"}),
                FailsWith(2, HasSubstr(".spi3d has no shaper")));
    EXPECT_THAT(bake("a.3dl", {"--from", "lin", "--to", "mixed", "--shaper", "log"}),
                FailsWith(2, HasSubstr(".3dl has no shaper")));
    EXPECT_THAT(bake("a.cube", {"--from", "lin", "--to", "mixed", "--shaper-size", "16"}),
                FailsWith(2, HasSubstr("requires a shaper")));
    EXPECT_THAT(bake("a.cube", {"--from", "lin", "--to", "mixed", "--shaper", "lgo"}),
                FailsWith(1, HasSubstr("did you mean 'log'?")));
    EXPECT_THAT(bake("a.cube", {"--from", "lin"}), FailsWith(2, HasSubstr("--to or --view")));
    EXPECT_THAT(bake("a.cube", {"--to", "lin"}), FailsWith(2, HasSubstr("--from")));
    EXPECT_THAT(bake("none/a.spi3d", {"--from", "lin", "--to", "mixed"}), FailsWith(1, HasSubstr("none")));
    EXPECT_EQ(count_files(), 1u);
}

TEST_F(Bake, ReplacesAFileWholeOrNotAtAll) {
    folder.write("a.spi3d", "precious");
    EXPECT_THAT(bake("a.spi3d", {"--from", "lin", "--to", "mixde"}).code, 1);
    EXPECT_EQ(folder.read("a.spi3d"), "precious");
    EXPECT_THAT(bake("a.spi3d", {"--from", "lin", "--to", "mixed", "--size", "2"}), Succeeds());
    EXPECT_THAT(folder.read("a.spi3d"), HasSubstr("SPILUT 1.0\n3 3\n2 2 2\n0 0 0 0 0 0\n"));
}

TEST_F(Bake, HoldsLooksCdlsAndViews) {
    ASSERT_THAT(bake("a.spi3d", {"--from", "lin", "--view", "M.V", "--look", "half", "--size", "3"}),
                Succeeds());
    const Image out = apply("a.spi3d", {1.0f, 0.5f, 0.25f});
    EXPECT_NEAR(out.get("R"), 0.25, 1e-6);
    EXPECT_NEAR(out.get("G"), 0.5 * (0.25 * 1.0 + 0.5 * 0.5), 1e-6);
    EXPECT_NEAR(out.get("B"), 0.125, 1e-6);
}

TEST_F(Bake, LeadsBackFromAView) {
    SKIP_WHERE_LISTED();
    const ToolRun result = bake("a.spi3d", {"--inverse-view", "M.V", "--to", "lin", "--size", "5"});
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.out,
                AllOf(HasSubstr("a.spi3d: M.V to lin, written by colorio"), HasSubstr("0 to 1 in M.V:\n")));
    EXPECT_LT(get_largest(result), 1e-5);
    const Image out = apply("a.spi3d", {0.5f, 0.5f, 0.25f}); // "mixed" of 1, 0.5, 0.25
    EXPECT_NEAR(out.get("R"), 1.0, 1e-5);
    EXPECT_NEAR(out.get("G"), 0.5, 1e-5);
    EXPECT_NEAR(out.get("B"), 0.25, 1e-5);
    EXPECT_THAT(bake("a.cube", {"--inverse-view", "M.V"}), Succeeds());
    EXPECT_THAT(bake("a.cube", {"--inverse-view", "M.V", "--from", "lin"}),
                FailsWith(2, HasSubstr("cannot be combined")));
}

TEST_F(Bake, IsTheSameConversionInEveryFormat) {
    for (const char* name : {"a.cube", "a.csp", "a.3dl"}) {
        const ToolRun result = bake(name, {"--from", "lin", "--to", "mixed", "--size", "17"});
        ASSERT_THAT(result, Succeeds()) << name;
        const bool is_cube = std::string(name) == "a.cube"; // OpenColorIO 1.1 has no writer for it
        EXPECT_THAT(result.out, HasSubstr(is_cube ? "written by " : "written by OpenColorIO"));
        // .3dl holds integers of 12 bits; the others at least six digits.
        const double tolerance = std::string(name) == "a.3dl" ? 1.0 / 4095 : 2e-6;
        const Image out = apply(name, {0.5f, 0.25f, 0.75f});
        EXPECT_NEAR(out.get("R"), 0.25, tolerance) << name;
        EXPECT_NEAR(out.get("G"), 0.25, tolerance) << name;
        EXPECT_NEAR(out.get("B"), 0.75, tolerance) << name;
    }
}

} // namespace
