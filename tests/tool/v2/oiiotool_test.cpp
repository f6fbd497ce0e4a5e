// The same conversions by oiiotool, with the same config and images.

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include <fmt/format.h>

#include "tests/tool/images.h"
#include "tests/tool/v2/guide_fixture.h"

namespace {

/// oiiotool converts with the single-precision processors of OpenColorIO; values below 16 then differ by a
/// few units in the last place.
constexpr float FLOAT_TOLERANCE = 1e-5f;
constexpr float ONE_CODE_VALUE = 1.0f / 255;

/// A conversion by both programs.
struct SameWork {
    std::string input;
    std::vector<std::string> options; ///< Of colorio convert.
    std::string oiiotool;             ///< Options of oiiotool between the input and the depth.
};

class BesideOiiotool : public GuideFixture {
protected:
    void SetUp() override {
        if (std::system("oiiotool --version >out.txt 2>&1") != 0)
            GTEST_SKIP() << "oiiotool is not installed (Debian package openimageio-tools)";
        write_cube("film.cube");
        write_ramp("ramp.exr", OIIO::TypeFloat, -0.05f, 4.0f);
        write_ramp("ramp_log.exr", OIIO::TypeFloat, 0.0f, 0.9f);
        write_ramp("ramp.png", OIIO::TypeUInt8, 0.0f, 1.0f);
    }

    /// A 3D LUT. Its channels are sums of functions of one channel, so that trilinear interpolation, by
    /// colorio, and tetrahedral interpolation, by oiiotool, give the same.
    void write_cube(const char* name) const {
        constexpr int SIZE = 5;
        std::string text = "LUT_3D_SIZE 5\n";
        for (int i = 0; i < SIZE * SIZE * SIZE; ++i) {
            const double r = i % SIZE / 4.0, g = i / SIZE % SIZE / 4.0, b = i / SIZE / SIZE / 4.0;
            text += fmt::format("{} {} {}\n", r * r, 0.5 * g * g + 0.25 * (r + b), b * b - 0.5 * g);
        }
        folder.write(name, text);
    }

    /// Red rises, green falls and blue is quadratic.
    static void write_ramp(const char* name, OIIO::TypeDesc depth, float first, float last) {
        constexpr int WIDTH = 64, HEIGHT = 4, COUNT = WIDTH * HEIGHT;
        std::vector<float> values;
        for (int i = 0; i < COUNT; ++i) {
            const float at = static_cast<float>(i) / (COUNT - 1), range = last - first;
            values.insert(values.end(), {first + range * at, last - range * at, first + range * at * at});
        }
        write_image(name, make_image(WIDTH, HEIGHT, 3, depth, values));
    }

    /// Both programs write `name`; the largest difference of a value.
    float compare(const SameWork& work, const std::string& depth, const std::string& name) {
        const std::string ours = "ours_" + name, theirs = "theirs_" + name;
        std::vector<std::string> arguments = {"convert", work.input, ours, "-d", depth};
        arguments.insert(arguments.end(), work.options.begin(), work.options.end());
        EXPECT_THAT(run(arguments), Succeeds());
        const std::string command = "oiiotool " + work.input + " --colorconfig show.ocio " + work.oiiotool +
                                    " -d " + depth + " -o " + theirs + " >out.txt 2>&1";
        if (std::system(command.c_str()) != 0) {
            ADD_FAILURE() << command << "\n" << folder.read("out.txt");
            return INFINITY;
        }
        const std::vector<float> values = read_image(ours).values, others = read_image(theirs).values;
        const std::vector<float> input = read_image(work.input).values;
        EXPECT_EQ(values.size(), others.size());
        EXPECT_NE(values, input) << "nothing was converted";
        float largest = 0;
        for (std::size_t i = 0; i < std::min(values.size(), others.size()); ++i)
            largest =
                std::max(largest, std::isfinite(values[i]) ? std::abs(values[i] - others[i]) : INFINITY);
        return largest;
    }
};

TEST_F(BesideOiiotool, ConvertsFloatsToTheSameValues) {
    const SameWork works[] = {
        {"ramp.exr", {"--from", "ACEScg", "--to", "ACEScct"}, "--colorconvert ACEScg ACEScct"},
        {"ramp_log.exr", {"--from", "ACEScct", "--to", "sRGB"}, "--colorconvert ACEScct sRGB"},
        {"ramp.exr", {"--from", "ACEScg", "--view", "sRGB.Film"}, "--ociodisplay:from=ACEScg sRGB Film"},
        {"ramp.exr",
         {"--from", "ACEScg", "--to", "ACEScg", "--look", "film"},
         "--ociolook:from=ACEScg:to=ACEScg film"},
        {"ramp.exr",
         {"--from", "ACEScg", "--to", "ACEScg", "--look", "film, -warm"},
         "--ociolook:from=ACEScg:to=ACEScg film,-warm"},
        {"ramp_log.exr",
         {"--from", "ACEScct", "--lut", "show.cube"},
         "--ociofiletransform " + path("show.cube")},
        {"ramp_log.exr",
         {"--from", "ACEScct", "--lut", "show.cube", "--inverse"},
         "--ociofiletransform:inverse=1 " + path("show.cube")},
        {"ramp_log.exr",
         {"--from", "ACEScct", "--lut", "film.cube"},
         "--ociofiletransform " + path("film.cube")},
        {"ramp.exr",
         {"--from", "ACEScg", "--to", "Shot", "--context", "SHOT=sq020"},
         "--colorconvert:key=SHOT:value=sq020 ACEScg Shot"},
    };
    for (const SameWork& work : works)
        EXPECT_LE(compare(work, "float", "out.exr"), FLOAT_TOLERANCE) << work.oiiotool;
}

TEST_F(BesideOiiotool, ConvertsIntegersToTheSameCodeValuesButOne) {
    const SameWork works[] = {
        {"ramp.png", {"--from", "sRGB", "--to", "ACEScct"}, "--colorconvert sRGB ACEScct"},
        {"ramp.exr", {"--from", "ACEScg", "--view", "sRGB.Film"}, "--ociodisplay:from=ACEScg sRGB Film"},
        {"ramp.png", {"--from", "sRGB", "--lut", "show.cube"}, "--ociofiletransform " + path("show.cube")},
    };
    for (const SameWork& work : works)
        EXPECT_LE(compare(work, "uint8", "out.png"), ONE_CODE_VALUE + 1e-6f) << work.oiiotool;
}

} // namespace
