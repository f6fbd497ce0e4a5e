#pragma once

#include <string>
#include <vector>

#include "tests/colorio/color_formulas.h"
#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

/// Converts frames of a sequence.
class SequenceTest : public ToolTest {
protected:
    /// A frame whose gray value is its number.
    static float get_gray(int frame) { return static_cast<float>(frame) / 64; }

    void write_frames(const std::vector<int>& frames) {
        for (const int frame : frames)
            write_image(path(name("in", frame)),
                        make_image(5, 3, 3, OIIO::TypeFloat, std::vector<float>(45, get_gray(frame))));
    }

    static std::string name(const std::string& stem, int frame) {
        return stem + "." + std::string(frame < 10 ? "000" : "00") + std::to_string(frame) + ".exr";
    }

    ToolRun convert(const std::string& frames, std::vector<std::string> more = {},
                    const tool::ConsoleTraits& traits = {}) {
        more.insert(more.begin(), {"convert", path("in.%04d.exr"), path("out.####.exr"), "--frames", frames,
                                   "--from", "sRGB", "--to", "linear"});
        return run(more, traits);
    }

    void expect_converted(int frame) {
        ASSERT_TRUE(folder.exists(name("out", frame))) << frame;
        EXPECT_NEAR(read_image(path(name("out", frame))).get("G", 4, 2),
                    formula::srgb_to_linear(get_gray(frame)), 5e-6);
    }
};
