#include "colorio/color_io_candidate.h"

#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"

namespace {

TEST(CandidateOfV2, ARoleOfAnUnknownColorSpaceIsNamed) {
    const TempDir folder;
    const std::string path = folder.write("role.ocio", R"(ocio_profile_version: 1
strictparsing: true
roles: {default: log}
displays:
  Monitor:
    - !<View> {name: Film, colorspace: lin}
colorspaces:
  - !<ColorSpace> {name: lin}
)");
    const auto error = ColorIOCandidate::check_config_file(path.c_str());
    ASSERT_TRUE(error);
    EXPECT_EQ(diagnostics::get_name(error->code), "config-invalid");
    EXPECT_EQ(error->subject, "log");
    EXPECT_EQ(error->line, 3u);
    EXPECT_EQ(error->column, 18u);
}

} // namespace
