#include "colorio/ocio/config_structure.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"

namespace {

class ConfigStructure : public testing::Test {
protected:
    /// "LINE:COLUMN: REASON"; empty for no error.
    std::string find(const std::string& text) {
        const auto error = ocio::find_structure_error(folder.write("show.ocio", text));
        return error
                   ? std::to_string(error->line) + ":" + std::to_string(error->column) + ": " + error->reason
                   : "";
    }

    TempDir folder;
};

TEST_F(ConfigStructure, NeedsAMapWithAVersion) {
    const std::string reason = "it is not an OCIO config: the key ocio_profile_version is missing";
    for (const char* text : {"", "hello", "- ocio_profile_version: 1\n", "colorspaces: []\n"})
        EXPECT_EQ(find(text), "1:1: " + reason) << text;
    EXPECT_EQ(find("# a comment\n\n  colorspaces: []\n"), "3:3: " + reason);
    EXPECT_EQ(find("ocio_profile_version: 1\n"), "");
}

TEST_F(ConfigStructure, NeedsMapsAndListsWhereTheyBelong) {
    const std::string start = "ocio_profile_version: 1\n";
    EXPECT_EQ(find(start + "displays: [a]\n"), "2:11: the value of displays must be a map");
    EXPECT_EQ(find(start + "roles: lin\n"), "2:8: the value of roles must be a map");
    EXPECT_EQ(find(start + "environment: []\n"), "2:14: the value of environment must be a map");
    EXPECT_EQ(find(start + "colorspaces:\n  lin: {}\n"), "3:3: the value of colorspaces must be a list");
    EXPECT_EQ(find(start + "display_colorspaces: none\n"),
              "2:22: the value of display_colorspaces must be a list");
    EXPECT_EQ(find(start + "roles:\ndisplays: {}\ncolorspaces: ~\n"), "") << "an empty value is allowed";
}

TEST_F(ConfigStructure, NeedsANameOfItsOwnForEachColorSpace) {
    const std::string start = "ocio_profile_version: 2\ncolorspaces:\n  - !<ColorSpace> {name: lin}\n";
    EXPECT_EQ(find(start + "  - !<ColorSpace> {name: log}\n"), "");
    EXPECT_EQ(find(start + "  - !<ColorSpace> {name: Lin}\n"),
              "4:26: the name 'Lin' is taken by the color space of line 3");
    EXPECT_EQ(find(start + "display_colorspaces:\n  - !<ColorSpace> {name: lin}\n"),
              "5:26: the name 'lin' is taken by the color space of line 3");
    EXPECT_EQ(find(start + "  - !<ColorSpace> {family: a}\n"), "4:5: a color space without a name");
    EXPECT_EQ(find(start + "  - lin\n"), "4:5: a color space without a name");
}

TEST_F(ConfigStructure, IsNotLookedAtInOtherFiles) {
    EXPECT_EQ(find("a: [b\n"), "") << "an error of syntax";
    EXPECT_EQ(find("PK\x03\x04"), "") << "an archive";
    EXPECT_FALSE(ocio::find_structure_error(folder.file("none.ocio")));
}

} // namespace
