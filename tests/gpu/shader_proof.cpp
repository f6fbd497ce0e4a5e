#include "tests/gpu/shader_proof.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <sstream>

#include <gtest/gtest.h>

#include "host/core/core_array.h"
#include "host/core/core_string.h"
#include "tests/gpu/cpu_color.h"
#include "tests/gpu/lattice.h"

namespace {

using GlslVersion = ColorIOConverter::GlslVersion;
using gl::GlEvaluator;
using gl::GlProfile;

constexpr int EDGE = 32;

/// Relative error that the float arithmetic of shader and CPU, with their approximations of powers and
/// logarithms, may add up to.
constexpr double ARITHMETIC = 5e-5;

/// Floats that cancel at a display's black leave some roundings of 1e-11 each, and its power of 1 / 2.6 makes
/// so much of eight of them.
constexpr double NEAR_BLACK = 2e-4;

/// Room for functions that are bent more than once between two entries, or across the axes.
constexpr double SEVERAL_BENDS = 2;

/// What of a look-up is shown in place of the converted pixel.
const std::string PLACE = "vec4(looked_up_at, 1.0)";
const std::string VALUE = "vec4(looked_up, 1.0)";

/// The text with its look-ups recorded. Its result becomes `shown`; `shift` is added to what is looked up.
std::string record_lookups(const std::string& text, GlslVersion version, const std::string& shown,
                           const std::string& shift = "vec3(0.0)") {
    const std::string call = version == ColorIOConverter::GLSL_VERSION_CORE ? "texture" : "texture3D";
    return "vec3 looked_up_at = vec3(-1.0);\n"
           "vec3 looked_up = vec3(0.0);\n"
           "float amount = 0.0;\n"
           "vec4 record(sampler3D lut, vec3 at) {\n"
           "    looked_up_at = at;\n"
           "    looked_up = " +
           call +
           "(lut, at).rgb;\n"
           "    return vec4(looked_up + " +
           shift +
           ", 1.0);\n"
           "}\n"
           "#define " +
           call +
           " record\n"
           "#define OCIODisplay converted\n" +
           text +
           "\n#undef OCIODisplay\n"
           "#undef " +
           call +
           "\n"
           "vec4 OCIODisplay(in vec4 inPixel, const sampler3D lut3d) {\n"
           "    amount = inPixel.a;\n"
           "    vec4 color = converted(inPixel, lut3d);\n"
           "    return " +
           shown + ";\n}\n";
}

Lattice::Rgb rgb_at(const std::vector<float>& rgba, size_t pixel) {
    return {rgba[pixel * 4], rgba[pixel * 4 + 1], rgba[pixel * 4 + 2]};
}

/// Interpolates in a table whose entry i along red is i, at places that need many bits.
double measure_position_error(gl::GlEvaluator& evaluator) {
    std::vector<float> table;
    for (int entry = 0; entry < EDGE * EDGE * EDGE; ++entry)
        table.insert(table.end(), 3, static_cast<float>(entry % EDGE));
    evaluator.load("vec4 OCIODisplay(in vec4 inPixel, const sampler3D lut3d) {\n"
                   "    return texture(lut3d, inPixel.rgb);\n}\n",
                   {{table.data(), EDGE}});
    std::vector<float> places;
    for (int i = 0; i < 20000; ++i) {
        const auto place = static_cast<float>((0.5 + (EDGE - 1) * (i / 20000.0)) / EDGE);
        places.insert(places.end(), {place, 0.5f, 0.5f, 1});
    }
    const std::vector<float> shown = evaluator.run(places);
    double largest = 0;
    for (size_t i = 0; i < places.size(); i += 4)
        largest = std::max(largest, std::abs(shown[i] - (double(places[i]) * EDGE - 0.5)));
    return largest;
}

/// The shader of one conversion on the probe pixels.
class ShaderProof {
public:
    ShaderProof(ShaderRunners& runners, const ColorIOConverter& converter, GlslVersion version)
        : evaluator(runners.get(version)), version(version), position_error(runners.get_position_error()),
          source(get_shader_source(converter, version)), lattice(source.table, EDGE),
          pixels(make_probe_pixels()), shown(run(source.text, pixels)),
          places(run(record_lookups(source.text, version, PLACE), pixels)), bounds(pixels.size() / 4) {
        report.uses_table = places[0] >= 0;
    }

