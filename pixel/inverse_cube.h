#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "pixel/ops.h"

namespace pixel {

/// The inverse of a 3D LUT under tetrahedral interpolation, also for LUTs that interpolate otherwise. A layer
/// of nodes around the LUT extends its border outwards. Where several cells give a value, as in LUTs that
/// fold, the first one in the order of their interleaved indices is used. Immutable, so thread-safe.
class InverseCube {
public:
    /// `cube` must have an edge of at least 2 and edge^3 triples.
    explicit InverseCube(const Lut3D& cube);

    /// The position, in [0, 1], where the LUT has the value `rgb`; black if there is none. Values are clamped
    /// to [0, 1]; NaN counts as 0.
    std::array<float, 3> find(const std::array<float, 3>& rgb) const;

private:
    using Triple = std::array<double, 3>;
    using CellIndex = std::array<std::uint16_t, 3>;
    struct Box {
        std::array<float, 3> low, high;
    };

    const Triple& node(std::size_t r, std::size_t g, std::size_t b) const {
        return nodes_[(r * size_ + g) * size_ + b];
    }
    void fill_nodes(const Lut3D& cube);
    void list_cells();
    Box box_of(const CellIndex& at) const;
    void stack_boxes();
    bool search(std::size_t level, std::size_t first, const std::array<float, 3>& rgb,
                std::array<float, 3>& out) const;
    bool solve(const CellIndex& cell, const std::array<float, 3>& rgb, std::array<float, 3>& out) const;

    std::size_t edge_, size_; ///< nodes along an axis: of the table, and with one more on each side
    std::vector<Triple> nodes_;
    std::vector<CellIndex> cells_;        ///< in the order in which they are tried
    std::vector<std::vector<Box>> boxes_; ///< around the cells, and around some boxes each
};

} // namespace pixel
