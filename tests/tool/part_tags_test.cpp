// The color tags of images with several parts.

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

TEST_F(PartTags, OfAnotherColorSpaceLeaveTheirPartWithAWarning) {
    const std::vector<Part> parts = {{"beauty", "half"}, {"albedo", "quarter"}};
    const ToolRun result = convert(parts);
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.err,
                AllOf(HasSubstr("warning"),
                      HasSubstr("the part 'albedo' is not converted: it is in 'quarter' "
                                "by its tags, and not in the color space of the image"),
                      HasSubstr("convert the part alone from 'quarter', with --parts and --from")));
    EXPECT_EQ(get_gray(0), 0.5f);
    EXPECT_EQ(get_gray(1), 1.0f);
    EXPECT_EQ(read_image(path("out.exr"), 1).spec.get_string_attribute("colorio:ColorSpace"), "quarter");
    ASSERT_THAT(convert(parts, {"--from", "quarter", "--parts", "albedo"}), Succeeds());
    EXPECT_EQ(get_gray(0), 1.0f);
    EXPECT_EQ(get_gray(1), 0.25f);
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
    EXPECT_THAT(result.err,
                HasSubstr("note: 'Non-Color' holds data, to which colors are not converted: they stay "
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
