#include "benchmarks/pixel/picture_bench.h"

#include <benchmark/benchmark.h>

namespace pixel_bench {

namespace {

void convert_picture(benchmark::State& state, Picture picture, const Convert& convert) {
    std::vector<float> pixels = picture();
    for (auto _ : state) {
        state.PauseTiming();
        pixels = picture();
        state.ResumeTiming();
        convert(pixels);
        benchmark::DoNotOptimize(pixels.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(PIXELS));
}

} // namespace

void add_picture_benchmark(const std::string& name, Picture picture, const Convert& convert) {
    constexpr double MIN_SECONDS = 0.1; // in each of the repetitions
    benchmark::RegisterBenchmark(name.c_str(), convert_picture, picture, convert)
        ->Unit(benchmark::kMillisecond)
        ->MinTime(MIN_SECONDS)
        ->UseRealTime();
}

void read_write_pass(float* floats, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        floats[i] *= 0.999f;
}

} // namespace pixel_bench
