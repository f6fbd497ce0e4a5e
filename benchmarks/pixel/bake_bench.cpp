// The 3D LUT of 32 x 32 x 32 colors for the GPU.

#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/pixel/conversions.h"
#include "colorio/ocio/processor.h"

using namespace pixel_bench;

namespace {

constexpr int EDGE = 32;
constexpr std::size_t FLOATS = std::size_t{3} * EDGE * EDGE * EDGE;

void bake(const ocio::Processor& processor, const char* function_name, std::vector<float>& table) {
    const ocio::GpuShaderDesc desc{ocio::GPU_LANGUAGE_GLSL_1_3, function_name, EDGE};
    benchmark::DoNotOptimize(processor.get_gpu_shader_text(desc));
    processor.get_gpu_lut_3d(table.data(), desc);
    benchmark::DoNotOptimize(table.data());
}

/// Text and LUT of a conversion. The last shader is cached by the name of its function, so two names
/// alternate.
void bake_table(benchmark::State& state, const Conversion& conversion) {
    const auto processor = ocio::get_processor(conversion.config, SOURCE, DESTINATION);
    std::vector<float> table(FLOATS);
    bake(*processor, "Before", table);
    bool odd = false;
    for (auto _ : state) {
        odd = !odd;
        bake(*processor, odd ? "Odd" : "Even", table);
    }
}

/// Text and LUT of a conversion that is made for them.
void bake_first_table(benchmark::State& state, const Conversion& conversion) {
    std::vector<float> table(FLOATS);
    for (auto _ : state) {
        const auto processor = ocio::get_processor(conversion.config, SOURCE, DESTINATION);
        bake(*processor, "First", table);
    }
}

/// Only the nodes through OpenColorIO, without a text.
void bake_with_library(benchmark::State& state, const Conversion& conversion) {
    const auto evaluator = lossless(conversion.processor);
    std::vector<float> nodes;
    for (std::size_t i = 0; i < FLOATS; i += 3)
        for (const std::size_t step : {1, EDGE, EDGE * EDGE})
            nodes.push_back(static_cast<float>(i / 3 / step % EDGE) / (EDGE - 1));
    for (auto _ : state) {
        std::vector<float> table = nodes;
        library::PackedImageDesc image(table.data(), EDGE * EDGE, EDGE, 3);
        evaluator->apply(image);
        benchmark::DoNotOptimize(table.data());
    }
}

using Bake = void (*)(benchmark::State&, const Conversion&);

void add(const std::string& name, Bake work, const Conversion& conversion) {
    benchmark::RegisterBenchmark(name.c_str(), work, conversion)->Unit(benchmark::kMicrosecond)->MinTime(0.1);
}

/// LUTs that the module fills by converting their nodes; other conversions use OpenColorIO's shaders.
const bool registered = [] {
    for (const Conversion& conversion : conversions()) {
        const std::string name = conversion.name;
        if (name.find("_to_") == std::string::npos)
            continue;
        add("bake/" + name + "/module", bake_table, conversion);
        add("bake/" + name + "/module_first", bake_first_table, conversion);
        add("bake/" + name + "/library_lossless", bake_with_library, conversion);
    }
    return true;
}();

} // namespace
