// Converting pixels through the module against OpenColorIO called directly, with the same flags.

#include <random>
#include <vector>

#include <OpenColorIO/OpenColorIO.h>
#include <benchmark/benchmark.h>

#include "benchmarks/colorio/bench_module.h"
#include "colorio/color_io.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_manager.h"

namespace OCIO = OCIO_NAMESPACE;

namespace {

constexpr unsigned int WIDTH = 3840;
constexpr unsigned int HEIGHT = 2160;

const auto EXACT = static_cast<OCIO::OptimizationFlags>(OCIO::OPTIMIZATION_LOSSLESS |
                                                        OCIO::OPTIMIZATION_NO_DYNAMIC_PROPERTIES);

/// The module with its built-in configuration, a converter, and the library's evaluator of the same
/// conversion.
struct Conversion {
    BenchFolder folder;
    BenchApp app{folder.get_path()};
    ColorIOConverter converter;
    OCIO::ConstCPUProcessorRcPtr library;

    Conversion() {
        ColorIO::init(&app);
        new (&converter) ColorIOConverter;
        converter.configure("sRGB", "linear");
        library = ColorIOManager::get_instance()
                      ->get_config()
                      ->getProcessor("sRGB", "linear")
                      ->getOptimizedCPUProcessor(EXACT);
    }
    ~Conversion() { stop_module(); }
};

std::vector<float> make_pixels(std::size_t floats) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> value(0.0f, 1.0f);
    std::vector<float> pixels(floats);
    for (float& pixel : pixels)
        pixel = value(random);
    return pixels;
}

/// Each iteration converts a fresh copy of the same image; the copy is not timed.
template <class Convert>
void convert_image(benchmark::State& state, Convert convert) {
    const std::vector<float> source = make_pixels(std::size_t(WIDTH) * HEIGHT * 4);
    std::vector<float> pixels = source;
    for (auto _ : state) {
        state.PauseTiming();
        pixels = source;
        state.ResumeTiming();
        convert(pixels.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * WIDTH * HEIGHT);
}

void module_convert_buffer(benchmark::State& state) {
    const Conversion conversion;
    convert_image(state,
                  [&](float* pixels) { conversion.converter.convert_buffer(pixels, WIDTH, HEIGHT, 4); });
}

void library_packed(benchmark::State& state) {
    const Conversion conversion;
    convert_image(state, [&](float* pixels) {
        OCIO::PackedImageDesc image(pixels, WIDTH, HEIGHT, 4);
        conversion.library->apply(image);
    });
}

void module_convert_buffers(benchmark::State& state) {
    const Conversion conversion;
    convert_image(state, [&](float* pixels) {
        const std::size_t plane = std::size_t(WIDTH) * HEIGHT;
        conversion.converter.convert_buffers(pixels, pixels + plane, pixels + 2 * plane, pixels + 3 * plane,
                                             WIDTH, HEIGHT);
    });
}

void library_planar(benchmark::State& state) {
    const Conversion conversion;
    convert_image(state, [&](float* pixels) {
        const std::size_t plane = std::size_t(WIDTH) * HEIGHT;
        OCIO::PlanarImageDesc image(pixels, pixels + plane, pixels + 2 * plane, pixels + 3 * plane, WIDTH,
                                    HEIGHT);
        conversion.library->apply(image);
    });
}

void module_convert_pixel(benchmark::State& state) {
    const Conversion conversion;
    GMathVec4<float> pixel(0.2f, 0.5f, 0.7f, 1.0f);
    for (auto _ : state) {
        GMathVec4<float> copy = pixel;
        conversion.converter.convert_pixel(copy);
        benchmark::DoNotOptimize(copy);
    }
}

void library_apply_rgba(benchmark::State& state) {
    const Conversion conversion;
    const float pixel[4] = {0.2f, 0.5f, 0.7f, 1.0f};
    for (auto _ : state) {
        float copy[4] = {pixel[0], pixel[1], pixel[2], pixel[3]};
        conversion.library->applyRGBA(copy);
        benchmark::DoNotOptimize(copy);
    }
}

} // namespace

BENCHMARK(module_convert_buffer)->Unit(benchmark::kMillisecond);
BENCHMARK(library_packed)->Unit(benchmark::kMillisecond);
BENCHMARK(module_convert_buffers)->Unit(benchmark::kMillisecond);
BENCHMARK(library_planar)->Unit(benchmark::kMillisecond);
BENCHMARK(module_convert_pixel);
BENCHMARK(library_apply_rgba);
