#pragma once

#include <functional>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/pixel/images.h"

namespace pixel_bench {

/// Changes a whole image of `images.h` in place.
using Convert = std::function<void(std::vector<float>&)>;

/// Registers a benchmark that converts a fresh copy of `image` in each iteration; copying is not timed.
benchmark::internal::Benchmark* add_image_benchmark(const std::string& name, Image image,
                                                    const Convert& convert);

/// Reads and writes every float once: a lower bound for every conversion.
void read_write_pass(float* floats, std::size_t count);

} // namespace pixel_bench
