#include "workflow/colorimetry.h"

#include <algorithm>
#include <cmath>

namespace workflow {

namespace {

/// x and y of red, green, blue and white, under the name that interop IDs have for them.
struct Primaries {
    const char* name;
    std::array<double, 8> xy;
};

// ITU-R BT.709, SMPTE ST 2065-1, S-2014-004, SMPTE EG 432-1, ITU-R BT.2020, Adobe RGB (1998).
constexpr Primaries PRIMARIES[] = {
    {"rec709", {0.64, 0.33, 0.30, 0.60, 0.15, 0.06, 0.3127, 0.3290}},
    {"ap0", {0.7347, 0.2653, 0.0, 1.0, 0.0001, -0.0770, 0.32168, 0.33767}},
    {"ap1", {0.713, 0.293, 0.165, 0.830, 0.128, 0.044, 0.32168, 0.33767}},
    {"p3d65", {0.680, 0.320, 0.265, 0.690, 0.150, 0.060, 0.3127, 0.3290}},
    {"rec2020", {0.708, 0.292, 0.170, 0.797, 0.131, 0.046, 0.3127, 0.3290}},
    {"adobergb", {0.64, 0.33, 0.21, 0.71, 0.15, 0.06, 0.3127, 0.3290}},
};
constexpr double SAME_CHROMATICITY = 0.002;
constexpr double SAME_COLORANT = 0.003;

/// A transfer function under the name that interop IDs have for it.
struct Transfer {
    const char* name;
    double (*to_linear)(double);
};

template <int HUNDREDTHS>
double to_power(double x) {
    return std::pow(x, HUNDREDTHS / 100.0);
}

/// IEC 61966-2-1.
double srgb_to_linear(double x) {
    return x <= 0.04045 ? x / 12.92 : std::pow((x + 0.055) / 1.055, 2.4);
}

/// ITU-R BT.709, the inverse of 1.2.
double itu709_to_linear(double x) {
    return x < 0.081 ? x / 4.5 : std::pow((x + 0.099) / 1.099, 1 / 0.45);
}

constexpr Transfer TRANSFERS[] = {
    {"lin", to_power<100>}, {"srgb", srgb_to_linear}, {"itu709", itu709_to_linear}, {"g18", to_power<180>},
    {"g22", to_power<220>}, {"g24", to_power<240>},   {"g26", to_power<260>},
};
constexpr double SAME_TRANSFER = 0.004;

using Vector = std::array<double, 3>;
using Matrix = std::array<Vector, 3>; // rows

Vector multiply(const Matrix& m, const Vector& v) {
    Vector result{};
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column)
            result[row] += m[row][column] * v[column];
    return result;
}

Matrix invert(const Matrix& m) {
    const auto minor = [&](std::size_t row, std::size_t column) {
        const std::size_t r1 = (row + 1) % 3, r2 = (row + 2) % 3, c1 = (column + 1) % 3,
                          c2 = (column + 2) % 3;
        return m[r1][c1] * m[r2][c2] - m[r1][c2] * m[r2][c1];
    };
    const double determinant = m[0][0] * minor(0, 0) + m[0][1] * minor(0, 1) + m[0][2] * minor(0, 2);
    Matrix inverse{};
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column)
            inverse[row][column] = minor(column, row) / determinant;
    return inverse;
}

Vector to_xyz(double x, double y) {
    return {x / y, 1.0, (1.0 - x - y) / y};
}

/// The colorants of a profile with these primaries: adapted to D50 by Bradford, as ICC demands.
std::array<Vector, 3> get_colorants(const Primaries& primaries) {
    constexpr Matrix BRADFORD = {
        {{0.8951, 0.2664, -0.1614}, {-0.7502, 1.7135, 0.0367}, {0.0389, -0.0685, 1.0296}}};
    constexpr Vector D50 = {0.9642, 1.0, 0.8249};
    const auto& xy = primaries.xy;
    Matrix columns{};
    for (std::size_t i = 0; i < 3; ++i) // without a division by a y of 0
        for (std::size_t row = 0; row < 3; ++row)
            columns[row][i] = row == 0   ? xy[2 * i]
                              : row == 1 ? xy[2 * i + 1]
                                         : 1.0 - xy[2 * i] - xy[2 * i + 1];
    const Vector white = to_xyz(xy[6], xy[7]);
    const Vector scales = multiply(invert(columns), white);
    const Vector from = multiply(BRADFORD, white), to = multiply(BRADFORD, D50);
    const Matrix back = invert(BRADFORD);
    std::array<Vector, 3> colorants{};
    for (std::size_t i = 0; i < 3; ++i) {
        Vector cone = multiply(
            BRADFORD, {columns[0][i] * scales[i], columns[1][i] * scales[i], columns[2][i] * scales[i]});
        for (std::size_t c = 0; c < 3; ++c)
            cone[c] *= to[c] / from[c];
        colorants[i] = multiply(back, cone);
    }
    return colorants;
}

template <class Numbers>
double get_distance(const Numbers& a, const Numbers& b) {
    double largest = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        largest = std::max(largest, std::fabs(a[i] - b[i]));
    return largest;
}

} // namespace

const std::array<double, 8>* get_chromaticities(const std::string& primaries) {
    for (const Primaries& known : PRIMARIES)
        if (primaries == known.name)
            return &known.xy;
    return nullptr;
}

const char* find_primaries(const std::vector<double>& xy) {
    for (const Primaries& known : PRIMARIES)
        if (get_distance(xy, std::vector<double>(known.xy.begin(), known.xy.end())) <= SAME_CHROMATICITY)
            return known.name;
    return nullptr;
}

const char* find_primaries_of_colorants(const std::array<std::array<double, 3>, 3>& colorants) {
    for (const Primaries& known : PRIMARIES) {
        const std::array<Vector, 3> expected = get_colorants(known);
        double largest = 0;
        for (std::size_t i = 0; i < 3; ++i)
            largest = std::max(largest, get_distance(expected[i], colorants[i]));
        if (largest <= SAME_COLORANT)
            return known.name;
    }
    return nullptr;
}

const char* find_transfer(const std::vector<double>& curve) {
    const char* found = nullptr;
    double nearest = SAME_TRANSFER;
    for (const Transfer& known : TRANSFERS) {
        double largest = 0;
        for (std::size_t i = 0; i < curve.size(); ++i) {
            const double x = static_cast<double>(i) / static_cast<double>(curve.size() - 1);
            largest = std::max(largest, std::fabs(curve[i] - known.to_linear(x)));
        }
        if (largest < nearest) {
            nearest = largest;
            found = known.name;
        }
    }
    return found;
}

} // namespace workflow
