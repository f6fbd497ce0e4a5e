// One color through the module, as a render host asks per texture sample, against OpenColorIO's applyRGBA on
// the same conversion under the same flags: once for every operation.

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include <OpenColorIO/OpenColorIO.h>
#include <benchmark/benchmark.h>

#include "benchmarks/colorio/bench_module.h"
#include "colorio/color_io.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_manager.h"

namespace OCIO = OCIO_NAMESPACE;

namespace {

constexpr std::size_t COLORS = 1024;

struct Operation {
    const char* name;
    const char* transform;
    bool from_linear = false; ///< converted backwards
};

constexpr char SRGB[] = "!<FileTransform> {src: srgb.spi1d, interpolation: linear}";
constexpr char GRADE[] = "!<CDLTransform> {slope: [1.1, 0.9, 1.05], offset: [0.01, -0.02, 0.03], "
                         "power: [1.2, 0.8, 1.1], sat: 1.2}";

const Operation OPERATIONS[] = {
    {"matrix",
     "!<MatrixTransform> {matrix: [0.6, 0.3, 0.1, 0, 0.2, 0.7, 0.1, 0, 0.05, 0.15, 0.8, 0, 0, 0, 0, 1]}"},
    {"scale", "!<MatrixTransform> {matrix: [0.6, 0, 0, 0, 0, 0.7, 0, 0, 0, 0, 0.8, 0, 0, 0, 0, 1]}"},
    {"range", "!<RangeTransform> {min_in_value: 0.1, max_in_value: 0.9, min_out_value: 0, max_out_value: 1}"},
    {"cdl", GRADE},
    {"cdl_inverse", GRADE, true},
    {"exponent", "!<ExponentTransform> {value: [2.2, 2.2, 2.2, 1]}"},
    {"linear_toe",
     "!<ExponentWithLinearTransform> {gamma: [2.4, 2.4, 2.4, 1], offset: [0.055, 0.055, 0.055, 0]}"},
    {"log", "!<LogTransform> {base: 2}"},
    {"antilog", "!<LogTransform> {base: 2}", true},
    {"log_affine", "!<LogAffineTransform> {base: 10, log_side_slope: 0.3, log_side_offset: 0.6, "
                   "lin_side_slope: 1.1, lin_side_offset: 0.02}"},
    {"camera_log", "!<LogCameraTransform> {base: 2, log_side_slope: 0.0570776, log_side_offset: 0.554794, "
                   "lin_side_break: 0.0078125}"},
    {"lut_1d", SRGB},
    {"lut_1d_inverse", SRGB, true},
    {"lut_3d_trilinear", "!<FileTransform> {src: cube.spi3d, interpolation: linear}"},
    {"lut_3d_tetrahedral", "!<FileTransform> {src: cube.spi3d, interpolation: tetrahedral}"},
    {"half_lut", "!<BuiltinTransform> {style: CANON_CLOG2-CGAMUT_to_ACES2065-1}"},
    {"fixed_function", "!<FixedFunctionTransform> {style: ACES_RedMod10}"},
    {"aces_output", "!<BuiltinTransform> {style: ACES-OUTPUT - ACES2065-1_to_CIE-XYZ-D65 - SDR-CINEMA_1.0}"},
    {"exposure_contrast",
     "!<ExposureContrastTransform> {style: linear, exposure: 0.5, contrast: 1.1, gamma: 1, pivot: 0.18}"},
    {"graded_lut",
     "!<GroupTransform> {children: [!<CDLTransform> {slope: [1.1, 0.9, 1.05], power: [1.2, 0.8, "
     "1.1]}, !<FileTransform> {src: srgb.spi1d, interpolation: linear}]}"},
};

std::string lut_text() {
    std::string text = "Version 1\nFrom -0.125 1.125\nLength 4101\nComponents 1\n{\n";
    for (int i = 0; i < 4101; ++i) {
        const double x = i * 1.25 / 4100 - 0.125;
        text += std::to_string(x >= 0.04045 ? std::pow((x + 0.055) / 1.055, 2.4) : x / 12.92) + "\n";
    }
    return text + "}\n";
}

std::string cube_text() {
    constexpr int EDGE = 33;
    std::string text = "SPILUT 1.0\n3 3\n33 33 33\n";
    for (int r = 0; r < EDGE; ++r)
        for (int g = 0; g < EDGE; ++g)
            for (int b = 0; b < EDGE; ++b)
                text += std::to_string(r) + " " + std::to_string(g) + " " + std::to_string(b) + " " +
                        std::to_string(std::pow(r / 32.0, 1.1)) + " " + std::to_string(std::sqrt(g / 32.0)) +
                        " " + std::to_string(0.8 * b / 32.0 + 0.2 * r / 32.0) + "\n";
    return text;
}

std::string config_text() {
    std::string text =
        "ocio_profile_version: 2\nsearch_path: .\nroles: {scene_linear: linear, default: linear}\n"
        "file_rules:\n  - !<Rule> {name: Default, colorspace: default}\n"
        "displays:\n  D:\n    - !<View> {name: V, colorspace: linear}\n"
        "colorspaces:\n  - !<ColorSpace> {name: linear}\n";
    for (const Operation& operation : OPERATIONS)
        text += std::string("  - !<ColorSpace>\n    name: ") + operation.name +
                "\n    to_scene_reference: " + operation.transform + "\n";
    return text;
}

/// The running module with that config.
struct Module {
    BenchFolder folder;
    BenchApp app{folder.get_path()};

