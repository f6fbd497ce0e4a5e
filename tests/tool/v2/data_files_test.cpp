// Images that a config says to hold data.

#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::HasSubstr;

constexpr char CONFIG[] = R"(ocio_profile_version: 2
strictparsing: true
roles:
  scene_linear: lin
file_rules:
  - !<Rule> {name: Normals, pattern: "*_normal*", extension: "*", colorspace: Raw}
  - !<Rule> {name: Default, colorspace: lin}
displays:
  Monitor:
    - !<View> {name: Half, colorspace: half_light}
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace> {name: Raw, isdata: true}
  - !<ColorSpace>
    name: half_light
    from_scene_reference: !<MatrixTransform> {matrix: [0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1]}
)";

class DataFiles : public ToolTest {
protected:
    ToolRun convert(const std::string& name, std::vector<std::string> more = {}) {
        folder.write("show.ocio", CONFIG);
        write_image(path(name), make_image(1, 1, 3, OIIO::TypeFloat, {0.1f, 0.2f, 0.3f}));
        more.insert(more.begin(), {"convert", path(name), path("out.exr"), "--config", path("show.ocio"),
                                   "--to", "half_light"});
        return run(more);
    }
};

TEST_F(DataFiles, StayAsTheyAreByFileRule) {
    const ToolRun result = convert("rock_normal.exr");
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, HasSubstr("; left rgba (in the data space 'Raw')"));
    EXPECT_THAT(read_image(path("out.exr")).values, testing::ElementsAre(0.1f, 0.2f, 0.3f));
}

TEST_F(DataFiles, StayAsTheyAreWhateverTheirTagsSay) {
    folder.write("show.ocio", CONFIG);
    Image tagged = make_image(1, 1, 3, OIIO::TypeFloat, {0.1f, 0.2f, 0.3f});
    tagged.spec.attribute("colorio:ColorSpace", "half_light");
    for (const char* name : {"rock_normal.exr", "rock_color.exr"})
        write_image(path(name), tagged);
    const auto convert_tagged = [&](const char* name) {
        EXPECT_THAT(run({"convert", path(name), path("out.exr"), "--config", path("show.ocio"), "--to", "lin",
                         "--strict"}),
                    Succeeds());
        return read_image(path("out.exr")).values;
    };
    EXPECT_THAT(convert_tagged("rock_normal.exr"), testing::ElementsAre(0.1f, 0.2f, 0.3f));
    EXPECT_THAT(convert_tagged("rock_color.exr"), testing::ElementsAre(0.2f, 0.4f, 0.6f));
    EXPECT_THAT(
        run({"explain", "--image", path("rock_normal.exr"), "lin", "--why", "--config", path("show.ocio")})
            .out,
        HasSubstr("  file rules:    the rule 'Normals' gives 'Raw', which holds data\n"));
}

TEST_F(DataFiles, AreConvertedWhereTheUserNamesTheirColorSpace) {
    ASSERT_THAT(convert("rock_normal.exr", {"--from", "lin"}), Succeeds());
    EXPECT_THAT(read_image(path("out.exr")).values, testing::ElementsAre(0.05f, 0.1f, 0.15f));
    ASSERT_THAT(convert("rock_color.exr"), Succeeds());
    EXPECT_THAT(read_image(path("out.exr")).values, testing::ElementsAre(0.05f, 0.1f, 0.15f));
}

TEST_F(DataFiles, GetNoTagsOfColorsWhereTheUserNamesThem) {
    const auto has_tag = [&] {
        return read_image(path("out.exr")).spec.find_attribute("colorio:ColorSpace") != nullptr;
    };
    const ToolRun result = convert("rock_color.exr", {"--from", "Raw"});
    ASSERT_THAT(result, Succeeds());
    EXPECT_THAT(result.err, HasSubstr("'Raw' holds data, which is not converted"));
    EXPECT_THAT(read_image(path("out.exr")).values, testing::ElementsAre(0.1f, 0.2f, 0.3f));
    EXPECT_FALSE(has_tag());
    ASSERT_THAT(convert("rock_color.exr", {"--from", "lin"}), Succeeds());
    EXPECT_TRUE(has_tag());
}

} // namespace
