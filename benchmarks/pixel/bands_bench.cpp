// Images cut into bands of rows for one and for all of the machine's cores, as a host would do it: how much
// faster the conversions get, beside the plain pass.

#include <algorithm>
#include <atomic>
#include <thread>

#include "benchmarks/pixel/conversions.h"
#include "benchmarks/pixel/image_bench.h"

using namespace pixel_bench;

namespace {

constexpr int REPETITIONS = 40;
constexpr std::size_t BAND_ROWS = 30;
constexpr std::size_t BANDS = HEIGHT / BAND_ROWS;
constexpr std::size_t BAND_FLOATS = 4 * WIDTH * BAND_ROWS;
static_assert(BANDS * BAND_ROWS == HEIGHT);

using ConvertBand = std::function<void(float* band)>;

/// The next free thread takes the next band.
void convert_bands(std::vector<float>& pixels, unsigned int threads, const ConvertBand& convert) {
    std::atomic<std::size_t> next{0};
    const auto work = [&] {
        for (std::size_t band = next++; band < BANDS; band = next++)
            convert(pixels.data() + band * BAND_FLOATS);
    };
    std::vector<std::thread> others;
    for (unsigned int i = 1; i < threads; ++i)
        others.emplace_back(work);
    work();
    for (std::thread& other : others)
        other.join();
}

/// In wall-clock time, repeated; the median is reported.
void add_bands(const std::string& name, const ConvertBand& convert) {
    const unsigned int all = std::max(2u, std::thread::hardware_concurrency());
    for (const unsigned int threads : {1u, all}) {
        const Convert in_bands = [threads, convert](std::vector<float>& pixels) {
            convert_bands(pixels, threads, convert);
        };
        add_image_benchmark("bands/" + name + "/threads_" + std::to_string(threads), waves, in_bands)
            ->UseRealTime()
            ->Iterations(1)
            ->Repetitions(REPETITIONS);
    }
}

const bool registered = [] {
    add_bands("read_write", [](float* band) { read_write_pass(band, BAND_FLOATS); });
    for (const Conversion& conversion : conversions()) {
        const auto program = program_of(conversion);
        add_bands(conversion.name,
                  [program](float* band) { program->apply_packed(band, WIDTH, BAND_ROWS, 4); });
    }
    return true;
}();

} // namespace