    void check_lookups();
    void check_colors(const ColorIOConverter& converter);

    ShaderReport report;

private:
    std::vector<float> run(const std::string& text, const std::vector<float>& input) {
        evaluator.load(text, {{source.table.data(), EDGE}});
        return evaluator.run(input);
    }
    std::vector<Lattice::Rgb> carry_bounds();
    void note_error(size_t pixel, double error, double gpu, double cpu);
    bool check_color(size_t pixel, const ColorIOConverter& converter, const Lattice::Rgb& allowed);

    gl::GlEvaluator& evaluator;
    const GlslVersion version;
    const double position_error;
    const ShaderSource source;
    const Lattice lattice;
    const std::vector<float> pixels;
    const std::vector<float> shown;
    const std::vector<float> places;  ///< Where the table was looked up.
    std::vector<Lattice::Rgb> bounds; ///< How far what was looked up may be from the function's value.
};

void ShaderProof::check_lookups() {
    if (!report.uses_table)
        return;
    const std::vector<float> values = run(record_lookups(source.text, version, VALUE), pixels);
    for (size_t i = 0; i < bounds.size(); ++i) {
        const Lattice::Rgb place = rgb_at(places, i), value = rgb_at(values, i);
        const Lattice::Rgb exact = lattice.sample(place), spread = lattice.get_spread(place);
        bounds[i] = lattice.get_error_bound(place);
        for (size_t channel = 0; channel < 3; ++channel) {
            const double error = std::abs(value[channel] - exact[channel]);
            const double precision =
                (3 * position_error + std::numeric_limits<float>::epsilon()) * spread[channel];
            ASSERT_LE(error, precision + 1e-6 * std::max(1.0, std::abs(exact[channel]))) << "pixel " << i;
            report.largest_sampling = std::max(report.largest_sampling, error);
            bounds[i][channel] = SEVERAL_BENDS * bounds[i][channel] + precision;
        }
    }
}

/// How far the result moves when what is looked up moves by the bounds, channel by channel.
std::vector<Lattice::Rgb> ShaderProof::carry_bounds() {
    std::vector<Lattice::Rgb> carried(bounds.size());
    for (size_t channel = 0; report.uses_table && channel < 3; ++channel) {
        const std::string shift =
            std::array{"vec3(amount, 0.0, 0.0)", "vec3(0.0, amount, 0.0)", "vec3(0.0, 0.0, amount)"}[channel];
        const std::string text = record_lookups(source.text, version, "color", shift);
        for (const float direction : {1.0f, -1.0f}) {
            std::vector<float> shifted = pixels;
            for (size_t i = 0; i < bounds.size(); ++i)
                shifted[i * 4 + 3] = direction * static_cast<float>(bounds[i][channel]);
            const std::vector<float> moved = run(text, shifted);
            for (size_t i = 0; i < bounds.size(); ++i)
                for (size_t result = 0; result < 3; ++result)
                    carried[i][result] += std::abs(moved[i * 4 + result] - shown[i * 4 + result]);
        }
    }
    return carried;
}

void ShaderProof::check_colors(const ColorIOConverter& converter) {
    const std::vector<Lattice::Rgb> allowed = carry_bounds();
    for (size_t i = 0; i < bounds.size(); ++i) {
        ASSERT_EQ(shown[i * 4 + 3], pixels[i * 4 + 3]) << "alpha of pixel " << i;
        if (report.uses_table && !lattice.covers(rgb_at(places, i)))
            continue;
        if (!check_color(i, converter, allowed[i]))
            return;
    }
}

void ShaderProof::note_error(size_t pixel, double error, double gpu, double cpu) {
    if (error < report.largest_error)
        return;
    report.largest_error = error;
    const float* before = &pixels[pixel * 4];
    std::ostringstream place;
    place << before[0] << " " << before[1] << " " << before[2] << ": " << gpu << " on the GPU, " << cpu
          << " on the CPU";
    report.largest_place = place.str();
}

/// False when the pixel is off.
bool ShaderProof::check_color(size_t pixel, const ColorIOConverter& converter, const Lattice::Rgb& allowed) {
    const float* before = &pixels[pixel * 4];
    const Lattice::Rgb converted = convert_on_cpu(converter, before), gpu = rgb_at(shown, pixel);
    bool is_compared = false;
    for (size_t channel = 0; channel < 3; ++channel) {
        const double cpu = converted[channel];
        if (!std::isfinite(cpu)) // GLSL leaves it to the driver what comes of that.
            continue;
        const double error = std::abs(gpu[channel] - cpu);
        note_error(pixel, error / std::max(1.0, std::abs(cpu)), gpu[channel], cpu);
        double limit = allowed[channel] + ARITHMETIC * std::max(1.0, std::abs(cpu));
        if (std::max(std::abs(gpu[channel]), std::abs(cpu)) < NEAR_BLACK)
            limit = std::max(limit, NEAR_BLACK);
        if (!(error <= limit) && overflows(converter, before))
            continue;
        if (!(error <= limit))
            limit += get_unsteadiness(converter, before, converted)[channel];
        EXPECT_LE(error, limit) << "channel " << channel << " of pixel " << pixel << " (" << before[0] << ", "
                                << before[1] << ", " << before[2] << "): " << gpu[channel] << " on the GPU, "
                                << cpu << " on the CPU";
        if (!(error <= limit))
            return false;
        is_compared = true;
    }
    report.pixels += is_compared;
    return true;
}

} // namespace

