// What configs of version 2 offer to a conversion, against OpenColorIO called directly.

#include <array>

#include <OpenColorIO/OpenColorIO.h>
#include <nlohmann/json.hpp>

#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

namespace OCIO = OCIO_NAMESPACE;
using testing::AllOf;
using testing::HasSubstr;
using Color = std::array<float, 3>;

constexpr char CONFIG[] = QB_TEST_CONFIG_FOLDER "/version_2/config.ocio";
constexpr Color COLOR = {0.5f, 0.25f, 0.125f};

class ConfigFeatures : public ToolTest {
protected:
    ToolRun convert(const Color& color, std::vector<std::string> arguments) {
        write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeFloat, {color.begin(), color.end()}));
        arguments.insert(arguments.begin(), {"convert", path("in.exr"), path("out.exr"), "--config", CONFIG});
        return run(arguments);
    }

    void expect(const std::vector<std::string>& arguments, const Color& expected) {
        const ToolRun result = convert(COLOR, arguments);
        ASSERT_THAT(result, Succeeds());
        const Image out = read_image(path("out.exr"));
        EXPECT_NEAR(out.get("R"), expected[0], 1e-6);
        EXPECT_NEAR(out.get("G"), expected[1], 1e-6);
        EXPECT_NEAR(out.get("B"), expected[2], 1e-6);
    }

    /// What OpenColorIO makes of a color by a transform.
    static Color apply(const OCIO::ConstTransformRcPtr& transform, Color color = COLOR) {
        const auto processor = get_config()->getProcessor(transform);
        const auto flags = static_cast<OCIO::OptimizationFlags>(OCIO::OPTIMIZATION_LOSSLESS);
        processor->getOptimizedCPUProcessor(flags)->applyRGB(color.data());
        return color;
    }

    static Color apply_named(const char* name, OCIO::TransformDirection direction) {
        const auto named = get_config()->getNamedTransform(name);
        if (const auto stated = named->getTransform(direction))
            return apply(stated);
        const bool is_forward = direction == OCIO::TRANSFORM_DIR_FORWARD;
        const auto inverted = OCIO::GroupTransform::Create();
        inverted->appendTransform(
            named->getTransform(is_forward ? OCIO::TRANSFORM_DIR_INVERSE : OCIO::TRANSFORM_DIR_FORWARD)
                ->createEditableCopy());
        inverted->setDirection(OCIO::TRANSFORM_DIR_INVERSE);
        return apply(inverted);
    }

    static Color apply_spaces(const char* from, const char* to) {
        const auto transform = OCIO::ColorSpaceTransform::Create();
        transform->setSrc(from);
        transform->setDst(to);
        return apply(transform);
    }

    static OCIO::ConstConfigRcPtr get_config() { return OCIO::Config::CreateFromFile(CONFIG); }
};

TEST_F(ConfigFeatures, AViewIsInverted) {
    const auto view = OCIO::DisplayViewTransform::Create();
    view->setSrc("linear");
    view->setDisplay("Monitor");
    view->setView("Film");
    view->setDirection(OCIO::TRANSFORM_DIR_INVERSE);
    expect({"--inverse-view", "Monitor.Film"}, apply(view));
    view->setSrc("wide linear");
    expect({"--inverse-view", "Monitor.Film", "--to", "wide linear"}, apply(view));
}

TEST_F(ConfigFeatures, AShaderInvertsAView) {
    const ToolRun result = run({"shader", "--inverse-view", "Monitor.Plain", "--to", "linear", "--json", "-o",
                                path("gpu"), "--config", CONFIG});
    ASSERT_THAT(result, Succeeds());
    const auto difference = nlohmann::json::parse(result.out).at("differences").at(0);
    const auto view = OCIO::DisplayViewTransform::Create();
    view->setSrc("linear");
    view->setDisplay("Monitor");
    view->setView("Plain");
    view->setDirection(OCIO::TRANSFORM_DIR_INVERSE);
    const Color expected = apply(view, difference.at("at").get<Color>());
    for (std::size_t channel = 0; channel < 3; ++channel)
        EXPECT_NEAR(difference.at("cpu").at(channel).get<float>(), expected[channel], 1e-5);
}

