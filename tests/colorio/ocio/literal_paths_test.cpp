#include "colorio/ocio/literal_paths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "colorio/ocio/file_location.h"
#include "colorio/ocio/processor.h"
#include "colorio/ocio/source_files.h"
#include "tests/colorio/ocio/test_configs.h"
#include "tests/support/env_guard.h"

namespace {

using testing::Contains;

const char HALF[] = "Version 1\nFrom 0.0 1.0\nLength 2\nComponents 1\n{\n0.0\n0.5\n}\n";

/// Folders that could be taken for context variables. "QB_TEST_X" is one, "QB_TEST_NONE" is not.
const std::array<std::string, 7> FOLDERS = {"plain", "c$QB_TEST_X",      "c${QB_TEST_X}",   "%QB_TEST_X%",
                                            "c$",    "c${QB_TEST_NONE}", "a%QB_TEST_NONE%$"};

/// A config with the color spaces "x", which reads the file `source`, and "y", which refers to it by a
/// variable.
std::string config_text(const std::string& source, const std::string& version) {
    test_configs::ConfigText text;
    text.version = version;
    text.settings = "search_path: \"luts:shared/$QB_TEST_SHOW\"\n";
    text.spaces = "  - !<ColorSpace>\n    name: x\n    to_reference: !<FileTransform> {src: \"" + source +
                  "\", interpolation: linear}\n"
                  "  - !<ColorSpace>\n    name: y\n    to_reference: !<GroupTransform>\n      children:\n"
                  "        - !<ColorSpaceTransform> {src: $QB_TEST_SPACE, dst: lin}\n"
                  "        - !<FileTransform> {src: \"" +
                  source + "\", interpolation: linear}\n";
    return text.str();
}

class LiteralPaths : public testing::TestWithParam<std::string> {
protected:
    /// Red of the converted white.
    static float convert(const ocio::ConstConfigRcPtr& config, const char* source, const char* destination) {
        std::array<float, 4> pixel{1, 1, 1, 1};
        ocio::get_processor(config, source, destination)->apply_rgba(pixel.data());
        return pixel[0];
    }

    ocio::ConstConfigRcPtr load(const std::string& below, const std::string& source,
                                const std::string& version = "1") {
        return ocio::create_config_from_file(
            folder.write(below + "/config.ocio", config_text(source, version)).c_str());
    }

    TempDir folder;
    EnvGuard variable{"QB_TEST_X", "elsewhere"};
    EnvGuard unset{"QB_TEST_NONE"};
    EnvGuard show{"QB_TEST_SHOW", "blue"};
    EnvGuard space{"QB_TEST_SPACE", "x"};
};

TEST_P(LiteralPaths, OfTheConfigAreTakenAsTheyAre) {
    folder.write(GetParam() + "/luts/half.spi1d", HALF);
    const auto config = load(GetParam(), "half.spi1d");
    EXPECT_FLOAT_EQ(convert(config, "x", "lin"), 0.5f);
    EXPECT_FLOAT_EQ(convert(config, "lin", "x"), 2.0f * 0.5f);
    EXPECT_THAT(ocio::get_source_files(config),
                Contains(folder.get_path() + "/" + GetParam() + "/luts/half.spi1d"));
}

TEST_P(LiteralPaths, LeaveVariablesInForceElsewhere) {
    folder.write(GetParam() + "/shared/blue/half_blue.spi1d", HALF);
    const auto config = load(GetParam(), "half_$QB_TEST_SHOW.spi1d");
    EXPECT_FLOAT_EQ(convert(config, "x", "lin"), 0.5f);
    EXPECT_FLOAT_EQ(convert(config, "y", "lin"), 0.25f);
}

TEST_P(LiteralPaths, OfTheWorkingFolderAreTakenAsTheyAre) {
    folder.write(GetParam() + "/half.spi1d", HALF);
    const ocio::ConfigRcPtr config = ocio::create_config();
    ocio::set_working_dir(config, folder.file(GetParam()).c_str());
    const auto file = ocio::create_file_transform();
    ocio::set_src(file, "half.spi1d");
    ocio::set_interpolation(file, ocio::INTERP_LINEAR);
    ocio::add_color_space(config, test_configs::make_space("x", file));
    ocio::add_color_space(config, test_configs::make_space("lin"));
    EXPECT_FLOAT_EQ(convert(config, "x", "lin"), 0.5f);
}

TEST_P(LiteralPaths, OfAViewAreTakenAsTheyAre) {
    folder.write(GetParam() + "/luts/half.spi1d", HALF);
    const ocio::ConfigRcPtr config = ocio::create_editable_copy(load(GetParam(), "half.spi1d"));
    ocio::add_display(config, "d", "w", "lin", "");
    std::array<float, 4> pixel{1, 1, 1, 1};
    ocio::get_processor(config, ocio::DisplayTransform{"x", "d", "w"})->apply_rgba(pixel.data());
    EXPECT_FLOAT_EQ(pixel[0], 0.5f);
}

TEST_P(LiteralPaths, AreLookedForInTheOrderOfTheSearchPath) {
    // Each file in a folder that no config looked into before: OpenColorIO 1.1 remembers which files are
    // missing.
    const std::string only_second = GetParam() + "/second", both = GetParam() + "/both";
    for (const std::string& below : {only_second, both})
        folder.write(below + "/shared/blue/half.spi1d", HALF);
    folder.write(both + "/luts/half.spi1d", HALF);
    EXPECT_EQ(ocio::locate_file(load(only_second, "half.spi1d"), "half.spi1d"),
              folder.get_path() + "/" + only_second + "/shared/blue/half.spi1d");
    EXPECT_EQ(ocio::locate_file(load(both, "half.spi1d"), "half.spi1d"),
              folder.get_path() + "/" + both + "/luts/half.spi1d");
    EXPECT_EQ(ocio::locate_file(load(both, "half.spi1d"), "absent.spi1d"), "");
}

TEST_P(LiteralPaths, AreNamedWhereTheFileIsMissing) {
    const auto config = load(GetParam(), "absent.spi1d");
    EXPECT_THAT(test_configs::refusal_of([&] { ocio::get_processor(config, "x", "lin"); }),
                testing::HasSubstr("absent.spi1d"));
}

INSTANTIATE_TEST_SUITE_P(Folders, LiteralPaths, testing::ValuesIn(FOLDERS),
                         [](const auto& test) { return "Folder" + std::to_string(test.index); });

} // namespace
