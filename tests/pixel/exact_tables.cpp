#include "exact_tables.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace pixel_test {

namespace {

constexpr std::size_t FIRST_NEGATIVE_HALF = 0x8000, FINITE_HALFS = 0x7C00;
constexpr double LARGEST_HALF = 65504;

/// An entry: NaN counts as 0, infinity as the largest float.
double entry(const std::vector<float>& values, std::size_t i) {
    constexpr double LARGEST = std::numeric_limits<float>::max();
    const auto v = static_cast<double>(values[i]);
    return std::isnan(v) ? 0 : std::clamp(v, -LARGEST, LARGEST);
}

/// NaN counts as 0.
double clamp_unit(double x) {
    return x > 0 ? std::min(x, 1.0) : 0;
}

double between(double from, double to, double part) {
    return part == 0 ? from : from + (to - from) * part;
}

/// The number of a positive, finite 16-bit float.
double half_number(std::size_t bits) {
    const int exponent = static_cast<int>(bits >> 10);
    const auto mantissa = static_cast<double>(bits & 1023);
    return exponent == 0 ? std::ldexp(mantissa, -24) : std::ldexp(1024 + mantissa, exponent - 25);
}

/// The largest 16-bit float that is not above a magnitude of less than the largest one.
std::size_t half_below(double magnitude) {
    std::size_t low = 0, high = FINITE_HALFS - 1;
    while (high - low > 1) {
        const std::size_t middle = (low + high) / 2;
        (half_number(middle) <= magnitude ? low : high) = middle;
    }
    return low;
}

/// The entry for a NaN: where its payload, shortened to ten bits, but never that of infinity, points.
std::size_t half_of_nan(double x) {
    const auto single = static_cast<float>(x);
    std::uint32_t bits = 0;
    std::copy_n(reinterpret_cast<const char*>(&single), sizeof bits, reinterpret_cast<char*>(&bits));
    const std::size_t payload = (bits >> 13) & 0x3FF;
    return ((bits >> 16) & 0x8000) | 0x7C00 | (payload == 0 ? 1 : payload);
}

double forward_half(const std::vector<float>& values, std::size_t curve, double x) {
    if (std::isnan(x)) {
        return entry(values, curve + half_of_nan(x));
    }
    const std::size_t side = curve + (std::signbit(x) ? FIRST_NEGATIVE_HALF : 0);
    const double magnitude = std::fabs(x);
    if (magnitude >= LARGEST_HALF) {
        return entry(values, side + FINITE_HALFS - 1);
    }
    const std::size_t below = half_below(magnitude);
    const double part = (magnitude - half_number(below)) / (half_number(below + 1) - half_number(below));
    return between(entry(values, side + below), entry(values, side + below + 1), part);
}

double forward_unit(const std::vector<float>& values, std::size_t curve, std::size_t length, double x) {
    const double position = clamp_unit(x) * static_cast<double>(length - 1);
    const auto below = std::min(static_cast<std::size_t>(position), length - 2);
    return between(entry(values, curve + below), entry(values, curve + below + 1),
                   position - static_cast<double>(below));
}

/// Where `x` lies among entries that rise, or fall: an entry, and the part of the way to the next. Entries
/// that break the direction count as their predecessor; in a flat stretch the first entry is the place, but
/// at the start of the table the last. NaN has a
/// place only where all entries are one.
struct Place {
    std::size_t entry;
    double part;
};

Place find(const std::vector<float>& values, std::size_t start, std::size_t length, bool rises, double x) {
    const double sign = rises ? 1 : -1;
    std::vector<double> reached(length);
    double highest = -std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < length; ++i) {
        highest = std::max(highest, sign * static_cast<double>(values[start + i]));
        reached[i] = highest;
    }
    const auto last = static_cast<std::size_t>(
        std::lower_bound(reached.begin(), reached.end(), reached.back()) - reached.begin());
    const auto first = std::min(
        last, static_cast<std::size_t>(std::upper_bound(reached.begin(), reached.end(), reached.front()) -
                                       reached.begin() - 1));
    const double wanted = std::clamp(sign * x, reached[first], reached[last]);
    if (wanted == reached[first] || first == last) {
        return {first, 0};
    }
    if (std::isnan(wanted)) {
        return {first, wanted};
    }
    const auto above =
        static_cast<std::size_t>(std::lower_bound(reached.begin(), reached.end(), wanted) - reached.begin());
    return {above - 1, (wanted - reached[above - 1]) / (reached[above] - reached[above - 1])};
}

double inverse_unit(const std::vector<float>& values, std::size_t curve, std::size_t length, double x) {
    const bool rises = values[curve] < values[curve + length - 1];
    const Place place = find(values, curve, length, rises, x);
    return (static_cast<double>(place.entry) + place.part) / static_cast<double>(length - 1);
}

