#include "colorio/color_io_candidate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/env_guard.h"
#include "tests/support/temp_dir.h"

namespace {

using diagnostics::Code;
using testing::HasSubstr;

constexpr char CONFIG[] = R"(ocio_profile_version: 1
strictparsing: true
roles: {default: lin}
displays:
  Monitor:
    - !<View> {name: Film, colorspace: lin}
colorspaces:
  - !<ColorSpace> {name: lin}
)";

constexpr char CORRECTION[] = "<ColorCorrection id='warm'><SOPNode><Slope>1 1 1</Slope><Offset>0 0 0</Offset>"
                              "<Power>1 1 1</Power></SOPNode><SatNode><Saturation>1</Saturation></SatNode>"
                              "</ColorCorrection>";

std::string make_collection(const std::string& content) {
    return "<ColorCorrectionCollection>" + content + "</ColorCorrectionCollection>";
}

class Candidate : public testing::Test {
protected:
    /// The file that the diagnostic is about, and its code, must be these.
    void expect_error(const ColorIOCandidate::Error& error, Code code, const std::string& path) {
        ASSERT_TRUE(error);
        EXPECT_EQ(diagnostics::get_name(error->code), diagnostics::get_name(code)) << error->message;
        EXPECT_EQ(error->file, path);
    }

    TempDir folder;
    EnvGuard ocio{"OCIO"};
};

TEST_F(Candidate, AConfigThatTheModuleCanUseHasNoError) {
    EXPECT_FALSE(ColorIOCandidate::check_config_file(folder.write("show.ocio", CONFIG).c_str()));
}

TEST_F(Candidate, AConfigIsMissingAFolderOrDamaged) {
    const std::string missing = folder.file("none.ocio");
    expect_error(ColorIOCandidate::check_config_file(missing.c_str()), Code::CONFIG_MISSING, missing);
    expect_error(ColorIOCandidate::check_config_file(folder.get_path().c_str()), Code::FILE_NOT_REGULAR,
                 folder.get_path());
    const std::string damaged = folder.write("damaged.ocio", "ocio_profile_version: 1\nroles: {\n");
    expect_error(ColorIOCandidate::check_config_file(damaged.c_str()), Code::CONFIG_INVALID, damaged);
}

TEST_F(Candidate, TheConfigOfTheEnvironmentIsCheckedInTheSameWay) {
    ocio.set(folder.write("show.ocio", CONFIG));
    EXPECT_FALSE(ColorIOCandidate::check_config_of_environment());
    const std::string missing = folder.file("none.ocio");
    ocio.set(missing);
    expect_error(ColorIOCandidate::check_config_of_environment(), Code::CONFIG_MISSING, missing);
}

TEST_F(Candidate, ACdlLibraryNeedsOneValidCorrection) {
    EXPECT_FALSE(
        ColorIOCandidate::check_cdl_library(folder.write("grades.ccc", make_collection(CORRECTION)).c_str()));
    const std::string empty = folder.write("empty.ccc", make_collection(""));
    expect_error(ColorIOCandidate::check_cdl_library(empty.c_str()), Code::CDL_INVALID, empty);
}

TEST_F(Candidate, ACdlLibraryIsMissingOrMalformed) {
    const std::string missing = folder.file("none.ccc");
    expect_error(ColorIOCandidate::check_cdl_library(missing.c_str()), Code::FILE_MISSING, missing);
    const std::string open =
        folder.write("open.ccc", "<ColorCorrectionCollection>\n<ColorCorrection id='a'>\n");
    expect_error(ColorIOCandidate::check_cdl_library(open.c_str()), Code::XML_MALFORMED, open);
}

TEST_F(Candidate, AnInvalidFirstCorrectionIsTheReason) {
    std::string broken = CORRECTION;
    broken.erase(broken.find("<Saturation>1</Saturation>"), 26);
    const std::string path = folder.write("broken.ccc", make_collection(broken));
    const auto error = ColorIOCandidate::check_cdl_library(path.c_str());
    ASSERT_TRUE(error);
    EXPECT_EQ(diagnostics::get_name(error->code), "cdl-invalid");
    EXPECT_THAT(error->message, HasSubstr("broken.ccc"));
}

} // namespace
