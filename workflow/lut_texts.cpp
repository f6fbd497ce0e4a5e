#include "workflow/lut_texts.h"

#include <iterator>

#include <fmt/format.h>

namespace workflow {

/// The rows of a .cube file follow each other like the 3D LUT's, red fastest.
std::string make_cube(const std::vector<float>& lut, unsigned int edge, const std::string& comment) {
    std::string text = fmt::format("# {}\nLUT_3D_SIZE {}\n", comment, edge);
    for (std::size_t i = 0; i + 2 < lut.size(); i += 3)
        fmt::format_to(std::back_inserter(text), "{} {} {}\n", lut[i], lut[i + 1], lut[i + 2]);
    return text;
}

/// A row of an .spi3d file names its place in the LUT; by custom blue runs fastest.
std::string make_spi3d(const std::vector<float>& lut, unsigned int edge) {
    std::string text = fmt::format("SPILUT 1.0\n3 3\n{0} {0} {0}\n", edge);
    for (unsigned int red = 0; red < edge; ++red)
        for (unsigned int green = 0; green < edge; ++green)
            for (unsigned int blue = 0; blue < edge; ++blue) {
                const float* value = lut.data() + std::size_t{3} * ((blue * edge + green) * edge + red);
                fmt::format_to(std::back_inserter(text), "{} {} {} {} {} {}\n", red, green, blue, value[0],
                               value[1], value[2]);
            }
    return text;
}

} // namespace workflow