ShaderRunners::ShaderRunners()
    : core(gl::GlProfile::CORE), legacy(gl::GlProfile::LEGACY), position_error(measure_position_error(core)) {
}

std::vector<float> make_probe_pixels() {
    std::mt19937 random(20260);
    std::uniform_real_distribution<float> unit(0, 1), stops(-9.5f, 5.5f), around(-0.12f, 1.12f);
    std::vector<float> pixels;
    const auto add = [&](float r, float g, float b) { pixels.insert(pixels.end(), {r, g, b, unit(random)}); };
    for (int i = 0; i < 1500; ++i) {
        add(unit(random), unit(random), unit(random));
        add(around(random), around(random), around(random));
        add(std::exp2(stops(random)), std::exp2(stops(random)), std::exp2(stops(random)));
        const float gray = i % 2 ? unit(random) : std::exp2(stops(random));
        add(gray, gray, gray);
    }
    for (const float value : {0.0f, 0.18f, 0.5f, 1.0f, -0.05f, 4.0f})
        add(value, value, value);
    for (const float value : {0.25f, 1.0f}) {
        add(value, 0, 0);
        add(0, value, 0);
        add(0, 0, value);
    }
    return pixels;
}

ShaderSource get_shader_source(const ColorIOConverter& converter, GlslVersion version) {
    CoreString text;
    CoreArray<float> table;
    EXPECT_TRUE(converter.get_gpu_shader_data(text, table, version));
    EXPECT_EQ(table.get_count(), 98304u);
    return {text.get_data(), std::vector<float>(table.begin(), table.end())};
}

ShaderReport prove_shader(ShaderRunners& runners, const ColorIOConverter& converter, GlslVersion version) {
    ShaderProof proof(runners, converter, version);
    proof.check_lookups();
    proof.check_colors(converter);
    return proof.report;
}
