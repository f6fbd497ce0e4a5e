#include "pixel/compile.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#include "pixel/inverse_index.h"

namespace pixel {

namespace {

constexpr std::size_t HALF_LENGTH = 65536;
/// Positions up to this are exact as floats, with room for an interpolated part.
constexpr std::size_t LONGEST_TABLE = std::size_t{1} << 20;
constexpr std::size_t LARGEST_EDGE = 256;

void check_table(const Lut1D& op) {
    const bool half = op.domain == InputDomain::Half;
    if (half ? op.length != HALF_LENGTH : op.length < 2 || op.length > LONGEST_TABLE) {
        throw std::invalid_argument("1D LUT: a length of " + std::to_string(op.length) + " is not possible");
    }
    if ((op.channels != 1 && op.channels != 3) || !op.values ||
        op.values->size() != op.channels * op.length) {
        throw std::invalid_argument("1D LUT: one or three curves of " + std::to_string(op.length) +
                                    " entries are wanted");
    }
}

/// Equal curves are prepared once. `make(first entry)` makes what one curve needs.
template <class S, class F>
void prepare_curves(const Lut1D& op, S& stage, F&& make) {
    const float* values = op.values->data();
    for (std::size_t c = 0; c < 3; ++c) {
        const float* own = values + (op.channels == 3 ? c * op.length : 0);
        std::size_t twin = 0;
        while (twin < c &&
               !std::equal(own, own + op.length, values + (op.channels == 3 ? twin * op.length : 0))) {
            ++twin;
        }
        stage.curve_of[c] = static_cast<int>(twin);
        if (twin == c) {
            stage.curve[c] = make(own);
        }
    }
}

/// NaN in a table counts as 0, infinity as the largest float.
float finite_entry(float v) {
    constexpr float LARGEST = std::numeric_limits<float>::max();
    return std::isnan(v) ? 0.0f : std::clamp(v, -LARGEST, LARGEST);
}

/// `before` copies of the first entry, the entries, and three more copies: loads take four floats from any
/// entry on.
PaddedCurve padded(const float* entries, std::size_t length, std::size_t before) {
    constexpr std::size_t AFTER = 3;
    PaddedCurve curve{std::vector<float>(before + length + AFTER, finite_entry(entries[0]))};
    std::transform(entries, entries + length, curve.values.data() + before, finite_entry);
    return curve;
}

Stage compile_inverse(const Lut1D& op) {
    InverseTableStage stage{};
    stage.reciprocal = 1.0f / static_cast<float>(op.length - 1);
    prepare_curves(op, stage, [&](const float* own) {
        return make_inverse_curve(own, op.length, own[0] < own[op.length - 1]);
    });
    return stage;
}

/// Infinity and NaN, the last 1024 entries of each half, are not used in the inverse.
Stage compile_inverse_half(const Lut1D& op) {
    constexpr std::size_t FINITE = 0x7C00, NEGATIVE = 0x8000;
    InverseHalfStage stage{};
    prepare_curves(op, stage, [](const float* own) {
        const bool rising = own[0] < own[FINITE - 1];
        return InverseHalfCurve{make_inverse_curve(own, FINITE, rising),
                                make_inverse_curve(own + NEGATIVE, FINITE, !rising), own[0], rising};
    });
    return stage;
}

/// A 1D LUT of any domain and direction.
Stage compile_plain_table(const Lut1D& op) {
    if (op.direction == Direction::Inverse) {
        return op.domain == InputDomain::Half ? compile_inverse_half(op) : compile_inverse(op);
    }
    if (op.domain == InputDomain::Half) {
        HalfTableStage stage{};
        prepare_curves(op, stage, [&](const float* own) { return padded(own, op.length, 0); });
        return stage;
    }
    TableStage stage{};
    stage.last = static_cast<float>(op.length - 1);
    stage.arithmetic = op.arithmetic;
    prepare_curves(op, stage, [&](const float* own) { return padded(own, op.length, 1); });
    return stage;
}

} // namespace

Stage compile_table(const Lut1D& op) {
    check_table(op);
    Stage stage = compile_plain_table(op);
    if (!op.restores_hue) {
        return stage;
    }
    return std::visit(
        [](auto& table) -> Stage {
            if constexpr (std::is_constructible_v<decltype(HueTableStage::table), decltype(table)>) {
                return HueTableStage{std::move(table)};
            } else {
                throw std::logic_error("1D LUT: the stage is not one of a LUT");
            }
        },
        stage);
}

Stage compile_cube(const Lut3D& op) {
    const std::size_t edge = op.edge;
    if (edge < 2 || edge > LARGEST_EDGE || !op.rgb || op.rgb->size() != 3 * edge * edge * edge) {
        throw std::invalid_argument("3D LUT: an edge of " + std::to_string(edge) +
                                    " does not fit the entries");
    }
    if (op.direction == Direction::Inverse) {
        return InverseCubeStage{std::make_shared<const InverseCube>(op)};
    }
    CubeStage stage{};
    stage.edge = edge;
    stage.interpolation = op.interpolation;
    stage.arithmetic = op.arithmetic;
    stage.rgbx.resize(4 * edge * edge * edge);
    const bool red_fastest = op.order == CubeOrder::RedFastest;
    const float* from = op.rgb->data();
    for (std::size_t slow = 0; slow < edge; ++slow) {
        for (std::size_t middle = 0; middle < edge; ++middle) {
            for (std::size_t fast = 0; fast < edge; ++fast, from += 3) {
                const std::size_t r = red_fastest ? fast : slow, b = red_fastest ? slow : fast;
                std::transform(from, from + 3, stage.rgbx.data() + 4 * ((r * edge + middle) * edge + b),
                               finite_entry);
            }
        }
    }
    return stage;
}

} // namespace pixel
