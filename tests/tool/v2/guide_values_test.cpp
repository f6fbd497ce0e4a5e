// The values that the commands of the guide's table write are those of OpenColorIO called directly.

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <map>
#include <sstream>

#include <OpenColorIO/OpenColorIO.h>
#include <nlohmann/json.hpp>

#include "tests/tool/images.h"
#include "tests/tool/native_image.h"
#include "tests/tool/v2/guide_fixture.h"

namespace OCIO = OCIO_NAMESPACE;

namespace {

constexpr float FLOAT_TOLERANCE = 1e-6f; ///< Relative to the larger of the value and 1.

/// Makes a processor of the library for one step of a conversion.
using Step = std::function<OCIO::ConstProcessorRcPtr(const OCIO::Config& config)>;

Step convert(const char* from, const char* to) {
    return [=](const OCIO::Config& config) { return config.getProcessor(from, to); };
}

Step convert_for_shot(const char* shot, const char* from, const char* to) {
    return [=](const OCIO::Config& config) {
        const OCIO::ContextRcPtr context = config.getCurrentContext()->createEditableCopy();
        context->setStringVar("SHOT", shot);
        return config.getProcessor(context, from, to);
    };
}

Step show(const char* from, OCIO::TransformDirection direction = OCIO::TRANSFORM_DIR_FORWARD) {
    return [=](const OCIO::Config& config) {
        const OCIO::DisplayViewTransformRcPtr view = OCIO::DisplayViewTransform::Create();
        view->setSrc(from);
        view->setDisplay("sRGB");
        view->setView("Film");
        return config.getProcessor(view, direction);
    };
}

Step look(const char* looks) {
    return [=](const OCIO::Config& config) {
        const OCIO::LookTransformRcPtr transform = OCIO::LookTransform::Create();
        transform->setSrc("ACEScg");
        transform->setDst("ACEScg");
        transform->setLooks(looks);
        return config.getProcessor(transform, OCIO::TRANSFORM_DIR_FORWARD);
    };
}

Step apply_file(const std::string& path, const char* id, OCIO::TransformDirection direction) {
    return [=](const OCIO::Config& config) {
        const OCIO::FileTransformRcPtr file = OCIO::FileTransform::Create();
        file->setSrc(path.c_str());
        file->setCCCId(id);
        file->setInterpolation(OCIO::INTERP_LINEAR);
        return config.getProcessor(file, direction);
    };
}

Step undo_named_transform(const char* name) {
    return [=](const OCIO::Config& config) {
        return config.getProcessor(config.getNamedTransform(name)->getTransform(OCIO::TRANSFORM_DIR_FORWARD),
                                   OCIO::TRANSFORM_DIR_INVERSE);
    };
}

/// A command of the table and what it does to colors.
struct Row {
    std::string input;
    std::vector<std::string> outputs;
    std::vector<Step> steps;
    std::map<int, std::vector<std::string>> layers = {
        {0, {""}}};      ///< Prefixes of converted channels, by part.
    float tolerance = 0; ///< Of lossy compression and of dither; 0 for that of the pixel type.
};

class GuideValues : public GuideFixture {
protected:
    GuideValues() : config(OCIO::Config::CreateFromFile("show.ocio")) {}

    std::map<std::string, Row> make_rows() const;

    /// What the library makes of a color.
    std::vector<float> apply(const std::vector<Step>& steps, std::vector<float> rgb) const {
        for (const Step& step : steps)
            step(*config)->getOptimizedCPUProcessor(OCIO::OPTIMIZATION_NONE)->applyRGB(rgb.data());
        return rgb;
    }

    void compare(const Row& row, const std::string& output) const;
    void compare_part(const Row& row, const Image& before, const Image& after, int part) const;

