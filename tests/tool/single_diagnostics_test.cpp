// Diagnostics whose causes need more than one command line.

#include "colorio/ocio/types.h"
#include "tests/tool/diagnostics_fixture.h"

namespace {

using nlohmann::json;

class Diagnostics : public ToolTest {
protected:
    json find_one(const ToolRun& result, const std::string& severity) {
        const std::vector<json> found = parse_diagnostics(result.err, severity);
        EXPECT_EQ(found.size(), 1u) << result.err;
        return found.empty() ? json::object() : found.front();
    }
};

TEST_F(Diagnostics, LutUnwritable) {
    EXPECT_THAT(run({"list"}), Succeeds());
    std::string lut;
    for (const auto& entry : std::filesystem::directory_iterator(path("cache/qb_colorio/luts")))
        lut = entry.path().string();
    std::filesystem::remove(lut);
    folder.write("cache/qb_colorio/luts/" + std::filesystem::path(lut).filename().string() + "/file",
                 "in the way");
    const json error = find_one(run({"--json-diagnostics", "list"}), "error");
    EXPECT_EQ(error.at("code"), "lut-unwritable");
    EXPECT_EQ(error.at("file"), lut);
}

TEST_F(Diagnostics, CdlCopied) {
    folder.write("a.cc", "<ColorCorrection id='a'><SOPNode><Slope>1 1 1</Slope><Offset>0 0 0</Offset>"
                         "<Power>1 1 1</Power></SOPNode></ColorCorrection>\n");
    const json note = find_one(run({"--json-diagnostics", "cdl", "add", "a", path("a.cc") + ":a"}), "note");
    EXPECT_EQ(note.at("code"), "cdl-copied");
    EXPECT_EQ(note.at("file"), path("a.cc"));
}

TEST_F(Diagnostics, OfACdlWhoseFileIsGone) {
    folder.write(
        "all.ccc",
        "<ColorCorrectionCollection><ColorCorrection id='own'><SOPNode><Slope>2 2 2</Slope><Offset>0 0 0"
        "</Offset><Power>1 1 1</Power></SOPNode></ColorCorrection></ColorCorrectionCollection>\n");
    ASSERT_THAT(run({"cdl", "add", "own", path("all.ccc") + ":own"}), Succeeds());
    ASSERT_EQ(run({"--json-diagnostics", "explain", "linear", "sRGB", "--cdl", "own"}).err, "");
    std::filesystem::remove(path("all.ccc"));
    const ToolRun result = run({"--json-diagnostics", "explain", "linear", "sRGB", "--cdl", "own"});
    EXPECT_THAT(result, Succeeds()) << "the stored values are used";
    const json warning = find_one(result, "warning");
    EXPECT_EQ(warning.at("code"), "file-missing");
    EXPECT_EQ(warning.at("subject"), "own");
    EXPECT_EQ(warning.at("file"), path("all.ccc"));
}

TEST_F(Diagnostics, OfASingleImageThatCannotBeRead) {
    folder.write("broken.exr", "no image");
    for (const std::string& image : {path("missing.exr"), path("broken.exr"), path("")}) {
        for (const std::vector<std::string>& command :
             {std::vector<std::string>{"explain", "--image", image, "sRGB"},
              {"convert", image, path("out.png"), "--to", "sRGB"}}) {
            std::vector<std::string> arguments = command;
            arguments.insert(arguments.begin(), "--json-diagnostics");
            const ToolRun result = run(arguments);
            EXPECT_EQ(result.code, 1) << image;
            EXPECT_EQ(parse_diagnostics(result.err, "note"), std::vector<json>()) << result.err;
            EXPECT_EQ(find_one(result, "error").at("code"), "image-unreadable");
        }
    }
}

TEST_F(Diagnostics, TemporaryFolder) {
    folder.write("cache", "a file, not a folder");
    const json note = find_one(run({"--json-diagnostics", "list"}), "note");
    EXPECT_EQ(note.at("code"), "temporary-folder");
}

TEST_F(Diagnostics, RoleUnknown) {
    if (ocio::get_version()[0] == '1')
        GTEST_SKIP() << "1.x has no inactive color spaces";
    std::string config = SHOW_CONFIG;
    config.replace(config.find("version: 1"), 10, "version: 2");
    config.insert(config.find("  texture_paint"), "  default: lin\n");
    config.insert(config.find("colorspaces:"), "inactive_colorspaces: [half_light]\n");
    folder.write("show.ocio", config);
    const json error = find_one(
        run({"--json-diagnostics", "explain", "texture_paint", "lin", "--config", path("show.ocio")}),
        "error");
    EXPECT_EQ(error.at("code"), "role-unknown");
    EXPECT_EQ(error.at("subject"), "texture_paint");
}

TEST_F(Diagnostics, OfAConfigThatOpenColorIORefuses) {
    if (ocio::get_version()[0] == '1')
        GTEST_SKIP() << "1.x reads version 1 only";
    std::string config = SHOW_CONFIG;
    config.replace(config.find("version: 1"), 10, "version: 2");
    config.replace(config.find("texture_paint: half_light"), 25, "default: lin\n  texture_paint: nowhere");
    folder.write("show.ocio", config);
    const json error = find_one(run({"--json-diagnostics", "list", "--config", path("show.ocio")}), "error");
    EXPECT_EQ(error.at("code"), "config-invalid");
    EXPECT_EQ(error.at("file"), path("show.ocio"));
    EXPECT_EQ(error.at("subject"), "nowhere");
}

TEST_F(Diagnostics, OfARoleOfNoColorSpaceNameThePlace) {
    if (ocio::get_version()[0] == '1')
        GTEST_SKIP() << "1.x tells which role it is in a text only";
    std::string config = SHOW_CONFIG;
    config.replace(config.find("texture_paint: half_light"), 25, "texture_paint: nowhere");
    folder.write("role.ocio", config);
    const ToolRun text = run({"list", "--config", path("role.ocio")});
    EXPECT_THAT(text, FailsWith(1, testing::HasSubstr(path("role.ocio") + ":6:18: ")));
    const json error = find_one(run({"--json-diagnostics", "list", "--config", path("role.ocio")}), "error");
    EXPECT_EQ(error.at("code"), "config-invalid");
    EXPECT_EQ(error.at("subject"), "nowhere");
    EXPECT_EQ(error.at("line"), 6);
    EXPECT_EQ(error.at("column"), 18);
}

TEST_F(Diagnostics, OfTheConfigThatTheEnvironmentNames) {
    ocio.set(path("missing.ocio"));
    json error = find_one(run({"--json-diagnostics", "list"}), "error");
    EXPECT_EQ(error.at("code"), "config-missing");
    EXPECT_EQ(error.at("file"), path("missing.ocio"));
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    ocio.set(path("pipe"));
    error = find_one(run({"--json-diagnostics", "list"}), "error");
    EXPECT_EQ(error.at("code"), "file-not-regular");
    EXPECT_EQ(error.at("file"), path("pipe"));
}

} // namespace
