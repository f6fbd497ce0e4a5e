#include "colorio/ocio/config.h"
#include "tests/support/open_counter.h"
#include "tests/tool/configs.h"
#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

/// Commands open the config as often as a single parse of it does, and once before, to see whether a file
/// that they name can be read.
class ConfigLoads : public ToolTest {
protected:
    ConfigLoads() {
        OpenCounter opens(config);
        ocio::create_config_from_file(config.c_str());
        once = opens.take();
        write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeHalf, {0, 0.5, 1}));
    }

    int count_opens(const std::vector<std::string>& arguments) {
        OpenCounter opens(config);
        EXPECT_THAT(run(arguments), Succeeds());
        return opens.take();
    }

    const std::string config = folder.write("show.ocio", SHOW_CONFIG);
    int once = 0;
};

TEST_F(ConfigLoads, EveryCommandParsesTheConfigOnce) {
    ASSERT_GT(once, 0);
    const std::vector<std::vector<std::string>> commands = {
        {"list"},
        {"check"},
        {"explain", "lin", "warm"},
        {"shader", "--from", "lin", "--to", "warm", "-o", path("warm.glsl")},
        {"convert", path("in.exr"), path("out.exr"), "--from", "lin", "--to", "warm"},
        {"formats", "list"},
    };
    for (std::vector<std::string> command : commands) {
        const std::string name = command.front();
        command.insert(command.end(), {"--config", config});
        const int for_fingerprint = name == "convert" ? 1 : 0; // read, not parsed
        EXPECT_EQ(count_opens(command), 1 + once + for_fingerprint) << name;
    }
}

TEST_F(ConfigLoads, OneOfTheEnvironmentIsParsedOnce) {
    ocio.set(config);
    EXPECT_EQ(count_opens({"list"}), once);
    EXPECT_EQ(count_opens({"check"}), once);
}

TEST_F(ConfigLoads, OneOfThePreferencesIsParsedOnceWithCustomColorSpacesAndFormats) {
    const std::string mapping =
        folder.write("mapping.yaml", "OpenEXR: {extensions: exr, color_space: warm}\n");
    const std::string preferences =
        folder.write("prefs.yaml", "color_space_file_path: " + config + "\nuse_color_space_file: 1\n" +
                                       "color_space_by_extension_file_path: " + mapping +
                                       "\nuse_color_space_by_extension_file: 1\n");
    const std::string lut =
        folder.write("half.spi1d", "Version 1\nFrom 0 1\nLength 2\nComponents 1\n{\n0\n0.5\n}\n");
    ASSERT_THAT(run({"space", "add", "half", "--lut", lut, "--prefs", preferences}), Succeeds());
    EXPECT_EQ(count_opens({"list", "--prefs", preferences}), 1 + once);
    EXPECT_EQ(count_opens({"formats", "list", "--prefs", preferences}), 1 + once);
}

} // namespace
