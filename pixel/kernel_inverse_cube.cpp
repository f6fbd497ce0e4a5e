#include <array>
#include <cstddef>

#include "pixel/kernels.h"

namespace pixel {

/// Neighbors are often equal, and the padding of a block always is.
void run_inverse_cube(const InverseCubeStage& stage, Block& block) {
    std::array<float, 3> last{}, found{};
    for (std::size_t i = 0; i < block.padded; ++i) {
        const std::array<float, 3> rgb{block.plane[0][i], block.plane[1][i], block.plane[2][i]};
        if (i == 0 || rgb != last) {
            found = stage.cube->find(rgb);
            last = rgb;
        }
        for (std::size_t c = 0; c < 3; ++c) {
            block.plane[c][i] = found[c];
        }
    }
}

} // namespace pixel