TEST_F(ConfigFeatures, AnInvertedViewGoesBackThroughTheView) {
    expect({"--inverse-view", "Monitor.Film", "--view", "Monitor.Film"}, COLOR);
}

TEST_F(ConfigFeatures, ANamedTransformIsAppliedBothWays) {
    expect({"--from", "raw", "--named-transform", "exposure up"},
           apply_named("exposure up", OCIO::TRANSFORM_DIR_FORWARD));
    expect({"--from", "raw", "--named-transform", "curve only", "--inverse"},
           apply_named("gamma", OCIO::TRANSFORM_DIR_INVERSE));
    expect({"--from", "raw", "--named-transform", "gamma"},
           apply_named("gamma", OCIO::TRANSFORM_DIR_FORWARD));
}

TEST_F(ConfigFeatures, LooksOfAProcessSpaceAreApplied) {
    const auto looks = OCIO::LookTransform::Create();
    looks->setSrc("linear");
    looks->setDst("linear");
    looks->setLooks("-shot grade, +warm");
    expect({"--from", "linear", "--to", "linear", "--look", "-shot grade, warm"}, apply(looks));
}

TEST_F(ConfigFeatures, InactiveColorSpacesAreConvertedWithANote) {
    expect({"--from", "linear", "--to", "unpublished"}, apply_spaces("linear", "unpublished"));
    expect({"--from", "Old Scan", "--to", "linear"}, apply_spaces("unpublished", "linear"));
    EXPECT_THAT(convert(COLOR, {"--from", "linear", "--to", "unpublished"}).err,
                HasSubstr("'unpublished' is an inactive color space of config.ocio"));
    const auto view = OCIO::DisplayViewTransform::Create();
    view->setSrc("unpublished");
    view->setDisplay("Monitor");
    view->setView("Film");
    expect({"--from", "unpublished", "--view", "Monitor.Film"}, apply(view));
}

TEST_F(ConfigFeatures, DisplayReferredColorSpacesAreConvertedWithANote) {
    expect({"--from", "linear", "--to", "Monitor"}, apply_spaces("linear", "Monitor"));
    expect({"--from", "Monitor", "--to", "linear"}, apply_spaces("Monitor", "linear"));
    EXPECT_THAT(convert(COLOR, {"--from", "linear", "--to", "Monitor"}).err,
                AllOf(HasSubstr("'Display|Monitor' is display-referred: the default view transform"),
                      HasSubstr("give the view as the destination")));
    EXPECT_THAT(convert(COLOR, {"--from", "Monitor", "--to", "linear"}).err,
                HasSubstr("give the view as the source"));
}

TEST_F(ConfigFeatures, ContextVariablesChooseFiles) {
    const auto config = get_config()->createEditableCopy();
    config->addEnvironmentVar("SHOT", "dawn");
    folder.write(
        "dawn/grade.cc",
        "<ColorCorrection id=\"dawn\"><SOPNode><Slope>2 2 2</Slope><Offset>0 0 0</Offset><Power>1 1 1"
        "</Power></SOPNode></ColorCorrection>");
    std::filesystem::copy(CONFIG, path("config.ocio"));
    write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeFloat, {COLOR.begin(), COLOR.end()}));
    std::string text = folder.read("config.ocio");
    text.replace(text.find("search_path: luts:shots"), 23, "search_path: .");
    folder.write("config.ocio", text);
    const ToolRun result = run({"convert", path("in.exr"), path("out.exr"), "--config", path("config.ocio"),
                                "--from", "linear", "--to", "of the shot", "--context", "SHOT=dawn"});
    ASSERT_THAT(result, Succeeds());
    EXPECT_NEAR(read_image(path("out.exr")).get("R"), 1.0, 1e-6) << "the config's own value is dusk";
}