    Module() {
        ColorIO::init(&app);
        folder.write("srgb.spi1d", lut_text());
        folder.write("cube.spi3d", cube_text());
        app.config_path = folder.write("operations.ocio", config_text()).c_str();
        ColorIOManager::get_instance()->use_file_config(true);
    }
    ~Module() { stop_module(); }
};

/// Colors that differ from call to call, spread evenly over [0, 1).
template <class Convert>
void convert_colors(benchmark::State& state, Convert convert) {
    std::vector<GMathVec4<float>> colors;
    for (std::size_t i = 0; i < COLORS; ++i) {
        const auto part = [i](double step) {
            return static_cast<float>(std::fmod(static_cast<double>(i) * step, 1));
        };
        colors.emplace_back(part(0.618), part(0.414), part(0.732), 1.0f);
    }
    std::size_t next = 0;
    for (auto _ : state) {
        GMathVec4<float> color = colors[next++ % COLORS];
        convert(color);
        benchmark::DoNotOptimize(color);
    }
}

void by_module(benchmark::State& state, const Operation& operation) {
    const Module module;
    ColorIOConverter converter;
    if (!(operation.from_linear ? converter.configure("linear", operation.name)
                                : converter.configure(operation.name, "linear")))
        return state.SkipWithError("the module cannot make the conversion");
    convert_colors(state, [&](GMathVec4<float>& color) { converter.convert_pixel(color); });
}

void by_library(benchmark::State& state, const Operation& operation) {
    const Module module;
    const auto config = ColorIOManager::get_instance()->get_config();
    const auto processor = (operation.from_linear ? config->getProcessor("linear", operation.name)
                                                  : config->getProcessor(operation.name, "linear"))
                               ->getOptimizedCPUProcessor(static_cast<OCIO::OptimizationFlags>(
                                   OCIO::OPTIMIZATION_LOSSLESS | OCIO::OPTIMIZATION_NO_DYNAMIC_PROPERTIES));
    convert_colors(state, [&](GMathVec4<float>& color) { processor->applyRGBA(color.get_data()); });
}

const bool registered = [] {
    for (const Operation& operation : OPERATIONS) {
        const std::string name = std::string("single_color/") + operation.name;
        benchmark::RegisterBenchmark((name + "/module").c_str(), by_module, operation);
        benchmark::RegisterBenchmark((name + "/library").c_str(), by_library, operation);
    }
    return true;
}();

} // namespace
