// The color tags of images with several parts.

#include <filesystem>

#include <nlohmann/json.hpp>

#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// Halves what is in "half", quarters what is in "quarter".
constexpr char CONFIG[] = R"(ocio_profile_version: 1
strictparsing: true
roles: {scene_linear: lin}
displays:
  M:
    - !<View> {name: V, colorspace: lin}
    - !<View> {name: Raw, colorspace: Non-Color}
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace> {name: Non-Color, isdata: true}
  - !<ColorSpace>
    name: half
    to_reference: !<MatrixTransform> {matrix: [0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1]}
  - !<ColorSpace>
    name: quarter
    to_reference: !<MatrixTransform> {matrix: [0.25, 0, 0, 0, 0, 0.25, 0, 0, 0, 0, 0.25, 0, 0, 0, 0, 1]}
)";

struct Part {
    const char* name;
    const char* color_space; ///< Its tag; empty for none.
};

class PartTags : public ToolTest {
protected:
    PartTags() { folder.write("show.ocio", CONFIG); }

    /// Converts parts of one gray pixel of 1.0 to "lin".
    ToolRun convert(const std::vector<Part>& parts, std::vector<std::string> more = {}) {
        std::vector<Image> images;
        for (const Part& part : parts) {
            images.push_back(make_image(1, 1, 3, OIIO::TypeHalf, {1.0f, 1.0f, 1.0f}));
            images.back().spec.attribute("oiio:subimagename", part.name);
            if (*part.color_space)
                images.back().spec.attribute("colorio:ColorSpace", part.color_space);
        }
        write_image(path("in.exr"), images);
        more.insert(more.begin(), {"convert", path("in.exr"), path("out.exr"), "--to", "lin", "--config",
                                   path("show.ocio")});
        return run(more);
    }

    float get_gray(int part) const { return read_image(path("out.exr"), part).get("G"); }
};

TEST_F(PartTags, OfTheFirstPartOfColorDecide) {
    const ToolRun result = convert({{"normals", "quarter"}, {"matte_paint", ""}, {"beauty", "half"}});
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.err, HasSubstr("in.exr: half, from the tag colorio:ColorSpace 'half'"));
    EXPECT_EQ(get_gray(0), 1.0f) << "data by name";
    EXPECT_EQ(get_gray(1), 0.5f) << "it has no tags";
    EXPECT_EQ(get_gray(2), 0.5f);
}

TEST_F(PartTags, OfDataLeaveTheirPart) {
    const ToolRun result = convert({{"aux", "Non-Color"}, {"beauty", "half"}});
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, HasSubstr("converted beauty; left aux (data by its tags)"));
    EXPECT_THAT(result.err, Not(HasSubstr("warning")));
    EXPECT_EQ(get_gray(0), 1.0f);
    EXPECT_EQ(get_gray(1), 0.5f);
}

TEST_F(PartTags, OfAnotherColorSpaceAreTheSourceOfTheirPart) {
    const std::vector<Part> parts = {{"beauty", "half"},
                                     {"albedo", "quarter"},
                                     {"aux", "Non-Color"},
                                     {"matte_paint", ""},
                                     {"light", "lin"}};
    const ToolRun result = convert(parts);
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.err, Not(HasSubstr("warning")));
    EXPECT_THAT(result.out,
                HasSubstr("converted beauty, albedo (from quarter), matte_paint, light (from lin); left "
                          "aux (data by its tags)"));
    EXPECT_EQ(get_gray(0), 0.5f);
    EXPECT_EQ(get_gray(1), 0.25f);
    EXPECT_EQ(get_gray(2), 1.0f);
    EXPECT_EQ(get_gray(3), 0.5f) << "without tags it is in the color space of the image";
    EXPECT_EQ(get_gray(4), 1.0f);
    for (const int part : {0, 1, 3, 4})
        EXPECT_EQ(read_image(path("out.exr"), part).spec.get_string_attribute("colorio:ColorSpace"), "lin")
            << part;
    ASSERT_THAT(convert(parts, {"--parts", "albedo"}), Succeeds());
    EXPECT_EQ(get_gray(0), 1.0f);
    EXPECT_EQ(get_gray(1), 0.25f);
    ASSERT_THAT(convert(parts, {"--from", "half"}), Succeeds());
    EXPECT_EQ(get_gray(1), 0.5f) << "--from is that of all parts";
}