double inverse_half(const std::vector<float>& values, std::size_t curve, double x) {
    const bool rises = values[curve] < values[curve + FINITE_HALFS - 1];
    const bool positive = (x >= static_cast<double>(values[curve])) == rises;
    const Place place =
        find(values, curve + (positive ? 0 : FIRST_NEGATIVE_HALF), FINITE_HALFS, rises == positive, x);
    const double magnitude =
        place.part == 0 ? half_number(place.entry)
                        : between(half_number(place.entry), half_number(place.entry + 1), place.part);
    return positive ? magnitude : -magnitude;
}

double look_up(const pixel::Lut1D& table, std::size_t channel, double x) {
    const std::vector<float>& values = *table.values;
    const std::size_t curve = table.channels == 1 ? 0 : channel * table.length;
    const bool half = table.domain == pixel::InputDomain::Half;
    if (table.direction == pixel::Direction::Forward) {
        return half ? forward_half(values, curve, x) : forward_unit(values, curve, table.length, x);
    }
    return half ? inverse_half(values, curve, x) : inverse_unit(values, curve, table.length, x);
}

/// Lower node and fraction of the way to the next, along one axis of a 3D LUT.
Place on_edge(double x, std::size_t edge) {
    const double position = clamp_unit(x) * static_cast<double>(edge - 1);
    const auto below = std::min(static_cast<std::size_t>(position), edge - 2);
    return {below, position - static_cast<double>(below)};
}

double cube_entry(const pixel::Lut3D& cube, const std::array<std::size_t, 3>& at, std::size_t channel) {
    const bool red_fastest = cube.order == pixel::CubeOrder::RedFastest;
    const std::size_t slow = at[red_fastest ? 2 : 0], fast = at[red_fastest ? 0 : 2];
    return entry(*cube.rgb, 3 * ((slow * cube.edge + at[1]) * cube.edge + fast) + channel);
}

double trilinear(const pixel::Lut3D& cube, const std::array<Place, 3>& place, std::size_t channel) {
    double sum = 0;
    for (unsigned corner = 0; corner < 8; ++corner) {
        std::array<std::size_t, 3> at{};
        double weight = 1;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const bool upper = (corner >> axis) & 1;
            at[axis] = place[axis].entry + upper;
            weight *= upper ? place[axis].part : 1 - place[axis].part;
        }
        sum += weight == 0 ? 0 : weight * cube_entry(cube, at, channel);
    }
    return sum;
}

/// From the lower corner to the upper one along the axes, that of the largest part first.
double tetrahedral(const pixel::Lut3D& cube, const std::array<Place, 3>& place, std::size_t channel) {
    std::array<std::size_t, 3> order{0, 1, 2}, at{place[0].entry, place[1].entry, place[2].entry};
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return place[a].part > place[b].part; });
    double last = cube_entry(cube, at, channel), sum = last;
    for (const std::size_t axis : order) {
        if (place[axis].part > 0) {
            ++at[axis];
            const double next = cube_entry(cube, at, channel);
            sum += place[axis].part * (next - last);
            last = next;
        }
    }
    return sum;
}

/// Channels by their values, the largest first, in the order that the tests R > G, G > B, R > B give.
std::array<std::size_t, 3> order_of(const ExactPixel& v) {
    const bool red_over_green = v[0] > v[1], green_over_blue = v[1] > v[2], red_over_blue = v[0] > v[2];
    if (red_over_green) {
        return green_over_blue ? std::array<std::size_t, 3>{0, 1, 2}
               : red_over_blue ? std::array<std::size_t, 3>{0, 2, 1}
                               : std::array<std::size_t, 3>{2, 0, 1};
    }
    return !green_over_blue ? std::array<std::size_t, 3>{2, 1, 0}
           : red_over_blue  ? std::array<std::size_t, 3>{1, 0, 2}
                            : std::array<std::size_t, 3>{1, 2, 0};
}

} // namespace

ExactPixel evaluate_table_exactly(const pixel::Lut1D& table, const ExactPixel& in) {
    ExactPixel out{look_up(table, 0, in[0]), look_up(table, 1, in[1]), look_up(table, 2, in[2]), in[3]};
    if (table.restores_hue) {
        const auto [most, middle, least] = order_of(in);
        const double chroma = in[most] - in[least];
        const double share = chroma == 0 ? 0 : (in[middle] - in[least]) / chroma;
        out[middle] = out[least] + share * (out[most] - out[least]);
    }
    return out;
}

ExactPixel evaluate_cube_exactly(const pixel::Lut3D& cube, const ExactPixel& in) {
    if (cube.direction == pixel::Direction::Inverse) {
        return evaluate_inverse_cube_exactly(cube, in);
    }
    const std::array<Place, 3> place{on_edge(in[0], cube.edge), on_edge(in[1], cube.edge),
                                     on_edge(in[2], cube.edge)};
    const auto interpolate =
        cube.interpolation == pixel::CubeInterpolation::Tetrahedral ? tetrahedral : trilinear;
    return {interpolate(cube, place, 0), interpolate(cube, place, 1), interpolate(cube, place, 2), in[3]};
}

} // namespace pixel_test
