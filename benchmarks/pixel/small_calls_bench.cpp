// Calls with few pixels, as made by hosts that convert a scanline or a pixel at a time: the cost of a call,
// next to OpenColorIO's.

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/pixel/conversions.h"
#include "benchmarks/pixel/images.h"

using namespace pixel_bench;

namespace {

using Call = std::function<void(float* pixels)>;

/// Walks over an image, so that values differ from call to call; a copy is converted.
void repeat(benchmark::State& state, std::size_t count, const Call& call) {
    const std::vector<float>& source = waves();
    std::vector<float> pixels(4 * count);
    std::size_t at = 0;
    for (auto _ : state) {
        std::copy_n(source.begin() + static_cast<std::ptrdiff_t>(at), pixels.size(), pixels.begin());
        call(pixels.data());
        benchmark::DoNotOptimize(pixels.data());
        benchmark::ClobberMemory();
        at = (at + pixels.size()) % (source.size() - pixels.size());
    }
}

void add(const std::string& name, std::size_t count, const Call& call) {
    benchmark::RegisterBenchmark(name.c_str(), repeat, count, call)
        ->Unit(benchmark::kNanosecond)
        ->MinTime(0.05);
}

void add_conversion(const Conversion& conversion, std::size_t count) {
    const std::string name = std::string("call/") + conversion.name + "/" + std::to_string(count) + "/";
    const auto program = program_of(conversion);
    add(name + "pixel", count,
        [program, count](float* pixels) { program->apply_packed(pixels, count, 1, 4); });
    const auto library_call = [count](const library::ConstCPUProcessorRcPtr& processor) {
        return [processor, count](float* pixels) {
            library::PackedImageDesc image(pixels, static_cast<long>(count), 1, 4);
            processor->apply(image);
        };
    };
    add(name + "library_lossless", count, library_call(lossless(conversion.processor)));
    if (count == 1) {
        add(name + "pixel_single", count, [program](float* pixels) { program->apply_pixel(pixels); });
        const auto processor = lossless(conversion.processor);
        add(name + "library_single", count, [processor](float* pixels) { processor->applyRGBA(pixels); });
    }
}

const bool registered = [] {
    for (const Conversion& conversion : conversions()) {
        for (const std::size_t count : {1, 4, 16, 64, 256, 1920}) {
            add_conversion(conversion, count);
        }
    }
    return true;
}();

} // namespace
