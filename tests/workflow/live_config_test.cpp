#include "workflow/live_config.h"

#include "tests/tool/configs.h"
#include "tests/workflow/workflow_fixture.h"

namespace {

using diagnostics::Code;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

using LiveConfigs = WorkflowTest;

TEST_F(LiveConfigs, TakeAnotherConfigWhenItIsGood) {
    workflow::LiveConfig live(show_options());
    EXPECT_EQ(live.get_config_name(), "show.ocio");
    const unsigned int revision = live.get_revision();
    std::string text = SHOW_CONFIG;
    text += "  - !<ColorSpace>\n    name: more\n";
    EXPECT_FALSE(live.use_config(folder.write("other.ocio", text)));
    EXPECT_EQ(live.get_config_path(), folder.file("other.ocio"));
    EXPECT_GT(live.get_revision(), revision);
    EXPECT_THAT(live.get_spaces(), Contains("more"));
}

TEST_F(LiveConfigs, KeepEverythingWhenAnotherConfigCannotBeUsed) {
    workflow::LiveConfig live(show_options());
    const std::vector<std::string> spaces = live.get_spaces();
    const auto fault = live.use_config(folder.write("broken.ocio", "no config at all\n"));
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->code, Code::CONFIG_INVALID);
    EXPECT_EQ(fault->file, folder.file("broken.ocio"));
    EXPECT_EQ(live.get_config_name(), "show.ocio");
    EXPECT_EQ(live.get_spaces(), spaces);
}

TEST_F(LiveConfigs, ReadAnEditedConfigAgain) {
    workflow::LiveConfig live(show_options());
    std::string text = SHOW_CONFIG;
    folder.write("show.ocio", text + "  - !<ColorSpace>\n    name: more\n");
    EXPECT_TRUE(live.reload());
    EXPECT_THAT(live.get_spaces(), Contains("more"));

    folder.write("show.ocio", "no config at all\n");
    EXPECT_FALSE(live.reload());
    ASSERT_THAT(live.get_source_errors(), testing::SizeIs(1));
    EXPECT_EQ(live.get_source_errors()[0].file, folder.file("show.ocio"));
    EXPECT_THAT(live.get_spaces(), Contains("more")) << "the last good one stays";

    folder.write("show.ocio", text);
    EXPECT_TRUE(live.reload());
    EXPECT_THAT(live.get_source_errors(), IsEmpty());
    EXPECT_THAT(live.get_spaces(), Not(Contains("more")));
}

TEST_F(LiveConfigs, PublishTheCorrectionsOfALibrary) {
    workflow::LiveConfig live(show_options());
    const std::string library = R"(<ColorCorrectionCollection><ColorCorrection id="a1">
        <SOPNode><Slope>2 2 2</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>
        <SatNode><Saturation>1</Saturation></SatNode></ColorCorrection></ColorCorrectionCollection>)";
    EXPECT_FALSE(live.use_cdl_library(folder.write("shots.ccc", library)));
    EXPECT_THAT(live.get_cdls(), Contains("a1"));
    const auto fault = live.use_cdl_library(folder.file("none.ccc"));
    ASSERT_TRUE(fault);
    EXPECT_THAT(live.get_cdls(), Contains("a1"));
}

TEST_F(LiveConfigs, KnowWhatIsUnusableFromTheStartUntilItIsMended) {
    const std::string lut = "Version 1\nFrom 0 1\nLength 2\nComponents 1\n{\n0\n0.5\n}\n";
    workflow::SessionOptions options;
    options.preferences_path =
        folder.write("preferences.yaml",
                     "file_type: qb_colorio preferences\ncdl_library_file_path: " + folder.file("l.ccc") +
                         "\ncolor_management: !!pairs\n  - space: [s1, " + folder.file("s1.spi1d") +
                         ", 8, 0, 0.0, 1.0, 0.0, \"\", \"\"]\n  - CDL: [own, " + folder.file("l.ccc.ccc") +
                         ", a1, 1.0, 1.0, 1.0, 0.0, 0.0, 0.0, 1.0, 1.0, 1.0, 1.0]\n");
    const std::string library = R"(<ColorCorrectionCollection><ColorCorrection id="a1">
        <SOPNode><Slope>2 2 2</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>
        <SatNode><Saturation>1</Saturation></SatNode></ColorCorrection></ColorCorrectionCollection>)";
    folder.write("l.ccc", library.substr(0, library.size() / 2));
    folder.write("l.ccc.ccc", "<ColorCorrectionCollection>\n");
    workflow::LiveConfig live(options);
    std::vector<std::string> files;
    for (const diagnostics::Diagnostic& fault : live.get_source_errors())
        files.push_back(fault.file);
    EXPECT_THAT(files, testing::UnorderedElementsAre(folder.file("s1.spi1d"), folder.file("l.ccc.ccc"),
                                                     folder.file("l.ccc")));
    EXPECT_THAT(live.get_cdls(), Not(Contains("own")));

    folder.write("s1.spi1d", lut);
    folder.write("l.ccc", library);
    folder.write("l.ccc.ccc", library);
    EXPECT_TRUE(live.reload());
    EXPECT_THAT(live.get_source_errors(), IsEmpty());
    EXPECT_THAT(live.get_spaces(), Contains("Tavelion|s1"));
    EXPECT_THAT(live.get_cdls(), testing::IsSupersetOf({"own", "a1"}));
}

TEST_F(LiveConfigs, NameTheFilesThatColorsDependOn) {
    std::string text = SHOW_CONFIG;
    text += "  - !<ColorSpace>\n    name: film\n"
            "    to_reference: !<FileTransform> {src: film.spi1d, interpolation: linear}\n";
    workflow::LiveConfig live(options_for(text));
    EXPECT_THAT(live.get_source_files(), Contains(folder.file("show.ocio")));
    EXPECT_THAT(live.get_source_files(), Contains(folder.file("luts/film.spi1d")));
}

} // namespace
