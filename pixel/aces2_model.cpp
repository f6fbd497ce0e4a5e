#include "pixel/aces2_model.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace pixel {

namespace {

constexpr float PI = 3.14159265358979f;
constexpr float REFERENCE_LUMINANCE = 100;
constexpr Chromaticities CONE_PRIMARIES{0.8336, 0.1735, 2.3854, -1.4659, 0.087, -0.125, 0.333, 0.333};

using Wide3 = std::array<double, 9>;

/// Gauss-Jordan elimination with partial pivoting.
Wide3 inverse(Wide3 m) {
    Wide3 out{1, 0, 0, 0, 1, 0, 0, 0, 1};
    for (std::size_t column = 0; column < 3; ++column) {
        std::size_t pivot = column;
        for (std::size_t row = column + 1; row < 3; ++row) {
            pivot = std::abs(m[3 * row + column]) > std::abs(m[3 * pivot + column]) ? row : pivot;
        }
        const double divisor = m[3 * pivot + column];
        if (!(std::abs(divisor) > 0)) {
            throw std::invalid_argument("ACES 2.0: the primaries have no inverse");
        }
        for (std::size_t k = 0; k < 3; ++k) {
            std::swap(m[3 * pivot + k], m[3 * column + k]);
            std::swap(out[3 * pivot + k], out[3 * column + k]);
            m[3 * column + k] /= divisor;
            out[3 * column + k] /= divisor;
        }
        for (std::size_t row = 0; row < 3; ++row) {
            const double factor = m[3 * row + column];
            for (std::size_t k = 0; k < 3 && row != column; ++k) {
                m[3 * row + k] -= factor * m[3 * column + k];
                out[3 * row + k] -= factor * out[3 * column + k];
            }
        }
    }
    return out;
}

Wide3 rgb_to_xyz(const Chromaticities& c) {
    Wide3 columns{};
    for (std::size_t i = 0; i < 3; ++i) {
        columns[i] = c[2 * i];
        columns[3 + i] = c[2 * i + 1];
        columns[6 + i] = 1 - c[2 * i] - c[2 * i + 1];
    }
    const Wide3 solved = inverse(columns);
    const double white[3] = {c[6] / c[7], 1, (1 - c[6] - c[7]) / c[7]};
    for (std::size_t i = 0; i < 3; ++i) {
        const double gain =
            solved[3 * i] * white[0] + solved[3 * i + 1] * white[1] + solved[3 * i + 2] * white[2];
        for (std::size_t row = 0; row < 3; ++row) {
            columns[3 * row + i] *= gain;
        }
    }
    return columns;
}

Matrix3 rounded(const Wide3& m) {
    Matrix3 out{};
    std::transform(m.begin(), m.end(), out.begin(), [](double v) { return static_cast<float>(v); });
    return out;
}

Matrix3 inverse(const Matrix3& m) {
    Wide3 wide{};
    std::copy(m.begin(), m.end(), wide.begin());
    return rounded(inverse(wide));
}

Matrix3 product(const Matrix3& a, const Matrix3& b) {
    Matrix3 out{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            out[3 * row + column] =
                (a[3 * row] * b[column] + a[3 * row + 1] * b[3 + column]) + a[3 * row + 2] * b[6 + column];
        }
    }
    return out;
}

Matrix3 scaled(Matrix3 m, const Color3& factors) {
    for (std::size_t i = 0; i < 9; ++i) {
        m[i] *= factors[i / 3];
    }
    return m;
}

/// The compressed response of a cone.
float compressed(float v) {
    const float power = std::pow(v, CONE_POWER);
    return power / (CONE_OFFSET + power);
}

float compressed_with_sign(float v) {
    return std::copysign(compressed(std::abs(v)), v);
}

float uncompressed(float v) {
    const float response = std::min(v, 0.99f);
    return std::pow((CONE_OFFSET * response) / (1.0f - response), 1.0f / CONE_POWER);
}

float uncompressed_with_sign(float v) {
    return std::copysign(uncompressed(std::abs(v)), v);
}

/// Rounded once, as by recent C libraries only.
float arc_tangent(float y, float x) {
    return static_cast<float>(std::atan2(static_cast<double>(y), static_cast<double>(x)));
}

} // namespace

float decades_of(float v) {
    return static_cast<float>(std::log10(static_cast<double>(v)));
}

AppearanceModel make_appearance_model() {
    const float adapting = 5.0f * 100.0f, k = 1.0f / (adapting + 1.0f), k4 = k * k * k * k;
    const float level =
        0.2f * k4 * adapting + 0.1f * std::pow(1.0f - k4, 2.0f) * std::pow(adapting, 1.0f / 3.0f);
    AppearanceModel model{};
    model.luminance_level = level / REFERENCE_LUMINANCE;
    model.exponent = 0.59f * (1.48f + std::sqrt(20.0f / REFERENCE_LUMINANCE));
    model.root = 1.0f / model.exponent;
    model.white = compressed(level);
    model.unwhite = 1.0f / model.white;
    return model;
}