TEST_F(PartTags, AreExplainedByPart) {
    const std::vector<Part> parts = {{"beauty", "half"}, {"albedo", "quarter"}, {"aux", "Non-Color"}};
    const ToolRun why = convert(parts, {"--why"});
    constexpr char LINES[] =
        "  part beauty:   half, from the tag colorio:ColorSpace 'half'\n"
        "  part albedo:   quarter, from the tag colorio:ColorSpace 'quarter'\n"
        "  part aux:      Non-Color, from the tag colorio:ColorSpace 'Non-Color'; data, left as "
        "it is\n";
    EXPECT_THAT(why.out, HasSubstr(LINES));
    const std::vector<std::string> explain = {"explain", "--image",  path("in.exr"),
                                              "lin",     "--config", path("show.ocio")};
    std::vector<std::string> wordy = explain, as_json = explain;
    wordy.emplace_back("--why");
    as_json.emplace_back("--json");
    EXPECT_THAT(run(wordy).out, HasSubstr(LINES));
    EXPECT_EQ(nlohmann::json::parse(run(as_json).out).at("source_parts").at(1),
              nlohmann::json({{"part", "albedo"},
                              {"color_space", "quarter"},
                              {"reason", "from the tag colorio:ColorSpace 'quarter'"}}));
    convert({{"beauty", "half"}, {"albedo", "half"}});
    EXPECT_THAT(run(wordy).out, Not(HasSubstr("  part "))) << "all are in the same color space";
}

TEST_F(PartTags, AreThoseOfEachFrameOfASequence) {
    ASSERT_THAT(convert({{"beauty", "half"}, {"albedo", "quarter"}}), Succeeds());
    std::filesystem::rename(path("in.exr"), path("shot.1.exr"));
    ASSERT_THAT(convert({{"albedo", "quarter"}, {"beauty", "half"}}), Succeeds());
    std::filesystem::rename(path("in.exr"), path("shot.2.exr"));
    const std::vector<std::string> arguments = {"convert", path("shot.#.exr"), path("done.#.exr"), "--to",
                                                "lin",     "--config",         path("show.ocio"),  "--json"};
    const ToolRun result = run(arguments);
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, HasSubstr("\"layer_sources\":{\"albedo\":\"quarter\"}"));
    EXPECT_EQ(read_image(path("done.1.exr"), 1).get("G"), 0.25f);
    EXPECT_EQ(read_image(path("done.2.exr"), 0).get("G"), 0.25f);
    EXPECT_EQ(read_image(path("done.2.exr"), 1).get("G"), 0.5f);
    std::vector<std::string> again = arguments;
    again.emplace_back("--resume");
    EXPECT_THAT(run(again).out, HasSubstr("\"up-to-date\":2"));
}

TEST_F(PartTags, OfALaterFrameThatTheFirstOneDoesNotHaveAreReported) {
    ASSERT_THAT(convert({{"beauty", "half"}, {"albedo", "half"}}), Succeeds());
    std::filesystem::rename(path("in.exr"), path("shot.1.exr"));
    ASSERT_THAT(convert({{"beauty", "half"}, {"albedo", "quarter"}}), Succeeds());
    std::filesystem::rename(path("in.exr"), path("shot.2.exr"));
    const std::vector<std::string> arguments = {"convert", path("shot.#.exr"), path("done.#.exr"), "--to",
                                                "lin",     "--config",         path("show.ocio")};
    EXPECT_THAT(run(arguments).err,
                AllOf(HasSubstr("the color tags of the part 'albedo' of some images differ from those of the "
                                "first one, whose color space is used"),
                      HasSubstr("the first of them is '" + path("shot.2.exr") +
                                "'; convert them separately, or name the color space of all with --from")));
    std::vector<std::string> strict = arguments;
    strict.emplace_back("--strict");
    const ToolRun result = run(strict);
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err,
                HasSubstr("shot.2.exr': the color tags of the part 'albedo' differ from those of the "
                          "first image"));
}

TEST_F(PartTags, OfDataSayNothingOfPartsWithoutTags) {
    for (const bool data_is_first : {true, false}) {
        std::vector<Part> parts = {{"aux", "Non-Color"}, {"plain", ""}};
        if (!data_is_first)
            std::swap(parts[0], parts[1]);
        const ToolRun result = convert(parts);
        ASSERT_THAT(result, Succeeds());
        EXPECT_THAT(result.out, HasSubstr("converted plain; left aux (data by its tags)"));
    }
}

TEST_F(PartTags, ThatTheConfigLacksAreReportedForEveryPart) {
    const std::vector<Part> parts = {{"beauty", "half"}, {"weird", "Foobar"}};
    const ToolRun result = convert(parts);
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.err,
                HasSubstr("warning: the part 'weird' of 'in.exr': its tag colorio:ColorSpace 'Foobar' does "
                          "not name a color space of show.ocio"));
    EXPECT_THAT(convert(parts, {"--strict"}),
                FailsWith(1, HasSubstr("cannot determine the color space of the part 'weird' of 'in.exr'")));
}

