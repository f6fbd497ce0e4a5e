#include "pixel/inverse_cube.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace pixel {

namespace {

using Triple = std::array<double, 3>;
using Corner = std::array<std::size_t, 3>;

/// How far the nodes around the LUT extend its border outwards, from the center of the values.
constexpr float STRETCH = 4.0f, CENTER = 0.5f;
/// Cells reach this much beyond their corners.
constexpr float MARGIN = 1e-6f;
constexpr double TOLERANCE = 1e-9, SMALLEST_PIVOT = 1e-9;
constexpr double WELL_SPANNED = 1e-4, SMALLEST_SCALE = 1e-12;
/// Boxes within a box.
constexpr std::size_t BRANCHES = 8;

/// The corners between (0, 0, 0) and (1, 1, 1) of the six tetrahedra: which axis is first, second and third.
constexpr std::array<std::size_t, 3> AXES[] = {{0, 1, 2}, {1, 0, 2}, {1, 2, 0},
                                               {2, 1, 0}, {2, 0, 1}, {0, 2, 1}};

/// Bits of the indices of a cell one after the other, blue's before green's before red's, the highest first.
std::uint64_t interleaved(const std::array<std::uint16_t, 3>& at) {
    std::uint64_t key = 0;
    for (unsigned bit = 0; bit < 16; ++bit) {
        for (unsigned c = 0; c < 3; ++c) {
            key |= static_cast<std::uint64_t>(at[c] >> bit & 1u) << (3 * bit + c);
        }
    }
    return key;
}

/// Gauss elimination with the largest pivots. An equation left without one must hold, and leaves its unknown
/// 0.
bool solve_equations(std::array<std::array<double, 4>, 3>& m, Triple& x) {
    Corner unknown{0, 1, 2};
    std::size_t rank = 0;
    for (; rank < 3; ++rank) {
        std::size_t best_row = rank, best_column = rank;
        for (std::size_t row = rank; row < 3; ++row) {
            for (std::size_t column = rank; column < 3; ++column) {
                if (std::abs(m[row][column]) > std::abs(m[best_row][best_column])) {
                    best_row = row;
                    best_column = column;
                }
            }
        }
        if (std::abs(m[best_row][best_column]) < SMALLEST_PIVOT) {
            break;
        }
        std::swap(m[rank], m[best_row]);
        for (auto& row : m) {
            std::swap(row[rank], row[best_column]);
        }
        std::swap(unknown[rank], unknown[best_column]);
        for (std::size_t row = rank + 1; row < 3; ++row) {
            const double factor = m[row][rank] / m[rank][rank];
            for (std::size_t column = rank; column < 4; ++column) {
                m[row][column] -= factor * m[rank][column];
            }
        }
    }
    std::array<double, 3> value{};
    for (std::size_t k = 3; k-- > 0;) {
        double rest = m[k][3];
        for (std::size_t column = k + 1; column < 3; ++column) {
            rest -= m[k][column] * value[column];
        }
        if (k >= rank && std::abs(rest) >= SMALLEST_PIVOT) {
            return false;
        }
        value[k] = k < rank ? rest / m[k][k] : 0;
        x[unknown[k]] = value[k];
    }
    return true;
}

Triple minus(const Triple& a, const Triple& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Triple cross(const Triple& a, const Triple& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double dot(const Triple& a, const Triple& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

double size_of(const Triple& v) {
    return std::max({std::abs(v[0]), std::abs(v[1]), std::abs(v[2])});
}

bool is_inside(const Triple& weight) {
    return std::all_of(weight.begin(), weight.end(), [](double w) { return w >= -TOLERANCE; }) &&
           weight[0] + weight[1] + weight[2] <= 1 + TOLERANCE;
}

float clamp_unit(float v) {
    return v > 0 ? std::min(v, 1.0f) : 0.0f; // NaN becomes 0
}

} // namespace

InverseCube::InverseCube(const Lut3D& cube) : edge_(cube.edge), size_(cube.edge + 2) {
    fill_nodes(cube);
    list_cells();
    stack_boxes();
}

void InverseCube::fill_nodes(const Lut3D& cube) {
    const bool red_fastest = cube.order == CubeOrder::RedFastest;
    nodes_.reserve(size_ * size_ * size_);
    const auto inner = [&](std::size_t i) { return std::clamp<std::size_t>(i, 1, edge_) - 1; };
    for (std::size_t r = 0; r < size_; ++r) {
        for (std::size_t g = 0; g < size_; ++g) {
            for (std::size_t b = 0; b < size_; ++b) {
                const std::size_t slow = red_fastest ? inner(b) : inner(r);
                const std::size_t fast = red_fastest ? inner(r) : inner(b);
                const float* from = cube.rgb->data() + 3 * ((slow * edge_ + inner(g)) * edge_ + fast);
                const bool is_border = r == 0 || g == 0 || b == 0 || r > edge_ || g > edge_ || b > edge_;
                Triple value{};
                for (std::size_t c = 0; c < 3; ++c) {
                    const float v = std::isnan(from[c]) ? 0.0f : from[c];
                    value[c] = static_cast<double>(is_border ? (v - CENTER) * STRETCH + CENTER : v);
                }
                nodes_.push_back(value);
            }
        }
    }
}

/// Those that reach into the range of values, in the order of their interleaved indices.
void InverseCube::list_cells() {
    std::vector<std::pair<std::uint64_t, std::array<std::uint16_t, 3>>> order;
    const auto count = static_cast<std::uint16_t>(size_ - 1);
    for (std::uint16_t r = 0; r < count; ++r) {
        for (std::uint16_t g = 0; g < count; ++g) {
            for (std::uint16_t b = 0; b < count; ++b) {
                order.push_back({interleaved({r, g, b}), {r, g, b}});
            }
        }
    }
    std::sort(order.begin(), order.end());
    boxes_.resize(1);
    for (const auto& [key, at] : order) {
        const Box box = box_of(at);
        const auto reaches_in = [&](std::size_t c) { return box.high[c] >= 0 && box.low[c] <= 1; };
        if (reaches_in(0) && reaches_in(1) && reaches_in(2)) {
            boxes_[0].push_back(box);
            cells_.push_back(at);
        }
    }
}

/// Around the values at the corners of a cell.
InverseCube::Box InverseCube::box_of(const std::array<std::uint16_t, 3>& at) const {
    Box box{};
    for (std::size_t c = 0; c < 3; ++c) {
        double low = node(at[0], at[1], at[2])[c], high = low;
        for (std::size_t corner = 1; corner < 8; ++corner) {
            const double v = node(at[0] + (corner & 1), at[1] + (corner >> 1 & 1), at[2] + (corner >> 2))[c];
            low = std::min(low, v);
            high = std::max(high, v);
        }
        box.low[c] = static_cast<float>(low) - MARGIN;
        box.high[c] = static_cast<float>(high) + MARGIN;
    }
    return box;
}

/// Each level has a box around every BRANCHES boxes of the one before it, down to one that has no more.
void InverseCube::stack_boxes() {
    while (boxes_.back().size() > BRANCHES) {
        const std::vector<Box>& below = boxes_.back();
        std::vector<Box> level;
        for (std::size_t i = 0; i < below.size(); i += BRANCHES) {
            Box box = below[i];
            for (std::size_t k = i + 1; k < std::min(i + BRANCHES, below.size()); ++k) {
                for (std::size_t c = 0; c < 3; ++c) {
                    box.low[c] = std::min(box.low[c], below[k].low[c]);
                    box.high[c] = std::max(box.high[c], below[k].high[c]);
                }
            }
            level.push_back(box);
        }
        boxes_.push_back(std::move(level));
    }
}

bool InverseCube::search(std::size_t level, std::size_t first, const std::array<float, 3>& rgb,
                         std::array<float, 3>& out) const {
    const std::vector<Box>& boxes = boxes_[level];
    for (std::size_t i = first; i < std::min(first + BRANCHES, boxes.size()); ++i) {
        const Box& box = boxes[i];
        const bool contains = box.low[0] <= rgb[0] && rgb[0] <= box.high[0] && box.low[1] <= rgb[1] &&
                              rgb[1] <= box.high[1] && box.low[2] <= rgb[2] && rgb[2] <= box.high[2];
        if (contains &&
            (level > 0 ? search(level - 1, i * BRANCHES, rgb, out) : solve(cells_[i], rgb, out))) {
            return true;
        }
    }
    return false;
}

/// Tetrahedra whose edges span a space well take Cramer's rule, most of whose products two of them share.
bool InverseCube::solve(const std::array<std::uint16_t, 3>& cell, const std::array<float, 3>& rgb,
                        std::array<float, 3>& out) const {
    const std::size_t r = cell[0], g = cell[1], b = cell[2];
    const Triple value{static_cast<double>(rgb[0]), static_cast<double>(rgb[1]), static_cast<double>(rgb[2])};
    const Triple& base = node(r, g, b);
    const Triple far = minus(node(r + 1, g + 1, b + 1), base), target = minus(value, base);
    const std::array<Triple, 3> one{minus(node(r + 1, g, b), base), minus(node(r, g + 1, b), base),
                                    minus(node(r, g, b + 1), base)};
    // By the axis that is still missing.
    const std::array<Triple, 3> two{minus(node(r, g + 1, b + 1), base), minus(node(r + 1, g, b + 1), base),
                                    minus(node(r + 1, g + 1, b), base)};
    const Triple target_far = cross(target, far);
    const double far_size = size_of(far);
    for (const auto& [first_axis, second_axis, third_axis] : AXES) {
        const Triple &first = one[first_axis], &second = two[third_axis];
        const Triple second_far = cross(second, far);
        const double volume = dot(first, second_far);
        const double scale = size_of(first) * size_of(second) * far_size;
        Triple weight{};
        if (std::abs(volume) > WELL_SPANNED * scale && scale > SMALLEST_SCALE) {
            weight[0] = dot(target, second_far) / volume;
            weight[1] = dot(first, target_far) / volume;
            if (!(weight[0] >= -TOLERANCE && weight[1] >= -TOLERANCE)) {
                continue;
            }
            weight[2] = dot(target, cross(first, second)) / volume;
        } else {
            std::array<std::array<double, 4>, 3> equations{};
            for (std::size_t c = 0; c < 3; ++c) {
                equations[c] = {first[c], second[c], far[c], target[c]};
            }
            if (!solve_equations(equations, weight)) {
                continue;
            }
        }
        if (is_inside(weight)) {
            const auto end = static_cast<double>(edge_ - 1);
            const auto place = [&](std::size_t axis, double offset) {
                const double position = static_cast<double>(cell[axis]) + offset - 1;
                out[axis] = static_cast<float>(std::clamp(position, 0.0, end) / end);
            };
            place(first_axis, weight[0] + weight[1] + weight[2]);
            place(second_axis, weight[1] + weight[2]);
            place(third_axis, weight[2]);
            return true;
        }
    }
    return false;
}

std::array<float, 3> InverseCube::find(const std::array<float, 3>& rgb) const {
    std::array<float, 3> out{};
    search(boxes_.size() - 1, 0, {clamp_unit(rgb[0]), clamp_unit(rgb[1]), clamp_unit(rgb[2])}, out);
    return out;
}

} // namespace pixel
