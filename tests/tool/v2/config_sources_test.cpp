// Configs that are not single files: archives, and those inside OpenColorIO.

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

#include <OpenColorIO/OpenColorIO.h>

#include "colorio/ocio/types.h"
#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

namespace OCIO = OCIO_NAMESPACE;
using testing::AllOf;
using testing::HasSubstr;

/// "half_light" is "lin" through a LUT.
constexpr char CONFIG[] = R"(ocio_profile_version: 2
search_path: luts
roles: {scene_linear: lin, default: lin}
file_rules:
  - !<Rule> {name: Default, colorspace: default}
displays:
  Monitor:
    - !<View> {name: Film, colorspace: half_light}
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace>
    name: half_light
    from_reference: !<FileTransform> {src: half.spi1d, interpolation: linear}
)";

constexpr char HALVING_LUT[] = "Version 1\nFrom 0.0 1.0\nLength 2\nComponents 1\n{\n0.0\n0.5\n}\n";

/// OpenColorIO 2.2 is the first with archives and built-in configs.
bool has_only_files() {
    const std::string version = ocio::get_version();
    return version.rfind("2.0.", 0) == 0 || version.rfind("2.1.", 0) == 0;
}

/// Writes the config with its LUTs as an archive. False if the library has no such operation.
template <class Config>
auto archive(const Config& config, std::ostream& stream, int) -> decltype(config.archive(stream), true) {
    config.archive(stream);
    return true;
}
template <class Config>
bool archive(const Config&, std::ostream&, long) {
    return false;
}

class ConfigSources : public ToolTest {
protected:
    ConfigSources() {
        write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeFloat, {0.5f, 0.25f, 0.18f}));
    }

    /// "show.ocioz"; what it was made from is removed. Without archives in OpenColorIO, it is of no use.
    void write_archive() {
        folder.write("source/config.ocio", CONFIG);
        folder.write("source/luts/half.spi1d", HALVING_LUT);
        std::ofstream stream(path("show.ocioz"), std::ios::binary);
        ASSERT_TRUE(archive(*OCIO::Config::CreateFromFile(path("source/config.ocio").c_str()), stream, 0));
        ASSERT_TRUE(stream.flush());
        std::filesystem::remove_all(path("source"));
    }

    ToolRun convert(std::vector<std::string> options) {
        options.insert(options.begin(), {"convert", path("in.exr"), path("out.exr")});
        return run(options);
    }

    void expect_half() {
        const Image out = read_image(path("out.exr"));
        EXPECT_FLOAT_EQ(out.get("R"), 0.25f);
        EXPECT_FLOAT_EQ(out.get("G"), 0.125f);
        EXPECT_FLOAT_EQ(out.get("B"), 0.09f);
    }
};

TEST_F(ConfigSources, MayBeAnArchiveWithLuts) {
    if (has_only_files())
        GTEST_SKIP() << "OpenColorIO " << ocio::get_version() << " reads no archives";
    ASSERT_NO_FATAL_FAILURE(write_archive());
    ASSERT_THAT(convert({"--config", path("show.ocioz"), "--from", "lin", "--to", "half_light"}), Succeeds());
    expect_half();
    EXPECT_THAT(run({"list", "views", "--config", path("show.ocioz")}).out, HasSubstr("Monitor"));
    EXPECT_THAT(run({"explain", "lin", "half_light", "--config", path("show.ocioz"), "--pixel", "1,1,1"}),
                Succeeds());
}

TEST_F(ConfigSources, MayBeAnArchiveThatTheEnvironmentNames) {
    if (has_only_files())
        GTEST_SKIP() << "OpenColorIO " << ocio::get_version() << " reads no archives";
    ASSERT_NO_FATAL_FAILURE(write_archive());
    ocio.set(path("show.ocioz"));
    ASSERT_THAT(convert({"--from", "lin", "--view", "Monitor.Film"}), Succeeds());
    expect_half();
}

TEST_F(ConfigSources, MayBeInsideOpenColorIO) {
    if (has_only_files())
        GTEST_SKIP() << "OpenColorIO " << ocio::get_version() << " contains no configs";
    for (const char* name : {"ocio://cg-config-v1.0.0_aces-v1.3_ocio-v2.1", "ocio://default"}) {
        SCOPED_TRACE(name);
        ASSERT_THAT(convert({"--config", name, "--from", "ACEScg", "--to", "ACEScct"}), Succeeds());
        const Image in = read_image(path("in.exr")), out = read_image(path("out.exr"));
        for (const char* channel : {"R", "G", "B"}) // S-2016-001, above the linear part
            EXPECT_NEAR(out.get(channel), (std::log2(in.get(channel)) + 9.72) / 17.52, 1e-5);
    }
}

TEST_F(ConfigSources, AreRefusedWithTheRemedyWhereTheLibraryIsTooOld) {
    if (!has_only_files())
        GTEST_SKIP() << "OpenColorIO " << ocio::get_version() << " reads archives and contains configs";
    const std::string newer =
        std::string("needs a newer OpenColorIO than ") + ocio::get_version() + ": 2.2 or later";
    const std::string archive = folder.write("show.ocioz", std::string("PK\x03\x04\x14\0\0\0", 8));
    EXPECT_THAT(convert({"--config", archive, "--from", "lin", "--to", "half_light"}),
                FailsWith(1, AllOf(HasSubstr(archive), HasSubstr(newer), HasSubstr("Extract it"))));
    const std::string builtin = "ocio://cg-config-v1.0.0_aces-v1.3_ocio-v2.1";
    EXPECT_THAT(convert({"--config", builtin, "--from", "ACEScg", "--to", "ACEScct"}),
                FailsWith(1, AllOf(HasSubstr(builtin), HasSubstr(newer))));
    EXPECT_FALSE(folder.exists("out.exr"));
}

TEST_F(ConfigSources, AreRefusedWhereTheyAreDamagedOrUnknown) {
    const std::string archive = folder.write("show.ocioz", std::string("PK\x03\x04\x14\0\0\0", 8));
    for (const std::string& config : {archive, std::string("ocio://none")}) {
        const ToolRun result = convert({"--config", config, "--from", "lin", "--to", "half_light"});
        EXPECT_THAT(result, FailsWith(1, HasSubstr("cannot load the config '" + config + "'")));
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    }
    EXPECT_FALSE(folder.exists("out.exr"));
}

} // namespace
