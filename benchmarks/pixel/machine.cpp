// Reports the machine and the peer at the start of the results.

#include <fstream>
#include <string>

#include <benchmark/benchmark.h>

#include "colorio/ocio/types.h"
#include "pixel/vector_target.h"

namespace {

std::string cpu_model() {
    constexpr char KEY[] = "model name";
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);) {
        const std::size_t colon = line.find(": ");
        if (line.compare(0, sizeof KEY - 1, KEY) == 0 && colon != std::string::npos)
            return line.substr(colon + 2);
    }
    return "unknown";
}

const bool reported = [] {
    benchmark::AddCustomContext("cpu_model", cpu_model());
    benchmark::AddCustomContext("vector_target", pixel::vector_target());
    benchmark::AddCustomContext("library_version", ocio::get_version());
    return true;
}();

} // namespace
