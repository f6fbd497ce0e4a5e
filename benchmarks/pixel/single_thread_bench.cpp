// Images of 3840 x 2160 pixels through the SIMD code and through OpenColorIO, on one thread, next to a plain
// pass that reads and writes every float once, and memcpy.

#include <cstring>

#include "benchmarks/pixel/conversions.h"
#include "benchmarks/pixel/image_bench.h"

using namespace pixel_bench;

namespace {

constexpr double MIN_SECONDS = 0.1; // in each of the repetitions

/// CPU time of the thread, which depends little on other work on the machine.
void add(const std::string& name, Image image, const Convert& convert) {
    add_image_benchmark(name, image, convert)->MinTime(MIN_SECONDS);
}

Convert with_library(const library::ConstCPUProcessorRcPtr& processor) {
    return [processor](std::vector<float>& pixels) {
        library::PackedImageDesc image(pixels.data(), WIDTH, HEIGHT, 4);
        processor->apply(image);
    };
}

void add_conversion(const Conversion& conversion, const char* image_name, Image packed, Image planar) {
    const std::string prefix = std::string("image/") + conversion.name + "/" + image_name + "/";
    const auto program = program_of(conversion);
    add(prefix + "pixel", packed,
        [program](std::vector<float>& pixels) { program->apply_packed(pixels.data(), WIDTH, HEIGHT, 4); });
    add(prefix + "pixel_planar", planar, [program](std::vector<float>& pixels) {
        float* p = pixels.data();
        program->apply_planar(p, p + PIXELS, p + 2 * PIXELS, p + 3 * PIXELS, WIDTH, HEIGHT);
    });
    add(prefix + "library_default", packed, with_library(by_default(conversion.processor)));
    add(prefix + "library_lossless", packed, with_library(lossless(conversion.processor)));
}

void add_passes() {
    add("pass/read_write", noise,
        [](std::vector<float>& pixels) { read_write_pass(pixels.data(), pixels.size()); });
    static std::vector<float> copy(4 * PIXELS);
    add("pass/memcpy", noise, [](std::vector<float>& pixels) {
        std::memcpy(copy.data(), pixels.data(), pixels.size() * sizeof(float));
    });
}

const bool registered = [] {
    add_passes();
    for (const Conversion& conversion : conversions()) {
        add_conversion(conversion, "noise", noise, planar_noise);
        add_conversion(conversion, "waves", waves, planar_waves);
    }
    return true;
}();

} // namespace