AppearanceMatrices make_appearance_matrices(const AppearanceModel& model, const Chromaticities& primaries) {
    const Matrix3 xyz = rounded(rgb_to_xyz(primaries)), cones = rounded(inverse(rgb_to_xyz(CONE_PRIMARIES)));
    const Color3 white_xyz = multiply(xyz, {REFERENCE_LUMINANCE, REFERENCE_LUMINANCE, REFERENCE_LUMINANCE});
    const Color3 white = multiply(cones, white_xyz);
    Color3 adaptation{}, response{};
    for (std::size_t i = 0; i < 3; ++i) {
        adaptation[i] = model.luminance_level * white_xyz[1] / white[i];
        response[i] = compressed_with_sign(adaptation[i] * white[i]);
    }
    constexpr float S = 400;
    const Matrix3 base{
        S * 2.0f,           S * 1.0f,          S * (1.0f / 20.0f), S * 1.0f,          S * (-12.0f / 11.0f),
        S * (1.0f / 11.0f), S * (1.0f / 9.0f), S * (1.0f / 9.0f),  S * (-2.0f / 9.0f)};
    const float achromatic = multiply(base, response)[0];
    AppearanceMatrices out{};
    for (std::size_t i = 0; i < 9; ++i) {
        out.to_aab[i] = i < 3 ? base[i] / achromatic : base[i] * 43.0f * 0.9f;
    }
    Matrix3 hundredfold = product(cones, xyz);
    for (float& v : hundredfold) {
        v *= REFERENCE_LUMINANCE;
    }
    out.to_cones = scaled(hundredfold, adaptation);
    out.from_cones = inverse(out.to_cones);
    out.from_aab = inverse(out.to_aab);
    return out;
}

Color3 multiply(const Matrix3& m, const Color3& v) {
    Color3 out{};
    for (std::size_t row = 0; row < 3; ++row) {
        out[row] = m[3 * row] * v[0] + m[3 * row + 1] * v[1] + m[3 * row + 2] * v[2];
    }
    return out;
}

Color3 rgb_to_aab(const AppearanceMatrices& matrices, const Color3& rgb) {
    Color3 responses = multiply(matrices.to_cones, rgb);
    std::transform(responses.begin(), responses.end(), responses.begin(), compressed_with_sign);
    return multiply(matrices.to_aab, responses);
}

Color3 rgb_to_jmh(const AppearanceModel& model, const AppearanceMatrices& matrices, const Color3& rgb) {
    const Color3 aab = rgb_to_aab(matrices, rgb);
    if (aab[0] <= 0) {
        return {0, 0, 0};
    }
    const float hue = 180.0f * arc_tangent(aab[2], aab[1]) / PI;
    return {100.0f * std::pow(aab[0], model.exponent), std::sqrt(aab[1] * aab[1] + aab[2] * aab[2]),
            hue < 0 ? hue + 360.0f : hue};
}

Color3 jmh_to_rgb(const AppearanceModel& model, const AppearanceMatrices& matrices, const Color3& jmh) {
    const float angle = PI * jmh[2] / 180.0f;
    const Color3 aab{std::pow(jmh[0] * 0.01f, model.root), jmh[1] * std::cos(angle),
                     jmh[1] * std::sin(angle)};
    Color3 responses = multiply(matrices.from_aab, aab);
    std::transform(responses.begin(), responses.end(), responses.begin(), uncompressed_with_sign);
    return multiply(matrices.from_cones, responses);
}

float luminance_to_j(const AppearanceModel& model, float luminance) {
    const float response = compressed(std::abs(luminance) * model.luminance_level);
    return std::copysign(100.0f * std::pow(response * model.unwhite, model.exponent), luminance);
}

ToneCurve make_tone_curve(float peak) {
    constexpr float NOMINAL = 100, TOE = 0.04f, POWER = 1.15f, MID = 0.18f, MID_NIT = 10.013f, GROWTH = 0.14f;
    constexpr float MIN_HIT = 128, MAX_HIT = 896;
    const float m0 = peak / NOMINAL;
    const float hit = MIN_HIT + (MAX_HIT - MIN_HIT) * (std::log(m0) / std::log(10000.0f / NOMINAL));
    const float m1 = 0.5f * (m0 + std::sqrt(m0 * (m0 + 4.0f * TOE)));
    const float u = std::pow((hit / m1) / ((hit / m1) + 1.0f), POWER), m = m1 / u;
    const float stops = std::log(m0) / std::log(2.0f);
    const float mid = MID_NIT / NOMINAL * (1.0f + stops * GROWTH);
    const float knee = 0.5f * (mid + std::sqrt(mid * (mid + 4.0f * TOE)));
    const float root = std::pow(knee / m, 1.0f / POWER);
    const float bent = -(m1 * root) / (root - 1.0f);
    const float w2 = MID / bent;
    const float u2 = std::pow((hit / m1) / ((hit / m1) + w2), POWER);
    ToneCurve tone{};
    tone.gain = m1 / u2;
    tone.shift = w2 * m1 * REFERENCE_LUMINANCE;
    tone.inverse_limit = peak / (u2 * NOMINAL);
    tone.forward_limit = 8.0f * hit;
    tone.mid_luminance = mid;
    return tone;
}

CompressionFactors make_compression_factors(const AppearanceModel& model, const ToneCurve& tone, float peak) {
    const float log_peak = decades_of(peak / 100.0f);
    CompressionFactors f{};
    f.max_j = luminance_to_j(model, peak);
    f.compression = 2.4f + (2.4f * 3.3f) * log_peak;
    f.saturation = std::max(0.2f, 1.3f - (1.3f * 0.69f) * log_peak);
    f.saturation_min = 0.5f / peak;
    f.chroma_scale = std::pow(0.03379f * peak, 0.30596f) - 0.45135f;
    f.mid_j = luminance_to_j(model, tone.mid_luminance * 100.0f);
    f.focus_gain = f.max_j * (1.35f + 1.35f * 1.75f * log_peak);
    f.lower_root = 1.0f / (1.14f + 0.07f * log_peak);
    return f;
}

} // namespace pixel
