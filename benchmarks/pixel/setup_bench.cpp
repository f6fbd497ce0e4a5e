// What a converter costs before its first pixel, and what one pixel costs in all.

#include <string>

#include <benchmark/benchmark.h>

#include "benchmarks/pixel/conversions.h"
#include "colorio/ocio/processor.h"
#include "colorio/ocio/v2/pixel_bridge.h"

using namespace pixel_bench;

namespace {

constexpr float PIXEL[4] = {0.2f, 0.5f, 0.7f, 1.0f};

/// From OpenColorIO's processor to the SIMD code.
void make_program(const Conversion& conversion) {
    const pixel::Program program(*ocio::translate(conversion.processor, nullptr));
    benchmark::DoNotOptimize(&program);
}

/// From OpenColorIO's processor to its CPU processor.
void make_library_evaluator(const Conversion& conversion) {
    const auto evaluator = lossless(conversion.processor);
    benchmark::DoNotOptimize(evaluator.get());
}

/// From a configuration to one converted pixel, as the module does it.
void convert_one_pixel(const Conversion& conversion) {
    float pixel[4] = {PIXEL[0], PIXEL[1], PIXEL[2], PIXEL[3]};
    ocio::get_processor(conversion.config, SOURCE, DESTINATION)->apply_rgba(pixel);
    benchmark::DoNotOptimize(pixel);
}

void convert_one_pixel_with_library(const Conversion& conversion) {
    float pixel[4] = {PIXEL[0], PIXEL[1], PIXEL[2], PIXEL[3]};
    lossless(conversion.config->getProcessor(SOURCE, DESTINATION))->applyRGBA(pixel);
    benchmark::DoNotOptimize(pixel);
}

using Work = void (*)(const Conversion&);

void repeat(benchmark::State& state, Work work, const Conversion& conversion) {
    for (auto _ : state)
        work(conversion);
}

void add(const std::string& name, Work work, const Conversion& conversion) {
    benchmark::RegisterBenchmark(name.c_str(), repeat, work, conversion)
        ->Unit(benchmark::kMicrosecond)
        ->MinTime(0.1);
}

const bool registered = [] {
    for (const Conversion& conversion : conversions()) {
        const std::string name = conversion.name;
        add("evaluator/" + name + "/pixel", make_program, conversion);
        add("evaluator/" + name + "/library_lossless", make_library_evaluator, conversion);
        add("one_pixel/" + name + "/module", convert_one_pixel, conversion);
        add("one_pixel/" + name + "/library_lossless", convert_one_pixel_with_library, conversion);
    }
    return true;
}();

} // namespace
