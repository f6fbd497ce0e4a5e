#include "image/dpx_layout.h"

#include <algorithm>
#include <cstdint>

namespace image {

namespace {

bool is_big_endian(ByteSource& file) {
    return file.matches(0, "SDPX");
}

/// The pixels of a DPX file (SMPTE ST 268): each of its elements has a position, and samples of the same
/// number of bits. Packing and ends of lines only add to that.
class DpxPixels {
public:
    explicit DpxPixels(ByteSource& file) : file(file), big_endian(is_big_endian(file)) {}

    void check() {
        const std::uint64_t pixels = number(772, 4) * number(776, 4);
        const std::uint64_t elements = std::min<std::uint64_t>(number(770, 2), MAX_ELEMENTS);
        for (std::uint64_t i = 0; i < elements; ++i)
            check_element(780 + 72 * i, pixels);
    }

private:
    static constexpr std::uint64_t MAX_ELEMENTS = 8;
    static constexpr std::uint64_t UNDEFINED = 0xFFFFFFFF;

    std::uint64_t number(std::uint64_t position, unsigned int width) {
        return file.get(position, width, big_endian);
    }

    void check_element(std::uint64_t element, std::uint64_t pixels) {
        const bool is_run_length_encoded = number(element + 26, 2) == 1;
        const std::uint64_t bits = number(element + 23, 1);
        std::uint64_t position = number(element + 28, 4);
        if (position == 0 || position == UNDEFINED)
            position = number(4, 4);
        if (is_run_length_encoded || bits > 64 || pixels > UNDEFINED)
            return;
        file.require(position, pixels * count_samples(number(element + 20, 1)) * bits / 8);
    }

    /// Samples of each pixel for a descriptor of the element; 1 where it can be fewer than channels.
    static std::uint64_t count_samples(std::uint64_t descriptor) {
        constexpr std::uint64_t RGB = 50, RGBA = 51, ABGR = 52;
        return descriptor == RGB ? 3 : descriptor == RGBA || descriptor == ABGR ? 4 : 1;
    }

    ByteSource& file;
    const bool big_endian;
};

} // namespace

void check_dpx_end(ByteSource& file) {
    constexpr std::uint64_t FILE_SIZE = 16;
    file.require(0, file.get(FILE_SIZE, 4, is_big_endian(file)));
}

void check_dpx_pixels(ByteSource& file) {
    DpxPixels(file).check();
}

} // namespace image