    OCIO::ConstConfigRcPtr config;
};

std::map<std::string, Row> GuideValues::make_rows() const {
    const auto cdl = [&](const char* id, OCIO::TransformDirection direction = OCIO::TRANSFORM_DIR_FORWARD) {
        return apply_file(path("grades.ccc"), id, direction);
    };
    const Step encode = convert("ACEScg", "ACEScct");
    const std::vector<std::string> frames = {"out.0001.exr", "out.0002.exr"};
    const Row sequence{"shot.0001.exr", frames, {encode}};
    const std::string of_sequence = "convert shot.####.exr out.####.exr --from ACEScg --to ACEScct";
    return {
        {"convert render.exr out.exr --from ACEScg --to ACEScct", {"render.exr", {"out.exr"}, {encode}}},
        {"convert render.exr out.png --from ACEScg --view sRGB.Film",
         {"render.exr", {"out.png"}, {show("ACEScg")}}},
        {"convert graded.png out.exr --inverse-view sRGB.Film",
         {"graded.png", {"out.exr"}, {show("ACEScg", OCIO::TRANSFORM_DIR_INVERSE)}}},
        {"convert scan.dpx out.exr --to ACEScg --why --strict",
         {"scan.dpx", {"out.exr"}, {convert("ACEScct", "ACEScg")}}},
        {"convert render.exr out.exr --from ACEScg --to ACEScg --look \"film, -warm\"",
         {"render.exr", {"out.exr"}, {look("+film, -warm")}}},
        {"convert render.exr out.exr --from ACEScg --to ACEScct --cdl grades.ccc:shot_020",
         {"render.exr", {"out.exr"}, {cdl("shot_020"), encode}}},
        {"convert render.exr out.exr --from ACEScg --to ACEScct --cdl grades.ccc:shot_010 --look film --cdl "
         "grades.ccc:shot_020 --inverse",
         {"render.exr",
          {"out.exr"},
          {cdl("shot_010"), look("+film"), cdl("shot_020", OCIO::TRANSFORM_DIR_INVERSE), encode}}},
        {"convert log.exr out.exr --from ACEScct --lut show.cube --inverse",
         {"log.exr", {"out.exr"}, {apply_file(path("show.cube"), "", OCIO::TRANSFORM_DIR_INVERSE)}}},
        {"convert log.exr out.exr --from ACEScct --named-transform \"Printing density\" --inverse",
         {"log.exr", {"out.exr"}, {undo_named_transform("Printing density")}}},
        {"convert render.exr out.exr --from ACEScg --to Shot --context SHOT=sq020",
         {"render.exr", {"out.exr"}, {convert_for_shot("sq020", "ACEScg", "Shot")}}},
        {"convert render.exr out.dpx --from ACEScg --to ACEScct -d uint10",
         {"render.exr", {"out.dpx"}, {encode}, {{0, {""}}}, 0.5f / 1023 + 1e-5f}},
        {"convert render.exr out.exr --from ACEScg --to ACEScct --compression dwaa --quality 45",
         {"render.exr", {"out.exr"}, {encode}, {{0, {""}}}, 5e-3f}},
        {"convert render.exr out.png --from ACEScg --view sRGB.Film -d uint8 --dither",
         {"render.exr", {"out.png"}, {show("ACEScg")}, {{0, {""}}}, 1.0f / 255}},
        {"convert layers.exr out.exr --from ACEScg --to ACEScct",
         {"layers.exr", {"out.exr"}, {encode}, {{0, {"", "diffuse."}}}}},
        {"convert layers.exr out.exr --from ACEScg --to ACEScct --skip diffuse",
         {"layers.exr", {"out.exr"}, {encode}, {{0, {""}}}}},
        {"convert parts.exr out.exr --from ACEScg --to ACEScct --parts beauty",
         {"parts.exr", {"out.exr"}, {encode}, {{0, {"", "diffuse."}}}}},
        {of_sequence, sequence},
        {of_sequence + " --resume", sequence},
        {of_sequence + " --json", sequence},
        {of_sequence + " --memory 2G", sequence},
    };
}

/// Half a code value, or less than a rounding error of the library.
float get_tolerance(const Image& image) {
    return image.spec.format == OIIO::TypeUInt8    ? 0.5f / 255 + FLOAT_TOLERANCE
           : image.spec.format == OIIO::TypeUInt16 ? 0.5f / 65535 + FLOAT_TOLERANCE
                                                   : FLOAT_TOLERANCE;
}

void GuideValues::compare(const Row& row, const std::string& output) const {
    const int parts = count_subimages(row.input);
    ASSERT_EQ(count_subimages(output), parts);
    for (int part = 0; part < parts; ++part)
        compare_part(row, read_image(row.input, part), read_image(output, part), part);
}

void GuideValues::compare_part(const Row& row, const Image& before, const Image& after, int part) const {
    ASSERT_EQ(after.spec.width, before.spec.width);
    const float tolerance = row.tolerance > 0 ? row.tolerance : get_tolerance(after);
    const bool is_integer = !after.spec.format.is_floating_point();
    std::vector<std::string> left = before.spec.channelnames;
    const auto found = row.layers.find(part);
    for (const std::string& prefix : found == row.layers.end() ? std::vector<std::string>() : found->second)
        for (int x = 0; x < before.spec.width; ++x) {
            const std::string names[] = {prefix + "R", prefix + "G", prefix + "B"};
            const std::vector<float> expected =
                apply(row.steps, {before.get(names[0], x), before.get(names[1], x), before.get(names[2], x)});
            for (std::size_t i = 0; i < 3; ++i) {
                const float value = is_integer ? std::clamp(expected[i], 0.0f, 1.0f) : expected[i];
                EXPECT_NEAR(after.get(names[i], x), value, tolerance * std::max(1.0f, std::abs(value)))
                    << names[i] << " of pixel " << x << " of part " << part;
                left.erase(std::remove(left.begin(), left.end(), names[i]), left.end());
            }
        }
    for (const std::string& name : left)
        for (int x = 0; x < before.spec.width; ++x)
            EXPECT_EQ(after.get(name, x), before.get(name, x)) << name << " of part " << part;
}

void remove_outputs() {
    for (const char* name : {"out.exr", "out.png", "out.dpx", "out.0001.exr", "out.0002.exr"})
        std::filesystem::remove(name);
}

TEST_F(GuideValues, OfConversionsAreThoseOfTheLibrary) {
    std::map<std::string, Row> rows = make_rows();
    for (const std::string& command : read_commands()) {
        const bool writes_flat_pixels = command.rfind("convert ", 0) == 0 &&
                                        command.find("--dry-run") == command.npos &&
                                        command.find("deep.exr") == command.npos;
        if (!writes_flat_pixels)
            continue;
        SCOPED_TRACE(command);
        ASSERT_EQ(rows.count(command), 1u) << "no values are known for this command";
        const Row row = rows.at(command);
        rows.erase(command);
        remove_outputs();
        std::vector<std::string> words = split_words(command);
        if (row.outputs[0].find(".exr") != std::string::npos)
            words.insert(words.end(), {"-d", "float"}); // the values before they are rounded
        ASSERT_THAT(run(words), Succeeds());
        for (const std::string& output : row.outputs)
            compare(row, output);
    }
    EXPECT_TRUE(rows.empty()) << rows.begin()->first << " is not in the guide";
}

TEST_F(GuideValues, OfDeepSamplesAreThoseOfTheLibrary) {
    ASSERT_THAT(run({"convert", "deep.exr", "out.exr", "--from", "ACEScg", "--to", "ACEScct", "-d", "float"}),
                Succeeds());
    const DeepImage before = read_deep("deep.exr"), after = read_deep("out.exr");
    const auto get = [](const DeepImage& image, const char* name, int sample) {
        return image.pixels.deep_value(0, image.spec.channelindex(name), sample);
    };
    for (int sample = 0; sample < 2; ++sample) {
        const float alpha = get(before, "A", sample);
        std::vector<float> rgb;
        for (const char* name : {"R", "G", "B"})
            rgb.push_back(get(before, name, sample) / alpha);
        rgb = apply({convert("ACEScg", "ACEScct")}, rgb);
        EXPECT_NEAR(get(after, "R", sample), rgb[0] * alpha, FLOAT_TOLERANCE);
        EXPECT_NEAR(get(after, "G", sample), rgb[1] * alpha, FLOAT_TOLERANCE);
        EXPECT_NEAR(get(after, "B", sample), rgb[2] * alpha, FLOAT_TOLERANCE);
        EXPECT_EQ(get(after, "A", sample), alpha);
        EXPECT_EQ(get(after, "Z", sample), get(before, "Z", sample));
    }
}

TEST_F(GuideValues, OfABakedLutAreThoseOfTheLibrary) {
    ASSERT_THAT(run({"bake", "film.cube", "--from", "ACEScct", "--view", "sRGB.Film"}), Succeeds());
    std::istringstream text(folder.read("film.cube"));
    std::vector<std::vector<float>> colors;
    int size = 0;
    for (std::string line; std::getline(text, line);) {
        std::istringstream words(line);
        std::vector<float> color(3);
        if (line.rfind("LUT_3D_SIZE ", 0) == 0)
            size = std::stoi(line.substr(12));
        else if (words >> color[0] >> color[1] >> color[2])
            colors.push_back(color);
    }
    ASSERT_EQ(size, 33);
    ASSERT_EQ(colors.size(), 33u * 33 * 33);
    const auto at = [](std::size_t index) { return static_cast<float>(index) / 32; };
    for (std::size_t i = 0; i < colors.size(); i += 7) {
        const std::vector<float> expected =
            apply({show("ACEScct")}, {at(i % 33), at(i / 33 % 33), at(i / 33 / 33)});
        for (std::size_t channel = 0; channel < 3; ++channel)
            ASSERT_NEAR(colors[i][channel], expected[channel],
                        2e-6f * std::max(1.0f, std::abs(expected[channel])))
                << "entry " << i << ", written with six digits after the point";
    }
}

TEST_F(GuideValues, OfAnExplainedPixelAreThoseOfTheLibrary) {
    const ToolRun result =
        run({"explain", "ACEScg", "--view", "sRGB.Film", "--pixel", "0.18,0.18,0.18", "--json"});
    ASSERT_THAT(result, Succeeds());
    const nlohmann::json last = nlohmann::json::parse(result.out).at("parts").back().at("steps").back();
    const std::vector<float> expected = apply({show("ACEScg")}, {0.18f, 0.18f, 0.18f});
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(last.at("pixel").at(i).get<float>(), expected[i], FLOAT_TOLERANCE);
}

TEST_F(GuideValues, OfAScreenshotAreThoseOfTheLibraryButForItsLut) {
    constexpr float TWO_CODE_VALUES = 2.0f / 255;
    ASSERT_THAT(run({"view", "render.exr", "--from", "ACEScg", "--view", "sRGB.Film", "--size", "3x1",
                     "--screenshot", "shown.png"}),
                Succeeds());
    const Image before = read_image("render.exr"), shown = read_image("shown.png");
    for (int x = 0; x < 3; ++x) {
        const std::vector<float> expected =
            apply({show("ACEScg")}, {before.get("R", x), before.get("G", x), before.get("B", x)});
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(shown.get(std::string(1, "RGB"[i]), x), expected[i], TWO_CODE_VALUES) << x;
    }
}

} // namespace
