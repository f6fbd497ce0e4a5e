#include "benchmarks/pixel/image_bench.h"

namespace pixel_bench {

namespace {

void convert_image(benchmark::State& state, Image image, const Convert& convert) {
    std::vector<float> pixels = image();
    for (auto _ : state) {
        state.PauseTiming();
        pixels = image();
        state.ResumeTiming();
        convert(pixels);
        benchmark::DoNotOptimize(pixels.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(PIXELS));
}

} // namespace

benchmark::internal::Benchmark* add_image_benchmark(const std::string& name, Image image,
                                                    const Convert& convert) {
    return benchmark::RegisterBenchmark(name.c_str(), convert_image, image, convert)
        ->Unit(benchmark::kMillisecond);
}

void read_write_pass(float* floats, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        floats[i] *= 0.999f;
}

} // namespace pixel_bench
