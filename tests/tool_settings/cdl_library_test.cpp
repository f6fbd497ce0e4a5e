#include "tests/tool/images.h"
#include "tests/tool_settings/settings_fixture.h"

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;

/// Two color decisions, which the module does not read by itself; the second has the slope 0.5.
constexpr char DECISIONS[] =
    R"(<ColorDecisionList xmlns="urn:ASC:CDL:v1.2">
<ColorDecision><ColorCorrection id="first"><SatNode><Saturation>0.5</Saturation></SatNode></ColorCorrection></ColorDecision>
<ColorDecision><ColorCorrection id="half"><SOPNode><Slope>0.5 0.5 0.5</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode></ColorCorrection></ColorDecision>
</ColorDecisionList>
)";

class CdlLibraryOfPreferences : public SettingsTest {
protected:
    CdlLibraryOfPreferences() { folder.write("shots.cdl", DECISIONS); }

    void use_library() { print({"prefs", "set", "cdl_library_file_path", path("shots.cdl")}); }
};

TEST_F(CdlLibraryOfPreferences, IsListedAsCdlListReadsIt) {
    use_library();
    const json read = print_json({"cdl", "list", path("shots.cdl")}).at("corrections");
    const json published = print_json({"list", "cdls"}).at("cdls");
    ASSERT_EQ(published.size(), 3u) << "after the built-in one";
    for (std::size_t i = 0; i < read.size(); ++i) {
        const json& cdl = published.at(i + 1);
        EXPECT_EQ(cdl.at("name"), read[i].at("id"));
        EXPECT_EQ(cdl.at("file_id"), read[i].at("id"));
        EXPECT_EQ(cdl.at("file"), path("shots.cdl"));
        for (const char* numbers : {"slope", "offset", "power", "saturation"})
            EXPECT_EQ(cdl.at(numbers), read[i].at(numbers));
    }
    EXPECT_THAT(print({"list", "cdls"}), HasSubstr(path("shots.cdl") + ":half"));
}

TEST_F(CdlLibraryOfPreferences, IsUsedByNameInConversions) {
    use_library();
    write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeFloat, {0.5f, 0.25f, 0.125f}));
    EXPECT_THAT(run({"convert", path("in.exr"), path("out.exr"), "--from", "linear", "--to", "linear",
                     "--cdl", "half"}),
                Succeeds());
    EXPECT_THAT(read_image(path("out.exr")).values, testing::ElementsAre(0.25f, 0.125f, 0.0625f));
    EXPECT_THAT(print({"explain", "linear", "linear", "--cdl", "half", "--pixel", "1,1,1"}),
                AllOf(HasSubstr("half"), HasSubstr("0.5")));
}

TEST_F(CdlLibraryOfPreferences, IsRefusedWithItsErrorAndReportedOnceWhenItBreaksLater) {
    folder.write("open.cdl", "<ColorDecisionList>\n<ColorDecision>\n");
    EXPECT_THAT(run({"prefs", "set", "cdl_library_file_path", path("open.cdl")}),
                FailsWith(1, HasSubstr("open.cdl")));
    use_library();
    folder.write("shots.cdl", "<ColorDecisionList/>");
    const ToolRun listed = run({"list", "cdls"});
    EXPECT_EQ(listed.code, 0);
    EXPECT_EQ(listed.err,
              "colorio: warning: cannot read '" + path("shots.cdl") + "': no ColorCorrection element\n");
}

} // namespace
