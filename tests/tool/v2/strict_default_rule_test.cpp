// --strict and what the default file rule of a config gives.

#include "tests/tool/color_tag_files.h"
#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr char CONFIG[] = R"(ocio_profile_version: 2
strictparsing: true
roles:
  scene_linear: lin
file_rules:
  - !<Rule> {name: Plates, pattern: "*plate*", extension: png, colorspace: half_light}
  - !<Rule> {name: Default, colorspace: lin}
displays:
  Monitor:
    - !<View> {name: Half, colorspace: half_light}
colorspaces:
  - !<ColorSpace> {name: lin, encoding: scene-linear}
  - !<ColorSpace>
    name: half_light
    from_scene_reference: !<MatrixTransform> {matrix: [0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1]}
)";

class StrictDefaultRule : public ToolTest {
protected:
    StrictDefaultRule() { folder.write("show.ocio", CONFIG); }

    void write(const std::string& name, OIIO::TypeDesc depth, const char* interop_id = "") {
        Image image = make_image(1, 1, 3, depth, {0.5f, 0.5f, 0.5f});
        if (*interop_id)
            image.spec.attribute("colorInteropID", interop_id);
        write_image(path(name), image);
    }

    ToolRun convert(const std::string& input, std::vector<std::string> more = {}) {
        more.insert(more.begin(), {"convert", path(input), path("out.exr"), "--config", path("show.ocio"),
                                   "--to", "half_light"});
        return run(more);
    }
};

TEST_F(StrictDefaultRule, RefusesIntegersThatItTakesForLinear) {
    write("in.png", OIIO::TypeUInt8);
    const ToolRun lax = convert("in.png");
    EXPECT_THAT(lax, Succeeds());
    EXPECT_THAT(lax.err, HasSubstr("the default file rule assigns integer pixels to 'lin'"));
    EXPECT_THAT(convert("in.png", {"--strict"}),
                FailsWith(1, AllOf(HasSubstr("cannot determine the color space of 'in.png': the default file "
                                             "rule assigns integer pixels to 'lin', which is scene-linear"),
                                   HasSubstr("name the color space of the image with --from"))));
    EXPECT_THAT(convert("in.png", {"--strict", "--from", "lin"}), Succeeds());
}

TEST_F(StrictDefaultRule, RefusesTagsOfUnknownColorSpaces) {
    write("in.exr", OIIO::TypeHalf, "lin_foo_scene");
    EXPECT_THAT(convert("in.exr"), Succeeds());
    EXPECT_THAT(convert("in.exr", {"--strict"}),
                FailsWith(1, HasSubstr("colorInteropID 'lin_foo_scene' does not name a color space")));
}

TEST_F(StrictDefaultRule, AcceptsARuleForAFileWhoseTagsTheConfigLacks) {
    for (const char* name : {"plate.png", "other.png"}) {
        write(name, OIIO::TypeUInt8);
        insert_png_chunk(path(name), "cICP", std::string("\x09\x10\x00\x01", 4));
    }
    const ToolRun plate = convert("plate.png", {"--strict"});
    EXPECT_THAT(plate, Succeeds());
    EXPECT_THAT(plate.err, testing::Not(HasSubstr("warning")));
    EXPECT_THAT(convert("other.png", {"--strict"}),
                FailsWith(1, HasSubstr("describes colors that no color space of show.ocio has")));
}

TEST_F(StrictDefaultRule, AcceptsFloatsWithoutTags) {
    write("in.exr", OIIO::TypeHalf);
    EXPECT_THAT(convert("in.exr", {"--strict"}), Succeeds());
}

} // namespace
