#include "colorio/ocio/config_location.h"

#include <string>

#include <gtest/gtest.h>

#include "diagnostics/failure.h"
#include "tests/support/temp_dir.h"

namespace {

using diagnostics::Code;

constexpr char CONFIG[] = R"(ocio_profile_version: 1
roles:
  default: lin
  rendering: Gone
displays:
  Monitor:
    - !<View> {name: log, colorspace: lin, looks: "warm, -cold"}
active_views: [gone, cold]
looks:
  - !<Look>
    name: warm
    process_space: lost
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace>
    description: >
      name: log
    aliases: [twice]
    name: log
  - !<ColorSpace> {name: twice}
  - !<ColorSpace> {name: Twice}
)";

class ConfigLocation : public testing::Test {
protected:
    /// "LINE:COLUMN" of the name.
    std::string find(Code code, const std::string& name, const std::string& text = CONFIG) {
        diagnostics::Diagnostic error =
            diagnostics::make_file_error(code, "an error", folder.write("show.ocio", text));
        error.subject = name;
        ocio::locate_in_config(error);
        return std::to_string(error.line) + ":" + std::to_string(error.column);
    }

    TempDir folder;
};

TEST_F(ConfigLocation, OfANameThatARoleALookOrAViewRefersTo) {
    EXPECT_EQ(find(Code::CONFIG_INVALID, "gone"), "4:14");
    EXPECT_EQ(find(Code::CONFIG_INVALID, "lost"), "12:20");
    EXPECT_EQ(find(Code::CONFIG_INVALID, "cold"), "7:51");
    EXPECT_EQ(find(Code::CONFIG_INVALID, "Monitor"), "0:0");
}

TEST_F(ConfigLocation, OfALookInAList) {
    EXPECT_EQ(find(Code::LOOK_UNKNOWN, "cold"), "7:51");
    EXPECT_EQ(find(Code::LOOK_UNKNOWN, "lin"), "0:0");
}

TEST_F(ConfigLocation, OfTheDefinitionOfAColorSpace) {
    EXPECT_EQ(find(Code::CONFIG_CYCLE, "log"), "19:11");
    EXPECT_EQ(find(Code::MATRIX_SINGULAR, "log"), "19:11");
    EXPECT_EQ(find(Code::CONFIG_CYCLE, "twice"), "0:0") << "two have the name";
}

TEST_F(ConfigLocation, OfATextWithAVariable) {
    const std::string text = std::string(CONFIG) + "search_path: [luts/$SHOTS, \"a/${SHOT}\", \"%SHOT%\"]\n";
    EXPECT_EQ(find(Code::CONFIG_VARIABLE, "SHOT", text), "22:28");
    EXPECT_EQ(find(Code::CONFIG_VARIABLE, "SHOTS", text), "22:15");
    EXPECT_EQ(find(Code::CONFIG_VARIABLE, "shot", text), "0:0");
}

TEST_F(ConfigLocation, IsUnknownForOtherErrorsAndFiles) {
    EXPECT_EQ(find(Code::LUT_MISSING, "log"), "0:0");
    EXPECT_EQ(find(Code::CONFIG_CYCLE, "log", "PK\nname: log\n"), "0:0");
    EXPECT_EQ(find(Code::CONFIG_CYCLE, "log", "name: [log\n"), "0:0");
    EXPECT_EQ(find(Code::CONFIG_CYCLE, "log", "log"), "0:0");
}

} // namespace
