#pragma once

#include <functional>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/pixel/pictures.h"

namespace pixel_bench {

/// Changes a whole picture of `pictures.h` in place.
using Convert = std::function<void(std::vector<float>&)>;

/// Registers a benchmark that converts a fresh copy of `picture` in each iteration; copying is not timed.
benchmark::internal::Benchmark* add_picture_benchmark(const std::string& name, Picture picture,
                                                      const Convert& convert);

/// Reads and writes every float once: what no conversion can undercut.
void read_write_pass(float* floats, std::size_t count);

} // namespace pixel_bench
