// Writes colors and what conversions make of them, as raw floats, for comparison with those of Python.
// usage: python_expected_values CONFIG CDL FOLDER
#include <cstdio>
#include <exception>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "workflow/conversion.h"
#include "workflow/session.h"

namespace {

using workflow::ColorStep;
using workflow::ConversionRequest;

/// Also negative ones and highlights; a multiple of 30 pixels of 3 and of 4 channels.
std::vector<float> make_colors() {
    std::mt19937 random(7);
    std::vector<float> colors(30 * 12 * 50);
    for (float& color : colors)
        color = static_cast<float>(random() % 65536) / 16384 - 0.5f;
    return colors;
}

void write(const std::string& path, const std::vector<float>& values) {
    std::ofstream file(path, std::ios::binary);
    file.exceptions(std::ios::badbit | std::ios::failbit);
    file.write(reinterpret_cast<const char*>(values.data()),
               static_cast<std::streamsize>(values.size() * sizeof(float)));
}

void write_converted(const std::string& stem, const workflow::Conversion& conversion, float exposure) {
    for (const unsigned int channels : {3u, 4u}) {
        std::vector<float> colors = make_colors();
        conversion.apply(colors.data(), static_cast<unsigned int>(colors.size() / channels), 1, exposure,
                         channels);
        write(stem + "_" + std::to_string(channels) + ".raw", colors);
    }
}

void write_all(const std::string& config, const std::string& cdl, const std::string& folder) {
    workflow::SessionOptions options;
    options.config_path = config;
    options.no_preferences = true;
    const workflow::Session session(options);
    write(folder + "/colors.raw", make_colors());

    const ConversionRequest space{"lin", "", "curved", "", "", {}, false};
    const ConversionRequest view{"curved", "", "", "", "Monitor.Film", {}, false};
    const std::vector<ColorStep> steps = {{ColorStep::CDL, cdl}, {ColorStep::LOOKS, "warm"}};
    const ConversionRequest graded{"lin", "", "", "", "Monitor.Curved", steps, false};
    const ConversionRequest inverse{"", "Monitor.Curved", "half_light", "", "", {}, false};
    const ConversionRequest exposed{"curved", "", "half_light", "", "", {}, true};
    write_converted(folder + "/space", {session, space}, 0);
    write_converted(folder + "/view", {session, view}, 0);
    write_converted(folder + "/graded", {session, graded}, 0);
    write_converted(folder + "/inverse", {session, inverse}, 0);
    write_converted(folder + "/exposed", {session, exposed}, 0.5f);
}

} // namespace

int main(int count, char** arguments) {
    try {
        if (count != 4)
            return 2;
        write_all(arguments[1], arguments[2], arguments[3]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
