#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

// Makes the sample images: a chart with values that only high dynamic range files hold, as EXR of halfs and
// of floats in scene-linear colors with associated alpha, and an 8-bit sRGB image of the same chart.

namespace {

constexpr int WIDTH = 640;
constexpr int HEIGHT = 360;
/// Rows of bands, from the top.
constexpr int BANDS = 6;
constexpr int BAND_HEIGHT = HEIGHT / BANDS;

struct Pixel {
    float red;
    float green;
    float blue;
    float alpha;
};

/// Mixes at `t` from 0 to 1.
float mix(float a, float b, float t) {
    return a + (b - a) * t;
}

/// Full saturation at `hue` from 0 to 1: red, yellow, green, cyan, blue, magenta, red.
Pixel make_hue(float hue) {
    const auto component = [&](float shift) {
        const float place = std::fmod(hue + shift, 1.0f) * 6.0f;
        return std::clamp(std::fabs(place - 3.0f) - 1.0f, 0.0f, 1.0f);
    };
    return {component(0.0f), component(2.0f / 3.0f), component(1.0f / 3.0f), 1.0f};
}

/// Equal ratios from 2^-10 to 2^6, the range of a film scan and beyond.
Pixel make_exposure_ramp(float t) {
    const float level = std::exp2(mix(-10.0f, 6.0f, t));
    return {level, level, level, 1.0f};
}

/// Equal steps from -0.25 to 1.25: below black, and above white.
Pixel make_even_ramp(float t) {
    const float level = mix(-0.25f, 1.25f, t);
    return {level, level, level, 1.0f};
}

/// Saturated colors from a half to eight times white, down the band.
Pixel make_bright_hues(float t, float down) {
    const Pixel hue = make_hue(t);
    const float level = std::exp2(mix(-1.0f, 3.0f, down));
    return {hue.red * level, hue.green * level, hue.blue * level, 1.0f};
}

/// Colors outside the gamut: one component below zero.
Pixel make_wide_hues(float t) {
    const Pixel hue = make_hue(t);
    return {mix(-0.2f, 1.0f, hue.red), mix(-0.2f, 1.0f, hue.green), mix(-0.2f, 1.0f, hue.blue), 1.0f};
}

/// 24 patches of muted colors on middle gray.
Pixel make_patches(float t, float down) {
    const float place = t * 12.0f;
    const int column = static_cast<int>(place);
    const int row = down < 0.5f ? 0 : 1;
    const float inside = place - static_cast<float>(column);
    if (inside < 0.1f || inside > 0.9f)
        return {0.18f, 0.18f, 0.18f, 1.0f};
    const Pixel hue = make_hue(static_cast<float>(column) / 12.0f + (row == 0 ? 0.0f : 1.0f / 24.0f));
    const float light = row == 0 ? 0.45f : 0.12f;
    return {light * mix(0.4f, 1.0f, hue.red), light * mix(0.4f, 1.0f, hue.green),
            light * mix(0.4f, 1.0f, hue.blue), 1.0f};
}

/// Alpha from 0 to 1, the color multiplied by it; the first eighth shines without covering anything.
Pixel make_alpha_ramp(float t) {
    const float alpha = std::max(0.0f, mix(-1.0f / 7.0f, 1.0f, t));
    const float level = alpha == 0.0f ? 0.3f : alpha;
    return {level * 0.9f, level * 0.4f, level * 0.1f, alpha};
}

Pixel make_pixel(int x, int y) {
    const float t = static_cast<float>(x) / (WIDTH - 1);
    const float down = static_cast<float>(y % BAND_HEIGHT) / (BAND_HEIGHT - 1);
    switch (y / BAND_HEIGHT) {
    case 0:
        return make_exposure_ramp(t);
    case 1:
        return make_even_ramp(t);
    case 2:
        return make_bright_hues(t, down);
    case 3:
        return make_wide_hues(t);
    case 4:
        return make_patches(t, down);
    default:
        return make_alpha_ramp(t);
    }
}

/// IEC 61966-2-1, clamped to what eight bits hold.
float encode_srgb(float linear) {
    const float value = std::clamp(linear, 0.0f, 1.0f);
    return value <= 0.0031308f ? 12.92f * value : 1.055f * std::pow(value, 1.0f / 2.4f) - 0.055f;
}

std::vector<float> make_chart() {
    std::vector<float> pixels;
    for (int y = 0; y < HEIGHT; ++y)
        for (int x = 0; x < WIDTH; ++x) {
            const Pixel pixel = make_pixel(x, y);
            pixels.insert(pixels.end(), {pixel.red, pixel.green, pixel.blue, pixel.alpha});
        }
    return pixels;
}

/// Straight alpha, as PNG keeps it.
std::vector<float> make_srgb_chart(std::vector<float> pixels) {
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
        const float alpha = pixels[i + 3];
        for (std::size_t component = i; component < i + 3; ++component)
            pixels[component] = encode_srgb(alpha > 0.0f ? pixels[component] / alpha : pixels[component]);
    }
    return pixels;
}

bool write_image(const std::string& path, OIIO::TypeDesc depth, const char* color_space, bool straight_alpha,
                 const std::vector<float>& pixels) {
    OIIO::ImageSpec spec(WIDTH, HEIGHT, 4, depth);
    spec.attribute("oiio:ColorSpace", color_space);
    spec.attribute("Software", "make_samples");
    if (straight_alpha)
        spec.attribute("oiio:UnassociatedAlpha", 1);
    const auto output = OIIO::ImageOutput::create(path);
    const bool written = output && output->open(path, spec) &&
                         output->write_image(OIIO::TypeFloat, pixels.data()) && output->close();
    if (!written)
        std::fprintf(stderr, "make_samples: cannot write '%s': %s\n", path.c_str(),
                     (output ? output->geterror() : OIIO::geterror()).c_str());
    return written;
}

} // namespace

int main(int count, char* arguments[]) {
    if (count != 2) {
        std::fprintf(stderr, "usage: make_samples FOLDER\n");
        return 2;
    }
    const std::string folder = std::string(arguments[1]) + "/";
    const std::vector<float> chart = make_chart();
    const bool written =
        write_image(folder + "chart_half.exr", OIIO::TypeHalf, "Linear", false, chart) &&
        write_image(folder + "chart_float.exr", OIIO::TypeFloat, "Linear", false, chart) &&
        write_image(folder + "chart_srgb.png", OIIO::TypeUInt8, "sRGB", true, make_srgb_chart(chart));
    return written ? 0 : 1;
}
