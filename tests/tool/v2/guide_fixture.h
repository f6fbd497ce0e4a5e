#pragma once

#include <filesystem>

#include "tests/tool/tool_fixture.h"

/// Commands of the guide, as they stand there, in a folder with the config, LUTs, CDLs and images that they
/// name. The config is that of the environment; "show.ocio" has the color spaces ACEScg (scene-linear),
/// ACEScct, sRGB and Raw, the view sRGB.Film and the looks "film" and "warm".
class GuideFixture : public ToolTest {
protected:
    GuideFixture();
    ~GuideFixture() override;

    /// The commands in the second column of the guide's table, without the name of the program.
    static std::vector<std::string> read_commands();
    /// The words of a command line; double quotes hold words together.
    static std::vector<std::string> split_words(const std::string& command);
    /// Value of a channel of the first pixel.
    static float get(const char* name, const char* channel);

private:
    static void write_images();

    std::filesystem::path previous;
};