TEST_F(PartTags, OfAColorSpaceThatDoesNotWorkMatterOnlyToPartsThatAreConverted) {
    std::string config = CONFIG;
    config += "  - !<ColorSpace>\n    name: broken\n    to_reference: !<FileTransform> {src: gone.cube}\n";
    folder.write("show.ocio", config);
    const std::vector<Part> parts = {{"beauty", "half"}, {"albedo", "broken"}};
    EXPECT_THAT(convert(parts), FailsWith(1, HasSubstr("gone.cube")));
    EXPECT_FALSE(folder.exists("out.exr"));
    EXPECT_THAT(convert(parts, {"--skip", "albedo"}), Succeeds());
    EXPECT_EQ(get_gray(0), 0.5f);
    EXPECT_EQ(get_gray(1), 1.0f);
}

TEST_F(PartTags, DecideWhetherASingleChannelIsConverted) {
    // red of "mixed" depends on green
    std::string config = CONFIG;
    config += "  - !<ColorSpace>\n    name: mixed\n    to_reference: !<MatrixTransform> {matrix: [0.5, 0.5, "
              "0, 0, 0, "
              "1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]}\n";
    folder.write("show.ocio", config);
    std::vector<Image> images = {make_image(1, 1, 3, OIIO::TypeHalf, {1.0f, 1.0f, 1.0f}),
                                 make_image(1, 1, 1, OIIO::TypeHalf, {1.0f})};
    images[0].spec.attribute("oiio:subimagename", "beauty");
    images[0].spec.attribute("colorio:ColorSpace", "half");
    images[1].spec.attribute("oiio:subimagename", "red");
    images[1].spec.attribute("colorio:ColorSpace", "mixed");
    images[1].spec.channelnames = {"R"};
    write_image(path("in.exr"), images);
    const ToolRun result =
        run({"convert", path("in.exr"), path("out.exr"), "--to", "lin", "--config", path("show.ocio")});
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.out,
                HasSubstr("converted beauty; left red (the conversion mixes it with missing channels)"));
    EXPECT_EQ(read_image(path("out.exr"), 1).get("R"), 1.0f);
}

TEST_F(PartTags, DoNotMatterWhereTheUserNamesTheColorSpace) {
    ASSERT_THAT(convert({{"beauty", "half"}, {"albedo", "quarter"}}, {"--from", "half"}), Succeeds());
    EXPECT_EQ(get_gray(0), 0.5f);
    EXPECT_EQ(get_gray(1), 0.5f);
}

TEST_F(PartTags, OfADestinationOfDataAreThoseOfTheSource) {
    write_image(path("plain.exr"), make_image(1, 1, 3, OIIO::TypeHalf, {1.0f, 1.0f, 1.0f}));
    const ToolRun result = run({"convert", path("plain.exr"), path("raw.exr"), "--from", "half", "--to",
                                "Non-Color", "--config", path("show.ocio")});
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.err, HasSubstr("'Non-Color' holds data, to which colors are not converted: they stay "
                                      "in 'half'\n"));
    EXPECT_EQ(read_image(path("raw.exr")).get("G"), 1.0f);
    EXPECT_EQ(read_image(path("raw.exr")).spec.get_string_attribute("colorio:ColorSpace"), "half");
    ASSERT_THAT(
        run({"convert", path("raw.exr"), path("out.exr"), "--to", "lin", "--config", path("show.ocio")}),
        Succeeds());
    EXPECT_EQ(get_gray(0), 0.5f) << "its colors are still converted";
}

TEST_F(PartTags, OfAViewOfDataAreThoseOfTheSource) {
    write_image(path("plain.exr"), make_image(1, 1, 3, OIIO::TypeHalf, {1.0f, 1.0f, 1.0f}));
    const ToolRun result = run({"convert", path("plain.exr"), path("raw.exr"), "--from", "half", "--view",
                                "M.Raw", "--config", path("show.ocio")});
    ASSERT_THAT(result, Succeeds());
    EXPECT_EQ(read_image(path("raw.exr")).get("G"), 1.0f);
    EXPECT_EQ(read_image(path("raw.exr")).spec.get_string_attribute("colorio:ColorSpace"), "half");
}

TEST_F(PartTags, OfASingleImageOfDataLeaveIt) {
    EXPECT_THAT(convert({{"beauty", "Non-Color"}}).out,
                HasSubstr("left rgba (in the data space 'Non-Color')"));
    EXPECT_EQ(get_gray(0), 1.0f);
}

} // namespace