TEST_F(ConfigFeatures, WrongNamesAreOneClearError) {
    EXPECT_THAT(convert(COLOR, {"--from", "raw", "--named-transform", "gama"}),
                FailsWith(1, "colorio: error: no named transform 'gama' in config.ocio\nhint: did you mean "
                             "'gamma'?\n"));
    EXPECT_THAT(convert(COLOR, {"--inverse-view", "Monitor.Flim"}),
                FailsWith(1, HasSubstr("'Monitor.Film'")));
    EXPECT_THAT(convert(COLOR, {"--from", "linear", "--to", "exposure up"}),
                FailsWith(1, AllOf(HasSubstr("is a named transform of config.ocio"),
                                   HasSubstr("apply it as a named transform"))));
}

class FileRules : public ConfigFeatures {
protected:
    ToolRun explain(const std::string& name, OIIO::TypeDesc depth) {
        write_image(path(name), make_image(1, 1, 3, depth, {0.5f, 0.5f, 0.5f}));
        return run({"explain", "--image", path(name), "linear", "--why", "--config", CONFIG});
    }
};

TEST_F(FileRules, DecideBeforeTheFormat) {
    EXPECT_THAT(explain("in_scan.tif", OIIO::TypeUInt16).out,
                AllOf(HasSubstr("source:        Scene/Log|log\n"),
                      HasSubstr("  file rules:    the rule 'Scanned' gives 'log'\n")));
    EXPECT_THAT(explain("in.exr", OIIO::TypeHalf).out, HasSubstr("source:        Scene|linear\n"));
}

TEST_F(FileRules, DecideByDefaultAfterTheFormat) {
    const ToolRun result = explain("in.tga", OIIO::TypeUInt8);
    EXPECT_THAT(result.out, AllOf(HasSubstr("source:        Utility|raw\n"),
                                  HasSubstr("  file rules:    only the default rule\n"),
                                  HasSubstr("which is not in config.ocio\n"),
                                  HasSubstr("  default rule:  gives 'default'\n")));
}

TEST_F(FileRules, ThatTakeIntegersForLinearAreDoubted) {
    folder.write("show.ocio", "ocio_profile_version: 2\nroles: {default: lin, scene_linear: lin}\n"
                              "file_rules: [!<Rule> {name: Default, colorspace: lin}]\n"
                              "displays: {M: [!<View> {name: V, colorspace: lin}]}\n"
                              "colorspaces: [!<ColorSpace> {name: lin, encoding: scene-linear}]\n");
    for (const auto& [name, depth] : {std::pair("in.tga", OIIO::TypeUInt8), {"in.exr", OIIO::TypeHalf}})
        write_image(path(name), make_image(1, 1, 3, depth, {0.5f, 0.5f, 0.5f}));
    const auto explain_with = [&](const char* name) {
        return run({"explain", "--image", path(name), "lin", "--config", path("show.ocio"), "--strict"});
    };
    EXPECT_THAT(explain_with("in.tga").err,
                AllOf(HasSubstr("assigns integer pixels to 'lin'"), HasSubstr("name the color space")));
    EXPECT_THAT(explain_with("in.exr").err, testing::Not(HasSubstr("warning")));
}

TEST_F(FileRules, YieldToTags) {
    Image image = make_image(1, 1, 3, OIIO::TypeUInt8, {0.5f, 0.5f, 0.5f});
    image.spec.attribute("colorio:ColorSpace", "texture");
    write_image(path("a_scan.png"), image);
    EXPECT_THAT(run({"explain", "--image", path("a_scan.png"), "linear", "--config", CONFIG}).out,
                HasSubstr("source:        Scene|picking\n"))
        << "an alias";
}

} // namespace
